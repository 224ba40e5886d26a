#include "TelemetryMonitor.h"

#include "SMCService.h"
#include "StoredField.h"

#include <cmath>

namespace ventaro {

namespace {

constexpr std::size_t historyLength = 60; // samples: two minutes

/// Whether a new temperature or power is worth being shown in place of the old one.
bool differsVisibly(double shown, double fresh) {
    constexpr double threshold = 0.1; // °C or W
    return std::abs(fresh - shown) >= threshold;
}

} // namespace

TelemetryMonitor::TelemetryMonitor(SMCService& smc, const Clock& clock, TaskRunner& tasks)
    : smc_(smc), clock_(clock), tasks_(tasks) {}

void TelemetryMonitor::readFansNow() {
    store(this, fans_, smc_.readFans(), &TelemetryMonitor::fansChanged);
}

void TelemetryMonitor::refresh(bool includeAllSensors) {
    if (isReading_) {
        return;
    }
    store(this, isReading_, true, &TelemetryMonitor::isReadingChanged);
    tasks_.run(
        TaskPriority::utility,
        [&smc = smc_, &clock = clock_, includeAllSensors, number = ++begunReadouts_] {
            TelemetryReadout readout = readTelemetry(smc, clock, includeAllSensors);
            readout.number = number;
            return readout;
        },
        [this](const TelemetryReadout& readout) { publish(readout); });
}

void TelemetryMonitor::publish(const TelemetryReadout& readout) {
    using Self = TelemetryMonitor;
    const auto show = [this](double& field, double fresh, void (Self::*changed)()) {
        if (differsVisibly(field, fresh)) {
            store(this, field, fresh, changed);
        }
    };
    store(this, isReading_, false, &Self::isReadingChanged);
    store(this, fans_, readout.fans, &Self::fansChanged);
    if (readout.sensors) {
        store(this, sensors_, *readout.sensors, &Self::sensorsChanged);
    }
    show(cpuMaxTemp_, readout.summary.cpuTemperature, &Self::cpuMaxTempChanged);
    show(gpuMaxTemp_, readout.summary.gpuTemperature, &Self::gpuMaxTempChanged);
    show(systemPowerWatts_, readout.summary.systemPower, &Self::systemPowerWattsChanged);
    store(this, summaryText_, readout.summaryText, &Self::summaryTextChanged);
    history_.push_back(readout.sample);
    if (history_.size() > historyLength) {
        history_.erase(history_.begin());
    }
    Q_EMIT historyChanged();
    Q_EMIT published(readout);
}

} // namespace ventaro
