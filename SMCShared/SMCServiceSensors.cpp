#include "SMCService.h"
#include "SensorCatalog.h"

namespace ventaro {

std::vector<SensorReading> SMCService::readSensors() {
    std::vector<SensorReading> readings;
    readings.reserve(sensorCatalog().size());
    for (const CatalogSensor& row : sensorCatalog()) {
        const std::optional<double> value = readDouble(row.key);
        if (value && isPlausible(row.unit, *value)) {
            readings.push_back({row.key, row.name, row.category, *value, row.unit});
        }
    }
    return readings;
}

} // namespace ventaro
