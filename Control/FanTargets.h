#pragma once

#include <map>

namespace ventaro {

/// What fans have been asked for, in RPM, by their indices.
using FanTargets = std::map<int, double>;

} // namespace ventaro
