#include "TelemetrySummary.h"

#include "NumberFormat.h"

#include <algorithm>

namespace ventaro {

namespace {

std::optional<double> hottestOf(std::span<const SensorReading> sensors, SensorCategory category) {
    std::optional<double> hottest;
    for (const SensorReading& sensor : sensors) {
        if (sensor.category == category && (!hottest || sensor.value > *hottest)) {
            hottest = sensor.value;
        }
    }
    return hottest;
}

double firstOf(std::optional<double> preferred, std::optional<double> fallback) {
    return preferred ? *preferred : fallback.value_or(0);
}

} // namespace

std::optional<double> valueOf(std::span<const SensorReading> sensors, std::string_view key) {
    const auto found = std::find_if(sensors.begin(), sensors.end(),
                                    [key](const auto& sensor) { return sensor.key == key; });
    return found == sensors.end() ? std::nullopt : std::optional(found->value);
}

TelemetrySummary summarize(std::span<const SensorReading> sensors) {
    return {firstOf(valueOf(sensors, cpuPackageKey), hottestOf(sensors, SensorCategory::cpu)),
            firstOf(valueOf(sensors, gpuDieKey), hottestOf(sensors, SensorCategory::gpu)),
            firstOf(valueOf(sensors, adapterPowerKey), valueOf(sensors, systemPowerKey))};
}

std::string summaryText(double rpm, double celsius) {
    return formatRounded(rpm) + " RPM · " + formatRounded(celsius) + "°C";
}

} // namespace ventaro
