#include "ControlSettings.h"
#include "CurveStep.h"
#include "FanControllerViewModel.h"
#include "FanRange.h"
#include "FanRequests.h"
#include "MachineTruth.h"
#include "StoredField.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

using Self = FanControllerViewModel;

void FanControllerViewModel::setActiveProfile(ControlProfile profile) {
    store(this, activeProfile_, profile, &Self::activeProfileChanged);
}

void FanControllerViewModel::selectProfile(ControlProfile profile) {
    setActiveProfile(profile);
    saveSettings();
    requests_->forgetTargets();
    if (const auto fraction = presetFraction(profile)) {
        applyPresetPercentage(*fraction);
    } else if (profile == ControlProfile::systemAuto) {
        requests_->sendResetAllToAuto();
    } else if (profile == ControlProfile::smartCurve) {
        requests_->wishCurve(truth_->temperatures().celsius(curveSensorSource()).has_value());
        applySmartCurveStep(true);
    } else {
        applyManualSpeeds();
    }
}

void FanControllerViewModel::takeOverControl() {
    requests_->takeOver([this] { selectProfile(activeProfile_); });
}

void FanControllerViewModel::seedManualSpeeds() {
    const auto present = [](const FanReading& fan) {
        return std::max(fan.minRPM, std::min(fan.targetRPM, fan.maxRPM));
    };
    if (const FanReading* fan = findFan(fans(), 0)) {
        setManualRPMFan0(present(*fan));
    }
    if (const FanReading* fan = findFan(fans(), 1)) {
        setManualRPMFan1(present(*fan));
    }
}

void FanControllerViewModel::setManualSpeedsToFraction(double fraction) {
    if (const FanReading* fan = findFan(fans(), 0)) {
        setManualRPMFan0(mapToRange(fraction, {fan->minRPM, fan->maxRPM}));
    }
    if (const FanReading* fan = findFan(fans(), 1)) {
        setManualRPMFan1(mapToRange(fraction, {fan->minRPM, fan->maxRPM}));
    }
}

void FanControllerViewModel::sendManualSpeeds() {
    requests_->sendTargetRPMs(manualRPMFan0(), manualRPMFan1(), false);
}

void FanControllerViewModel::applyPresetPercentage(double fraction) {
    setManualSpeedsToFraction(fraction);
    sendManualSpeeds();
}

void FanControllerViewModel::setManualPercentageForBoth(double fraction) {
    setManualSpeedsToFraction(fraction);
    if (activeProfile_ == ControlProfile::manual) {
        sendManualSpeeds();
    }
}

void FanControllerViewModel::applyManualSpeeds() {
    setActiveProfile(ControlProfile::manual);
    saveSettings();
    sendManualSpeeds();
}

double FanControllerViewModel::currentSourceTemperature() const {
    return temperatureOf(curveSensorSource(), cpuMaxTemp(), gpuMaxTemp());
}

double FanControllerViewModel::evaluateCurvePercent(double temperature) const {
    return ventaro::evaluateCurvePercent(curvePoints(), temperature);
}

void FanControllerViewModel::applySmartCurveStep(bool force) {
    CurveStep step = curveStep(curvePoints(), currentSourceTemperature(), fans());
    if (isWorthShowing(step.percent, currentCurveTargetPercent_)) {
        store(this, currentCurveTargetPercent_, step.percent,
              &Self::currentCurveTargetPercentChanged);
    }
    const auto celsius = truth_->temperatures().celsius(curveSensorSource());
    const FanSupervisor& supervisor = requests_->supervisor();
    if (!celsius || supervisor.isCurveHeld() ||
        (!force && supervisor.wish() != FanSupervisor::Wish::curve)) {
        return; // the curve cannot see, the guard is up, or another program steers
    }
    constexpr double shownExactly = 0.1; // °C
    if (!(std::abs(*celsius - currentSourceTemperature()) < shownExactly)) {
        step = curveStep(curvePoints(), *celsius, fans()); // the shown one is not to be trusted
    }
    if (force || isWorthSending(step, lastAppliedRPMs())) {
        requests_->sendTargetRPMs(step.fan0, step.fan1, true);
    }
}

} // namespace ventaro
