#pragma once

#include "TelemetryRecords.h"

#include <span>
#include <string_view>

namespace ventaro {

/// A sensor that the machine is known to have.
struct CatalogSensor {
    const char* key; ///< four-character SMC key, case-sensitive
    const char* name;
    SensorCategory category;
    const char* unit; ///< "°C" or "W"
};

/// The sensors known on the 16-inch MacBook Pro of 2019, in the order in which they are shown.
std::span<const CatalogSensor> sensorCatalog();

/// Whether a working sensor can say `value`, in °C: more than 5, less than 125. Not a number can
/// not.
constexpr bool isPlausibleTemperature(double value) { return value > 5.0 && value < 125.0; }
/// The same in W: from 0 to less than 250.
constexpr bool isPlausiblePower(double value) { return value >= 0.0 && value < 250.0; }
bool isPlausible(std::string_view unit, double value);

} // namespace ventaro
