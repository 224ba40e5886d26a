#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ventaro {

/// Who steers a fan.
enum class FanMode : std::int64_t {
    automatic = 0, ///< the SMC's own regulation
    forced = 1,    ///< a target speed written by this system
};

constexpr std::int64_t rawValue(FanMode mode) { return static_cast<std::int64_t>(mode); }

/// One fan as read from the SMC; identified by `id`. All speeds in RPM.
struct FanReading {
    std::int64_t id = 0; ///< index in the SMC, from 0
    std::string name;    ///< German display name
    double currentRPM = 0;
    double targetRPM = 0;
    double minRPM = 0;
    double maxRPM = 0;
    FanMode mode = FanMode::automatic;

    /// Where the current speed lies between minimum and maximum, 0 to 1; 0 for an empty range.
    double percentage() const;

    bool operator==(const FanReading&) const = default;
};

/// The groups of sensors, in the order in which they are shown.
enum class SensorCategory { cpu, gpu, heatsink, storageAndBoard, battery, power };

constexpr std::array<SensorCategory, 6> allSensorCategories{
    SensorCategory::cpu,      SensorCategory::gpu,
    SensorCategory::heatsink, SensorCategory::storageAndBoard,
    SensorCategory::battery,  SensorCategory::power,
};

/// The German group title, which is also the JSON value.
std::string_view rawValue(SensorCategory category);

/// One sensor value; identified by its key.
struct SensorReading {
    std::string key; ///< four-character SMC key
    std::string name;
    SensorCategory category = SensorCategory::cpu;
    double value = 0; ///< in `unit`
    std::string unit; ///< "°C" or "W"

    const std::string& id() const { return key; }

    bool operator==(const SensorReading&) const = default;
};

/// JSON with the fields' names as keys. Throws EncodingError for a number that is not finite.
std::string encodeJson(const FanReading& reading);
std::string encodeJson(const SensorReading& reading);

} // namespace ventaro
