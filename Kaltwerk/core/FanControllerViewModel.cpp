#include "FanControllerViewModel.h"

#include "ControlHolder.h"
#include "ControlSettings.h"
#include "ControlWatcher.h"
#include "DispatchGate.h"
#include "FanRequests.h"
#include "FileDescriptor.h"
#include "HardwareInventory.h"
#include "HelperClient.h"
#include "HelperStatus.h"
#include "LoginItem.h"
#include "MachineTruth.h"
#include "MonitoringTimer.h"
#include "StatusLine.h"
#include "StoredField.h"
#include "TelemetryMonitor.h"
#include "UserSession.h"

#include <chrono>
#include <utility>

namespace ventaro {

using Self = FanControllerViewModel;

FanControllerViewModel::FanControllerViewModel(const FanControllerDependencies& dependencies,
                                               QObject* parent)
    : QObject(parent),
      smc_(dependencies.smc),
      helper_(dependencies.helper),
      session_(dependencies.session),
      runner_(dependencies.tasks),
      tasks_(std::make_unique<DetachedTasks>(dependencies.tasks)),
      statusLine_(std::make_unique<StatusLine>(dependencies.machineRoot)),
      settings_(std::make_unique<ControlSettings>(*session_.defaults)),
      telemetry_(std::make_unique<TelemetryMonitor>(dependencies.smc, *session_.clock,
                                                    dependencies.tasks)),
      holder_(std::make_unique<ControlHolder>(dependencies.machineRoot, dependencies.program)),
      watcher_(std::make_unique<ControlWatcher>(
          dependencies.watcher, holder_->lock(),
          dependencies.machineRoot.resolve(HelperConstants::socketPath))),
      requests_(std::make_unique<FanRequests>(helper_, *holder_, dependencies.tasks,
                                              [this] { return telemetry_->begunReadouts(); })),
      helperStatus_(std::make_unique<HelperStatus>(helper_, *session_.runningApplications,
                                                   dependencies.tasks)),
      loginItem_(std::make_unique<LoginItem>(session_, dependencies.machineRoot)),
      inventory_(std::make_unique<HardwareInventory>(dependencies.inspector, dependencies.tasks)),
      truth_(std::make_unique<MachineTruth>()),
      spare_(std::make_unique<FileDescriptor>(spareDescriptor())) {
    passOnChanges();
    connectParts();
    telemetry_->readFansNow();
    seedManualSpeeds();
    refreshTelemetryAsync(true);
    checkHelperAndConflictsAsync();
    startMonitoring();
}

FanControllerViewModel::~FanControllerViewModel() = default;

void FanControllerViewModel::passOnChanges() {
    const auto passOn = [this](const auto& part, auto changed, auto ownChanged) {
        connect(part.get(), changed, this, ownChanged);
    };
    passOn(statusLine_, &StatusLine::messageChanged, &Self::statusMessageChanged);
    passOn(statusLine_, &StatusLine::isErrorChanged, &Self::isErrorStatusChanged);
    passOn(settings_, &ControlSettings::manualRPMFan0Changed, &Self::manualRPMFan0Changed);
    passOn(settings_, &ControlSettings::manualRPMFan1Changed, &Self::manualRPMFan1Changed);
    passOn(settings_, &ControlSettings::linkFansChanged, &Self::linkFansInManualModeChanged);
    passOn(settings_, &ControlSettings::curveSensorSourceChanged, &Self::curveSensorSourceChanged);
    passOn(settings_, &ControlSettings::curvePointsChanged, &Self::curvePointsChanged);
    passOn(settings_, &ControlSettings::resetOnQuitChanged, &Self::resetToAutoOnQuitChanged);
    passOn(settings_, &ControlSettings::startMinimizedChanged, &Self::startMinimizedChanged);
    passOn(telemetry_, &TelemetryMonitor::fansChanged, &Self::fansChanged);
    passOn(telemetry_, &TelemetryMonitor::sensorsChanged, &Self::sensorsChanged);
    passOn(telemetry_, &TelemetryMonitor::historyChanged, &Self::historyChanged);
    passOn(telemetry_, &TelemetryMonitor::cpuMaxTempChanged, &Self::cpuMaxTempChanged);
    passOn(telemetry_, &TelemetryMonitor::gpuMaxTempChanged, &Self::gpuMaxTempChanged);
    passOn(telemetry_, &TelemetryMonitor::systemPowerWattsChanged, &Self::systemPowerWattsChanged);
    passOn(telemetry_, &TelemetryMonitor::summaryTextChanged, &Self::menuBarSummaryTextChanged);
    passOn(telemetry_, &TelemetryMonitor::isReadingChanged, &Self::isPollingInFlightChanged);
    passOn(requests_, &FanRequests::lastTargetsChanged, &Self::lastAppliedRPMsChanged);
    passOn(truth_, &MachineTruth::isCpuKnownChanged, &Self::isCpuTempKnownChanged);
    passOn(truth_, &MachineTruth::isGpuKnownChanged, &Self::isGpuTempKnownChanged);
    passOn(truth_, &MachineTruth::isSmcLostChanged, &Self::isSmcLostChanged);
    passOn(truth_, &MachineTruth::staleSecondsChanged, &Self::staleSecondsChanged);
    passOn(truth_, &MachineTruth::isProfileInForceChanged, &Self::isProfileInForceChanged);
    passOn(truth_, &MachineTruth::areFansForcedByOthersChanged,
           &Self::areFansForcedByOthersChanged);
    passOn(requests_, &FanRequests::canTakeOverChanged, &Self::canTakeOverChanged);
    passOn(helperStatus_, &HelperStatus::guardChanged, &Self::guardTextChanged);
    passOn(helperStatus_, &HelperStatus::isOutdatedChanged, &Self::isHelperOutdatedChanged);
    passOn(requests_, &FanRequests::controlLost, &Self::controlLost);
    passOn(helperStatus_, &HelperStatus::isInstalledChanged, &Self::isHelperInstalledChanged);
    passOn(helperStatus_, &HelperStatus::isInstallingChanged, &Self::isInstallingHelperChanged);
    passOn(helperStatus_, &HelperStatus::isCompetitorRunningChanged,
           &Self::competingProcessDetectedChanged);
    passOn(loginItem_, &LoginItem::isEnabledChanged, &Self::launchAtLoginChanged);
    passOn(inventory_, &HardwareInventory::sectionsChanged, &Self::hardwareSectionsChanged);
    passOn(inventory_, &HardwareInventory::isLoadingChanged, &Self::isLoadingHardwareInfoChanged);
}

void FanControllerViewModel::connectParts() {
    StatusLine* line = statusLine_.get();
    connect(requests_.get(), &FanRequests::reported, line, &StatusLine::report);
    connect(helperStatus_.get(), &HelperStatus::reported, line, &StatusLine::report);
    connect(loginItem_.get(), &LoginItem::reported, line, &StatusLine::report);
    connect(requests_.get(), &FanRequests::helperSeen, helperStatus_.get(),
            &HelperStatus::setInstalled);
    connect(requests_.get(), &FanRequests::supervised, this, &Self::followControl);
    connect(settings_.get(), &ControlSettings::resetOnQuitChanged, this, &Self::followControl);
    connect(requests_.get(), &FanRequests::guardSeen, helperStatus_.get(), &HelperStatus::setGuard);
    connect(requests_.get(), &FanRequests::curveStepDue, this,
            [this] { applySmartCurveStep(true); });
    connect(telemetry_.get(), &TelemetryMonitor::published, this, &Self::onReadout);
    connect(requests_.get(), &FanRequests::answered, telemetry_.get(),
            [this] { telemetry_->refresh(false); });
    connect(helperStatus_.get(), &HelperStatus::uninstalled, this, [this] {
        setActiveProfile(ControlProfile::systemAuto);
        requests_->wishNothing();
    });
}

void FanControllerViewModel::startMonitoring() {
    constexpr std::chrono::seconds interval(2);
    if (isShutDown_) {
        return;
    }
    // The fire itself only puts the tick behind what the main thread has to do already.
    timer_ = std::make_unique<MonitoringTimer>(*session_.clock, interval, [this] {
        tasks_->later([this] {
            if (timer_) {
                tick();
            }
        });
    });
    Q_EMIT timerChanged();
}

void FanControllerViewModel::tick() {
    constexpr std::int64_t fullSweepRhythm = 3;   // ticks
    constexpr std::int64_t helperCheckRhythm = 4; // ticks
    store(this, tickCount_, tickCount_ + 1, &Self::tickCountChanged);
    truth_->onTick(tickCount_);
    refreshTelemetryAsync(isSensorsTabVisible_ || tickCount_ % fullSweepRhythm == 1 ||
                          sensors().empty());
    if (tickCount_ % helperCheckRhythm == 0) {
        checkHelperAndConflictsAsync();
    }
    if (activeProfile_ == ControlProfile::smartCurve) {
        applySmartCurveStep(false);
    }
}

void FanControllerViewModel::onReadout(const TelemetryReadout& readout) {
    truth_->onReadout(readout, tickCount_);
    requests_->onReadout({.number = readout.number,
                          .tick = tickCount_,
                          .source = truth_->temperatures().state(curveSensorSource()),
                          .fans = readout.readBacks,
                          .isHelperThere = isHelperInstalled(),
                          .isGuardUp = helperStatus_->guard().has_value()});
}

void FanControllerViewModel::followControl() {
    truth_->judge(activeProfile_, requests_->supervisor());
    if (holder_->isMine() && resetToAutoOnQuit()) {
        watcher_->begin();
    } else {
        watcher_->end();
    }
}

void FanControllerViewModel::setSensorsTabVisible(bool visible) {
    store(this, isSensorsTabVisible_, visible, &Self::isSensorsTabVisibleChanged);
}

void FanControllerViewModel::setOverviewTabVisible(bool visible) {
    store(this, isOverviewTabVisible_, visible, &Self::isOverviewTabVisibleChanged);
}

} // namespace ventaro
