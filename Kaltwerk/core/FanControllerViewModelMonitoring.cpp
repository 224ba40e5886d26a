#include "FanControllerViewModel.h"
#include "FanRange.h"

#include <chrono>
#include <cmath>

namespace ventaro {

namespace {

constexpr std::chrono::seconds timerInterval(2);
constexpr std::int64_t fullSweepRhythm = 3;   // ticks
constexpr std::int64_t helperCheckRhythm = 4; // ticks
constexpr std::size_t historyLength = 60;     // samples: two minutes

/// Whether a new temperature or power is worth being shown in place of the old one.
bool differsVisibly(double shown, double fresh) {
    constexpr double threshold = 0.1; // °C or W
    return std::abs(fresh - shown) >= threshold;
}

} // namespace

void FanControllerViewModel::startMonitoring() {
    if (isShutDown_) {
        return;
    }
    // The fire itself only puts the tick behind what the main thread has to do already.
    timer_ = std::make_unique<MonitoringTimer>(*session_.clock, timerInterval, [this] {
        tasks_.onMainThread([this, life = std::weak_ptr(life_)] {
            if (!life.expired() && timer_) {
                tick();
            }
        });
    });
    Q_EMIT timerChanged();
}

void FanControllerViewModel::tick() {
    store(tickCount_, tickCount_ + 1, &FanControllerViewModel::tickCountChanged);
    refreshTelemetryAsync(isSensorsTabVisible_ || tickCount_ % fullSweepRhythm == 1 ||
                          sensors_.empty());
    if (tickCount_ % helperCheckRhythm == 0) {
        checkHelperAndConflictsAsync();
    }
    if (activeProfile_ == ControlProfile::smartCurve) {
        applySmartCurveStep(false);
    }
}

void FanControllerViewModel::refreshTelemetryAsync(bool includeAllSensors) {
    if (isPollingInFlight_) {
        return;
    }
    store(isPollingInFlight_, true, &FanControllerViewModel::isPollingInFlightChanged);
    runDetached(
        TaskPriority::utility,
        [&smc = smc_, &clock = *session_.clock, includeAllSensors] {
            return readTelemetry(smc, clock, includeAllSensors);
        },
        [this](const Telemetry& telemetry) { publish(telemetry); });
}

FanControllerViewModel::Telemetry
FanControllerViewModel::readTelemetry(SMCService& smc, const Clock& clock, bool includeAllSensors) {
    const auto speedOf = [](const FanReading* fan) { return fan != nullptr ? fan->currentRPM : 0; };
    Telemetry telemetry;
    telemetry.fans = smc.readFans();
    if (includeAllSensors) {
        telemetry.sensors = smc.readSensors();
        telemetry.summary = summarize(*telemetry.sensors);
    } else {
        telemetry.summary = readFastSummary(smc);
    }
    TelemetrySample& sample = telemetry.sample;
    sample.timestamp = clock.now();
    sample.cpuTemp = telemetry.summary.cpuTemperature;
    sample.gpuTemp = telemetry.summary.gpuTemperature;
    sample.fan0RPM = speedOf(findFan(telemetry.fans, 0));
    sample.fan1RPM = speedOf(findFan(telemetry.fans, 1));
    sample.systemWatts = telemetry.summary.systemPower;
    telemetry.summaryText = summaryText(sample.fan0RPM, sample.cpuTemp);
    return telemetry;
}

void FanControllerViewModel::publish(const Telemetry& telemetry) {
    using Self = FanControllerViewModel;
    const TelemetrySummary& summary = telemetry.summary;
    store(isPollingInFlight_, false, &Self::isPollingInFlightChanged);
    store(fans_, telemetry.fans, &Self::fansChanged);
    if (telemetry.sensors) {
        store(sensors_, *telemetry.sensors, &Self::sensorsChanged);
    }
    if (differsVisibly(cpuMaxTemp_, summary.cpuTemperature)) {
        store(cpuMaxTemp_, summary.cpuTemperature, &Self::cpuMaxTempChanged);
    }
    if (differsVisibly(gpuMaxTemp_, summary.gpuTemperature)) {
        store(gpuMaxTemp_, summary.gpuTemperature, &Self::gpuMaxTempChanged);
    }
    if (differsVisibly(systemPowerWatts_, summary.systemPower)) {
        store(systemPowerWatts_, summary.systemPower, &Self::systemPowerWattsChanged);
    }
    store(menuBarSummaryText_, telemetry.summaryText, &Self::menuBarSummaryTextChanged);
    history_.push_back(telemetry.sample);
    if (history_.size() > historyLength) {
        history_.erase(history_.begin());
    }
    Q_EMIT historyChanged();
}

void FanControllerViewModel::ensureHardwareSpecsLoaded() {
    if (hardwareSections_.empty() && !isLoadingHardwareInfo_) {
        refreshHardwareSpecs();
    }
}

void FanControllerViewModel::refreshHardwareSpecs() {
    if (isLoadingHardwareInfo_) {
        return;
    }
    store(isLoadingHardwareInfo_, true, &FanControllerViewModel::isLoadingHardwareInfoChanged);
    runDetached(
        TaskPriority::utility,
        [&inspector = inspector_] { return inspector.loadAllHardwareSections(); },
        [this](const std::vector<HardwareSectionData>& sections) {
            store(hardwareSections_, sections, &FanControllerViewModel::hardwareSectionsChanged);
            store(isLoadingHardwareInfo_, false,
                  &FanControllerViewModel::isLoadingHardwareInfoChanged);
        });
}

} // namespace ventaro
