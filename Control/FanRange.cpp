#include "FanRange.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

const FanReading* findFan(std::span<const FanReading> fans, std::int64_t index) {
    const auto found = std::find_if(fans.begin(), fans.end(),
                                    [index](const auto& fan) { return fan.id == index; });
    return found == fans.end() ? nullptr : &*found;
}

FanRange rangeOf(std::span<const FanReading> fans, int fanIndex) {
    const FanReading* fan = findFan(fans, fanIndex);
    return fan != nullptr ? FanRange{fan->minRPM, fan->maxRPM} : builtInRange(fanIndex);
}

double mapToRange(double fraction, const FanRange& range) {
    return std::round(range.minimum +
                      std::clamp(fraction, 0.0, 1.0) * (range.maximum - range.minimum));
}

} // namespace ventaro
