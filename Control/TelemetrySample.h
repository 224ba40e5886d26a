#pragma once

#include "UUID.h"

#include <chrono>

namespace ventaro {

/// One entry of the telemetry history, with the values as they were read; identified by `id`.
struct TelemetrySample {
    UUID id = UUID::random();
    std::chrono::system_clock::time_point timestamp;
    double cpuTemp = 0; ///< °C
    double gpuTemp = 0; ///< °C
    double fan0RPM = 0; ///< 0 without the fan
    double fan1RPM = 0;
    double systemWatts = 0;

    bool operator==(const TelemetrySample&) const = default;
};

} // namespace ventaro
