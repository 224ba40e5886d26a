#pragma once

#include "TelemetryRecords.h"

#include <map>
#include <span>

namespace ventaro {

/// What fans have been asked for, in RPM, by their indices.
using FanTargets = std::map<int, double>;

/// Whether every fan that is there is forced to its target, as far as its range lets it.
bool doFansFollow(std::span<const FanReading> fans, const FanTargets& targets);

} // namespace ventaro
