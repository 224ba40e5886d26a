#include "TelemetryReadout.h"

#include "Clock.h"
#include "FanRange.h"
#include "SMCService.h"
#include "SensorCatalog.h"

#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

/// A figure's own key and its neighbour's, each read when it is needed.
class FastFigure {
public:
    FastFigure(SMCService& smc, const char* key, const char* neighbour)
        : smc_(smc), own_(smc.readDouble(key)), neighbourKey_(neighbour) {}

    /// Whatever value the keys hold; 0 if neither reads.
    double value() { return own_ ? *own_ : neighbour().value_or(0); }
    /// The first that a working sensor can say.
    std::optional<double> plausibleCelsius() {
        const auto plausible = [](std::optional<double> celsius) {
            return celsius && isPlausibleTemperature(*celsius) ? celsius : std::nullopt;
        };
        const auto own = plausible(own_);
        return own ? own : plausible(neighbour());
    }

private:
    std::optional<double> neighbour() {
        if (neighbourKey_ != nullptr) {
            neighbour_ = smc_.readDouble(std::exchange(neighbourKey_, nullptr));
        }
        return neighbour_;
    }

    SMCService& smc_;
    std::optional<double> own_;
    std::optional<double> neighbour_;
    const char* neighbourKey_; ///< null once it has been read
};

void readFast(SMCService& smc, TelemetryReadout& readout) {
    FastFigure cpu(smc, cpuPackageKey, cpuDieKey);
    FastFigure gpu(smc, gpuDieKey, gpuProximityKey);
    FastFigure power(smc, adapterPowerKey, systemPowerKey);
    readout.summary = {cpu.value(), gpu.value(), power.value()};
    readout.cpuCelsius = cpu.plausibleCelsius();
    readout.gpuCelsius = gpu.plausibleCelsius();
}

void readAll(SMCService& smc, TelemetryReadout& readout) {
    const auto& sensors = readout.sensors.emplace(smc.readSensors()); // of plausible values
    const auto first = [&sensors](const char* key, const char* neighbour) {
        const auto own = valueOf(sensors, key);
        return own ? own : valueOf(sensors, neighbour);
    };
    readout.summary = summarize(sensors);
    readout.cpuCelsius = first(cpuPackageKey, cpuDieKey);
    readout.gpuCelsius = first(gpuDieKey, gpuProximityKey);
}

double speedOf(const FanReading* fan) { return fan != nullptr ? fan->currentRPM : 0; }

} // namespace

bool TelemetryReadout::hasSmcAnswered() const {
    const auto answers = [](const FanReadBack& fan) {
        return fan.hold != FanHold::unread || fan.targetRPM;
    };
    return cpuCelsius || gpuCelsius || std::any_of(readBacks.begin(), readBacks.end(), answers);
}

TelemetryReadout readTelemetry(SMCService& smc, const Clock& clock, bool includeAllSensors) {
    TelemetryReadout readout;
    FanSurvey survey = smc.surveyFans();
    readout.fans = std::move(survey.fans);
    readout.readBacks = std::move(survey.readBacks);
    if (includeAllSensors) {
        readAll(smc, readout);
    } else {
        readFast(smc, readout);
    }
    TelemetrySample& sample = readout.sample;
    sample.timestamp = clock.now();
    sample.cpuTemp = readout.summary.cpuTemperature;
    sample.gpuTemp = readout.summary.gpuTemperature;
    sample.fan0RPM = speedOf(findFan(readout.fans, 0));
    sample.fan1RPM = speedOf(findFan(readout.fans, 1));
    sample.systemWatts = readout.summary.systemPower;
    readout.summaryText = summaryText(sample.fan0RPM, sample.cpuTemp);
    return readout;
}

} // namespace ventaro
