#pragma once

#include "TelemetryRecords.h"

#include <span>
#include <string>

namespace ventaro {

/// The three figures that stand for the whole machine; 0 for what no sensor tells.
struct TelemetrySummary {
    double cpuTemperature = 0; ///< °C
    double gpuTemperature = 0; ///< °C
    double systemPower = 0;    ///< W
};

/// From a full sweep: the package sensor, else the hottest of its group; the adapter's power, else
/// the system's.
TelemetrySummary summarize(std::span<const SensorReading> sensors);

/// The status item's text, "2157 RPM · 63°C": a speed and a temperature, rounded; "--" for a number
/// that is not finite.
std::string summaryText(double rpm, double celsius);

} // namespace ventaro
