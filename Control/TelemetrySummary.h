#pragma once

#include "TelemetryRecords.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ventaro {

/// The keys that the figures of the whole machine are read from, each with its neighbour.
constexpr const char* cpuPackageKey = "TCXC";
constexpr const char* cpuDieKey = "TC0F";
constexpr const char* gpuDieKey = "TGDD";
constexpr const char* gpuProximityKey = "TG0P";
constexpr const char* adapterPowerKey = "PDTR";
constexpr const char* systemPowerKey = "PSTR";

/// The value of the sensor with this key; no value if there is none.
std::optional<double> valueOf(std::span<const SensorReading> sensors, std::string_view key);

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
