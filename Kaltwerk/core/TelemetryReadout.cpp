#include "TelemetryReadout.h"

#include "Clock.h"
#include "FanRange.h"
#include "SMCService.h"

namespace ventaro {

namespace {

/// From whatever values the keys hold: each figure's own key, else its neighbour's.
TelemetrySummary readFastSummary(SMCService& smc) {
    const auto read = [&smc](const char* key, const char* fallback) {
        const auto value = smc.readDouble(key);
        return value ? *value : smc.readDouble(fallback).value_or(0);
    };
    TelemetrySummary summary;
    summary.cpuTemperature = read("TCXC", "TC0F");
    summary.gpuTemperature = read("TGDD", "TG0P");
    summary.systemPower = read("PDTR", "PSTR");
    return summary;
}

double speedOf(const FanReading* fan) { return fan != nullptr ? fan->currentRPM : 0; }

} // namespace

TelemetryReadout readTelemetry(SMCService& smc, const Clock& clock, bool includeAllSensors) {
    TelemetryReadout readout;
    readout.fans = smc.readFans();
    if (includeAllSensors) {
        readout.sensors = smc.readSensors();
        readout.summary = summarize(*readout.sensors);
    } else {
        readout.summary = readFastSummary(smc);
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
