#include "ControlSettings.h"

#include "StoredField.h"

namespace ventaro {

using Self = ControlSettings;

ControlSettings::ControlSettings(DefaultsStore& store)
    : store_(store), values_(loadedSettings(store)) {}

void ControlSettings::save() { saveSettings(store_, values_); }

void ControlSettings::setManualRPMFan0(double rpm) {
    store(this, values_.manualRPMFan0, rpm, &Self::manualRPMFan0Changed);
}

void ControlSettings::setManualRPMFan1(double rpm) {
    store(this, values_.manualRPMFan1, rpm, &Self::manualRPMFan1Changed);
}

void ControlSettings::setLinkFans(bool linked) {
    store(this, values_.linkFans, linked, &Self::linkFansChanged);
}

void ControlSettings::setCurveSensorSource(CurveSensorSource source) {
    store(this, values_.curveSensorSource, source, &Self::curveSensorSourceChanged);
}

void ControlSettings::setCurvePoints(std::vector<CurvePoint> points) {
    store(this, values_.curvePoints, std::move(points), &Self::curvePointsChanged);
}

void ControlSettings::setResetOnQuit(bool reset) {
    store(this, values_.resetOnQuit, reset, &Self::resetOnQuitChanged);
}

void ControlSettings::setStartMinimized(bool minimized) {
    store(this, values_.startMinimized, minimized, &Self::startMinimizedChanged);
}

} // namespace ventaro
