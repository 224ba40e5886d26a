#include "CurveStep.h"

#include "FanRange.h"

#include <cmath>

namespace ventaro {

namespace {

bool hasMoved(double target, const FanTargets& sent, int fanIndex) {
    constexpr double hysteresis = 45; // RPM
    const auto last = sent.find(fanIndex);
    return last == sent.end() || !(std::abs(target - last->second) < hysteresis);
}

} // namespace

CurveStep curveStep(std::span<const CurvePoint> curve, double temperature,
                    std::span<const FanReading> fans) {
    const double percent = evaluateCurvePercent(curve, temperature);
    return {percent, mapToRange(percent / 100, rangeOf(fans, 0)),
            mapToRange(percent / 100, rangeOf(fans, 1))};
}

bool isWorthSending(const CurveStep& step, const FanTargets& sent) {
    return hasMoved(step.fan0, sent, 0) || hasMoved(step.fan1, sent, 1);
}

bool isWorthShowing(double percent, double shownPercent) {
    constexpr double threshold = 0.5; // percentage points
    return std::abs(percent - shownPercent) >= threshold;
}

} // namespace ventaro
