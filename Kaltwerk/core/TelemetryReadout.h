#pragma once

#include "FanReadBack.h"
#include "TelemetryRecords.h"
#include "TelemetrySample.h"
#include "TelemetrySummary.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

class Clock;
class SMCService;

/// What one look at the machine has found.
struct TelemetryReadout {
    std::uint64_t number = 0; ///< in the order in which readouts began, from 1
    std::vector<FanReading> fans;
    std::vector<FanReadBack> readBacks;
    std::optional<std::vector<SensorReading>> sensors; ///< of a full sweep only
    TelemetrySummary summary;
    /// What the fans can be steered by, °C: of the package, else of the die beside it, the same
    /// with and without a sweep; no value unless one is plausible.
    std::optional<double> cpuCelsius;
    std::optional<double> gpuCelsius;

    /// Whether anything has answered at all.
    bool hasSmcAnswered() const;
    TelemetrySample sample;
    std::string summaryText;
};

/// Reads the fans, and either all sensors or the three to six keys that the summary takes. Blocks;
/// any thread.
TelemetryReadout readTelemetry(SMCService& smc, const Clock& clock, bool includeAllSensors);

} // namespace ventaro
