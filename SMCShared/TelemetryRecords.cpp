#include "TelemetryRecords.h"

#include "JsonObject.h"

#include <algorithm>

namespace ventaro {

double FanReading::percentage() const {
    if (!(minRPM < maxRPM)) {
        return 0;
    }
    return std::clamp((currentRPM - minRPM) / (maxRPM - minRPM), 0.0, 1.0);
}

std::string_view rawValue(SensorCategory category) {
    switch (category) {
    case SensorCategory::cpu:
        return "CPU";
    case SensorCategory::gpu:
        return "GPU";
    case SensorCategory::heatsink:
        return "Kühlsystem & Gehäuse";
    case SensorCategory::storageAndBoard:
        return "Board & SSD";
    case SensorCategory::battery:
        return "Akku";
    case SensorCategory::power:
        return "Leistung (Watt)";
    }
    return {};
}

std::string encodeJson(const FanReading& reading) {
    return JsonObjectWriter()
        .integer("id", reading.id)
        .string("name", reading.name)
        .number("currentRPM", reading.currentRPM)
        .number("targetRPM", reading.targetRPM)
        .number("minRPM", reading.minRPM)
        .number("maxRPM", reading.maxRPM)
        .integer("mode", rawValue(reading.mode))
        .text();
}

std::string encodeJson(const SensorReading& reading) {
    return JsonObjectWriter()
        .string("key", reading.key)
        .string("name", reading.name)
        .string("category", rawValue(reading.category))
        .number("value", reading.value)
        .string("unit", reading.unit)
        .text();
}

} // namespace ventaro
