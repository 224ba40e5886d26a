#pragma once

#include "FanLimits.h"
#include "TelemetryRecords.h"

#include <cstdint>
#include <span>

namespace ventaro {

/// The first fan with this index; null if there is none.
const FanReading* findFan(std::span<const FanReading> fans, std::int64_t index);

/// What the fan says its range is, or else the built-in one.
FanRange rangeOf(std::span<const FanReading> fans, int fanIndex);

/// The speed at `fraction` of the range (limited to 0 to 1), in whole RPM, halves away from zero.
double mapToRange(double fraction, const FanRange& range);

} // namespace ventaro
