#include "FanControllerViewModel.h"

// What the controller answers and does by way of one of its parts alone.

#include "ControlSettings.h"
#include "FanRequests.h"
#include "HardwareInventory.h"
#include "HelperStatus.h"
#include "LoginItem.h"
#include "MachineTruth.h"
#include "StatusLine.h"
#include "TelemetryMonitor.h"

namespace ventaro {

using Self = FanControllerViewModel;

const std::optional<std::string>& Self::statusMessage() const { return statusLine_->message(); }
bool Self::isErrorStatus() const { return statusLine_->isError(); }
void Self::dismissStatusMessage() { statusLine_->dismiss(); }

const std::vector<FanReading>& Self::fans() const { return telemetry_->fans(); }
const std::vector<SensorReading>& Self::sensors() const { return telemetry_->sensors(); }
const std::vector<TelemetrySample>& Self::history() const { return telemetry_->history(); }
double Self::cpuMaxTemp() const { return telemetry_->cpuMaxTemp(); }
double Self::gpuMaxTemp() const { return telemetry_->gpuMaxTemp(); }
double Self::systemPowerWatts() const { return telemetry_->systemPowerWatts(); }
QString Self::menuBarSummaryText() const {
    return QString::fromStdString(telemetry_->summaryText());
}
bool Self::isPollingInFlight() const { return telemetry_->isReading(); }
void Self::refreshTelemetryAsync(bool includeAllSensors) { telemetry_->refresh(includeAllSensors); }

bool Self::isCpuTempKnown() const { return truth_->isCpuKnown(); }
bool Self::isGpuTempKnown() const { return truth_->isGpuKnown(); }
bool Self::isSmcLost() const { return truth_->isSmcLost(); }
int Self::staleSeconds() const { return truth_->staleSeconds(); }
bool Self::isProfileInForce() const { return truth_->isProfileInForce(); }
bool Self::areFansForcedByOthers() const { return truth_->areFansForcedByOthers(); }

bool Self::canTakeOver() const { return requests_->canTakeOver(); }
const FanTargets& Self::lastAppliedRPMs() const { return requests_->lastTargets(); }
const std::shared_ptr<DispatchGate>& Self::dispatchGate() const { return requests_->gate(); }

double Self::manualRPMFan0() const { return settings_->values().manualRPMFan0; }
double Self::manualRPMFan1() const { return settings_->values().manualRPMFan1; }
bool Self::linkFansInManualMode() const { return settings_->values().linkFans; }
CurveSensorSource Self::curveSensorSource() const { return settings_->values().curveSensorSource; }
const std::vector<CurvePoint>& Self::curvePoints() const { return settings_->values().curvePoints; }
bool Self::resetToAutoOnQuit() const { return settings_->values().resetOnQuit; }
bool Self::startMinimized() const { return settings_->values().startMinimized; }
void Self::setManualRPMFan0(double rpm) { settings_->setManualRPMFan0(rpm); }
void Self::setManualRPMFan1(double rpm) { settings_->setManualRPMFan1(rpm); }
void Self::setLinkFansInManualMode(bool linked) { settings_->setLinkFans(linked); }
void Self::setCurveSensorSource(CurveSensorSource source) {
    settings_->setCurveSensorSource(source);
}
void Self::setCurvePoints(std::vector<CurvePoint> points) {
    settings_->setCurvePoints(std::move(points));
}
void Self::setResetToAutoOnQuit(bool reset) { settings_->setResetOnQuit(reset); }
void Self::saveSettings() { settings_->save(); }

bool Self::isHelperInstalled() const { return helperStatus_->isInstalled(); }
bool Self::isHelperOutdated() const { return helperStatus_->isOutdated(); }
QString Self::guardText() const { return QString::fromStdString(helperStatus_->guardText()); }
bool Self::isInstallingHelper() const { return helperStatus_->isInstalling(); }
bool Self::competingProcessDetected() const { return helperStatus_->isCompetitorRunning(); }
void Self::checkHelperAndConflictsAsync() { helperStatus_->check(); }
void Self::installHelper() { helperStatus_->install(); }
void Self::uninstallHelper() { helperStatus_->uninstall(); }

bool Self::launchAtLogin() const { return loginItem_->isEnabled(); }
void Self::setLaunchAtLogin(bool enabled) { loginItem_->setEnabled(enabled, startMinimized()); }
void Self::setStartMinimized(bool minimized) {
    settings_->setStartMinimized(minimized);
    saveSettings();
    if (launchAtLogin()) {
        setLaunchAtLogin(true);
    }
}

const std::vector<HardwareSectionData>& Self::hardwareSections() const {
    return inventory_->sections();
}
bool Self::isLoadingHardwareInfo() const { return inventory_->isLoading(); }
void Self::ensureHardwareSpecsLoaded() { inventory_->ensureLoaded(); }
void Self::refreshHardwareSpecs() { inventory_->reload(); }

} // namespace ventaro
