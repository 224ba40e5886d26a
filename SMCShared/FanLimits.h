#pragma once

#include <algorithm>

namespace ventaro {

/// The speeds that a fan can be set to, in RPM.
struct FanRange {
    double minimum = 0;
    double maximum = 0;

    /// `rpm`, raised to the minimum and then lowered to the maximum.
    constexpr double limited(double rpm) const { return std::min(maximum, std::max(minimum, rpm)); }
};

/// The range of a fan of the 16-inch MacBook Pro of 2019, 8 cores (0 the left fan, 1 the right
/// one), for when it cannot be read.
constexpr FanRange builtInRange(int fanIndex) {
    return fanIndex == 0 ? FanRange{1836, 5616} : FanRange{1700, 5200};
}

/// Whether a fan's range can be one: a maximum of nothing, or beyond any fan of a notebook, is
/// none.
constexpr bool isTrustworthy(const FanRange& range) {
    constexpr double mostRPM = 10'000;
    return range.maximum > 0 && range.maximum <= mostRPM;
}

} // namespace ventaro
