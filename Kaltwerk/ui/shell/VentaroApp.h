#pragma once

namespace ventaro {

/// The application: runs to its end and returns the process's exit code.
int runVentaroApp(int argc, char** argv);

} // namespace ventaro
