#include "FanControllerViewModel.h"

namespace ventaro {

FanControllerViewModel::FanControllerViewModel(const FanControllerDependencies& dependencies,
                                               QObject* parent)
    : QObject(parent),
      smc_(dependencies.smc),
      helper_(dependencies.helper),
      inspector_(dependencies.inspector),
      machineRoot_(dependencies.machineRoot),
      session_(dependencies.session),
      tasks_(dependencies.tasks) {
    loadSavedSettings();
    store(fans_, smc_.readFans(), &FanControllerViewModel::fansChanged);
    seedManualSpeeds();
    refreshTelemetryAsync(true);
    checkHelperAndConflictsAsync();
    startMonitoring();
}

FanControllerViewModel::~FanControllerViewModel() = default;

void FanControllerViewModel::setSensorsTabVisible(bool visible) {
    store(isSensorsTabVisible_, visible, &FanControllerViewModel::isSensorsTabVisibleChanged);
}

void FanControllerViewModel::setOverviewTabVisible(bool visible) {
    store(isOverviewTabVisible_, visible, &FanControllerViewModel::isOverviewTabVisibleChanged);
}

void FanControllerViewModel::report(std::optional<std::string> message, bool isError) {
    if (message) {
        message = machineRoot_.withoutFolder(*std::move(message));
    }
    store(statusMessage_, std::move(message), &FanControllerViewModel::statusMessageChanged);
    store(isErrorStatus_, isError, &FanControllerViewModel::isErrorStatusChanged);
}

void FanControllerViewModel::dismissStatusMessage() {
    store(statusMessage_, std::nullopt, &FanControllerViewModel::statusMessageChanged);
}

void FanControllerViewModel::handleAppTermination() const {
    if (!resetToAutoOnQuit_) {
        return;
    }
    try {
        if (helper_.isDaemonActive()) {
            helper_.sendSocketRequest({HelperAction::resetAllAuto, std::nullopt, std::nullopt});
        }
    } catch (const std::exception&) {
        // Nobody is left to be told.
    }
}

void FanControllerViewModel::shutdown() {
    if (std::exchange(isShutDown_, true)) {
        return;
    }
    timer_.reset();
    inspector_.endCollection();
    gate_->close();
    handleAppTermination();
    Q_EMIT timerChanged();
}

} // namespace ventaro
