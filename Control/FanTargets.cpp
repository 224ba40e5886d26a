#include "FanTargets.h"

#include "FanRange.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

bool doFansFollow(std::span<const FanReading> fans, const FanTargets& targets) {
    constexpr double tolerance = 1; // RPM; older SMCs count in quarters
    return std::all_of(targets.begin(), targets.end(), [&](const auto& target) {
        const FanReading* fan = findFan(fans, target.first);
        return fan == nullptr ||
               (fan->mode == FanMode::forced &&
                std::abs(fan->targetRPM -
                         FanRange{fan->minRPM, fan->maxRPM}.limited(target.second)) <= tolerance);
    });
}

} // namespace ventaro
