#include "FanControllerViewModel.h"
#include "FanRange.h"

#include <cmath>

namespace ventaro {

namespace {

constexpr double hysteresis = 45;        // RPM
constexpr double displayThreshold = 0.5; // percentage points
constexpr double neverSent = -999;       // RPM

double lastTarget(const std::map<int, double>& targets, int fanIndex) {
    const auto found = targets.find(fanIndex);
    return found == targets.end() ? neverSent : found->second;
}

} // namespace

double FanControllerViewModel::currentSourceTemperature() const {
    return temperatureOf(curveSensorSource_, cpuMaxTemp_, gpuMaxTemp_);
}

double FanControllerViewModel::evaluateCurvePercent(double temperature) const {
    return ventaro::evaluateCurvePercent(curvePoints_, temperature);
}

void FanControllerViewModel::applySmartCurveStep(bool force) {
    const double percent = evaluateCurvePercent(currentSourceTemperature());
    if (std::abs(percent - currentCurveTargetPercent_) >= displayThreshold) {
        store(currentCurveTargetPercent_, percent,
              &FanControllerViewModel::currentCurveTargetPercentChanged);
    }
    const double target0 = mapToRange(percent / 100, rangeOf(fans_, 0));
    const double target1 = mapToRange(percent / 100, rangeOf(fans_, 1));
    const bool isSteady = std::abs(target0 - lastTarget(lastAppliedRPMs_, 0)) < hysteresis &&
                          std::abs(target1 - lastTarget(lastAppliedRPMs_, 1)) < hysteresis;
    if (force || !isSteady) {
        sendTargetRPMs(target0, target1, true);
    }
}

} // namespace ventaro
