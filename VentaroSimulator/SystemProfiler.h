#pragma once

#include <string>
#include <vector>

namespace ventaro {

/// The machine's system_profiler: prints the data types that are asked for, as JSON. Returns its
/// exit code.
int systemProfiler(const std::vector<std::string>& arguments);

} // namespace ventaro
