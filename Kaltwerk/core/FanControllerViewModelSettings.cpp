#include "FanControllerViewModel.h"
#include "FanRange.h"

#include <algorithm>

namespace ventaro {

void FanControllerViewModel::loadSavedSettings() {
    using Self = FanControllerViewModel;
    std::error_code error;
    store(launchAtLogin_, std::filesystem::exists(session_.loginItem.file, error),
          &Self::launchAtLoginChanged);
    SavedSettings saved = loadedSettings(*session_.defaults, settings());
    store(startMinimized_, saved.startMinimized, &Self::startMinimizedChanged);
    setManualRPMFan0(saved.manualRPMFan0);
    setManualRPMFan1(saved.manualRPMFan1);
    setLinkFansInManualMode(saved.linkFans);
    setResetToAutoOnQuit(saved.resetOnQuit);
    setCurveSensorSource(saved.curveSensorSource);
    setCurvePoints(std::move(saved.curvePoints));
}

void FanControllerViewModel::saveSettings() {
    ventaro::saveSettings(*session_.defaults, settings());
}

SavedSettings FanControllerViewModel::settings() const {
    return {manualRPMFan0_,  manualRPMFan1_,     linkFansInManualMode_, resetToAutoOnQuit_,
            startMinimized_, curveSensorSource_, curvePoints_};
}

void FanControllerViewModel::seedManualSpeeds() {
    const auto present = [](const FanReading& fan) {
        return std::max(fan.minRPM, std::min(fan.targetRPM, fan.maxRPM));
    };
    if (const FanReading* fan = findFan(fans_, 0)) {
        setManualRPMFan0(present(*fan));
    }
    if (const FanReading* fan = findFan(fans_, 1)) {
        setManualRPMFan1(present(*fan));
    }
}

void FanControllerViewModel::setManualRPMFan0(double rpm) {
    store(manualRPMFan0_, rpm, &FanControllerViewModel::manualRPMFan0Changed);
}

void FanControllerViewModel::setManualRPMFan1(double rpm) {
    store(manualRPMFan1_, rpm, &FanControllerViewModel::manualRPMFan1Changed);
}

void FanControllerViewModel::setLinkFansInManualMode(bool linked) {
    store(linkFansInManualMode_, linked, &FanControllerViewModel::linkFansInManualModeChanged);
}

void FanControllerViewModel::setCurveSensorSource(CurveSensorSource source) {
    store(curveSensorSource_, source, &FanControllerViewModel::curveSensorSourceChanged);
}

void FanControllerViewModel::setCurvePoints(std::vector<CurvePoint> points) {
    store(curvePoints_, std::move(points), &FanControllerViewModel::curvePointsChanged);
}

void FanControllerViewModel::setResetToAutoOnQuit(bool reset) {
    store(resetToAutoOnQuit_, reset, &FanControllerViewModel::resetToAutoOnQuitChanged);
}

} // namespace ventaro
