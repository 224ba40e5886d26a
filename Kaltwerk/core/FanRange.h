#pragma once

#include "TelemetryRecords.h"

#include <cstdint>
#include <span>

namespace ventaro {

/// The speeds that a fan can be set to, in RPM.
struct FanRange {
    double minimum = 0;
    double maximum = 0;
};

/// The range of a fan of the 16-inch MacBook Pro of 2019 (0 the left one, 1 the right one), for
/// when it cannot be read.
constexpr FanRange builtInRange(int fanIndex) {
    return fanIndex == 0 ? FanRange{1836, 5616} : FanRange{1700, 5200};
}

/// The first fan with this index; null if there is none.
const FanReading* findFan(std::span<const FanReading> fans, std::int64_t index);

/// What the fan says its range is, or else the built-in one.
FanRange rangeOf(std::span<const FanReading> fans, int fanIndex);

/// The speed at `fraction` of the range (limited to 0 to 1), in whole RPM, halves away from zero.
double mapToRange(double fraction, const FanRange& range);

} // namespace ventaro
