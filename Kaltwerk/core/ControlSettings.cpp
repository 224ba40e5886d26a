#include "ControlSettings.h"

#include "StoredField.h"

namespace ventaro {

ControlSettings::ControlSettings(DefaultsStore& store)
    : store_(store), values_(loadedSettings(store)) {}

void ControlSettings::save() { saveSettings(store_, values_); }

void ControlSettings::setManualRPMFan0(double rpm) {
    store(this, values_.manualRPMFan0, rpm, &ControlSettings::manualRPMFan0Changed);
}

void ControlSettings::setManualRPMFan1(double rpm) {
    store(this, values_.manualRPMFan1, rpm, &ControlSettings::manualRPMFan1Changed);
}

void ControlSettings::setLinkFans(bool linked) {
    store(this, values_.linkFans, linked, &ControlSettings::linkFansChanged);
}

void ControlSettings::setCurveSensorSource(CurveSensorSource source) {
    store(this, values_.curveSensorSource, source, &ControlSettings::curveSensorSourceChanged);
}

void ControlSettings::setCurvePoints(std::vector<CurvePoint> points) {
    store(this, values_.curvePoints, std::move(points), &ControlSettings::curvePointsChanged);
}

void ControlSettings::setResetOnQuit(bool reset) {
    store(this, values_.resetOnQuit, reset, &ControlSettings::resetOnQuitChanged);
}

void ControlSettings::setStartMinimized(bool minimized) {
    store(this, values_.startMinimized, minimized, &ControlSettings::startMinimizedChanged);
}

} // namespace ventaro
