#pragma once

namespace ventaro {

/// What the process that is watched writes to its watcher when nothing is left to be done at its
/// end.
constexpr char allIsWell = 'd';

} // namespace ventaro
