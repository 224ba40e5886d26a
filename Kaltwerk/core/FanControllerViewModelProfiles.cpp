#include "FanControllerViewModel.h"
#include "FanRange.h"

namespace ventaro {

void FanControllerViewModel::selectProfile(ControlProfile profile) {
    store(activeProfile_, profile, &FanControllerViewModel::activeProfileChanged);
    saveSettings();
    store(lastAppliedRPMs_, {}, &FanControllerViewModel::lastAppliedRPMsChanged);
    if (const auto fraction = presetFraction(profile)) {
        applyPresetPercentage(*fraction);
    } else if (profile == ControlProfile::systemAuto) {
        sendResetAllToAuto();
    } else if (profile == ControlProfile::smartCurve) {
        applySmartCurveStep(true);
    } else {
        applyManualSpeeds();
    }
}

void FanControllerViewModel::setManualSpeedsToFraction(double fraction) {
    if (const FanReading* fan = findFan(fans_, 0)) {
        setManualRPMFan0(mapToRange(fraction, {fan->minRPM, fan->maxRPM}));
    }
    if (const FanReading* fan = findFan(fans_, 1)) {
        setManualRPMFan1(mapToRange(fraction, {fan->minRPM, fan->maxRPM}));
    }
}

void FanControllerViewModel::sendManualSpeeds() {
    sendTargetRPMs(manualRPMFan0_, manualRPMFan1_, false);
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
    store(activeProfile_, ControlProfile::manual, &FanControllerViewModel::activeProfileChanged);
    saveSettings();
    sendManualSpeeds();
}

} // namespace ventaro
