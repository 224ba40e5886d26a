#include "TelemetryRecords.h"

#include "JsonObject.h"

#include <algorithm>

namespace ventaro {

std::optional<FanMode> fanModeFromRawValue(std::int64_t raw) {
    for (const FanMode mode : {FanMode::automatic, FanMode::forced}) {
        if (rawValue(mode) == raw) {
            return mode;
        }
    }
    return std::nullopt;
}

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

std::optional<SensorCategory> sensorCategoryFromRawValue(std::string_view raw) {
    const auto* found =
        std::find_if(allSensorCategories.begin(), allSensorCategories.end(),
                     [raw](SensorCategory category) { return rawValue(category) == raw; });
    return found == allSensorCategories.end() ? std::nullopt : std::optional(*found);
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

FanReading decodeFanReading(std::string_view json) {
    const JsonObjectReader object(json);
    FanReading reading;
    reading.id = object.integer("id");
    reading.name = object.string("name");
    reading.currentRPM = object.number("currentRPM");
    reading.targetRPM = object.number("targetRPM");
    reading.minRPM = object.number("minRPM");
    reading.maxRPM = object.number("maxRPM");
    const auto mode = fanModeFromRawValue(object.integer("mode"));
    if (!mode) {
        throw DecodingError(DecodingError::Reason::unknownValue, "mode");
    }
    reading.mode = *mode;
    return reading;
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

SensorReading decodeSensorReading(std::string_view json) {
    const JsonObjectReader object(json);
    SensorReading reading;
    reading.key = object.string("key");
    reading.name = object.string("name");
    const auto category = sensorCategoryFromRawValue(object.string("category"));
    if (!category) {
        throw DecodingError(DecodingError::Reason::unknownValue, "category");
    }
    reading.category = *category;
    reading.value = object.number("value");
    reading.unit = object.string("unit");
    return reading;
}

} // namespace ventaro
