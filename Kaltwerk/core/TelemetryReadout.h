#pragma once

#include "TelemetryRecords.h"
#include "TelemetrySample.h"
#include "TelemetrySummary.h"

#include <optional>
#include <string>
#include <vector>

namespace ventaro {

class Clock;
class SMCService;

/// What one look at the machine has found.
struct TelemetryReadout {
    std::vector<FanReading> fans;
    std::optional<std::vector<SensorReading>> sensors; ///< of a full sweep only
    TelemetrySummary summary;
    TelemetrySample sample;
    std::string summaryText;
};

/// Reads the fans, and either all sensors or the three to six keys that the summary takes. Blocks;
/// any thread.
TelemetryReadout readTelemetry(SMCService& smc, const Clock& clock, bool includeAllSensors);

} // namespace ventaro
