#include "LiveSensors.h"

#include "Workload.h"

#include <array>
#include <cmath>

namespace ventaro {

namespace {

enum class Place { cpu, gpu, leftPipe, rightPipe, board, battery, air };

double temperatureAt(const ThermalModel& model, Place place) {
    return place == Place::air ? ThermalModel::ambient
                               : model.temperature(static_cast<ThermalNode>(place));
}

enum class Resolution { fine, wholeDegrees };

/// A sensor sits between two nodes: at `share` of the way from `near` to `far`, plus `offset`.
struct TemperatureRow {
    const char* key;
    Place near;
    Place far;
    double share;
    double offset;  // °C, as measured at idle
    double perWatt; // °C per W of CPU power, the gradient across the die
    Resolution resolution;
};

// Offsets follow the measured machines at idle. Digital sensors of the processors read whole
// degrees.
constexpr std::array<TemperatureRow, 41> temperatures{{
    {"TCXC", Place::cpu, Place::cpu, 0, 1.5, -0.02, Resolution::fine},
    {"TC0F", Place::cpu, Place::cpu, 0, 2.6, -0.03, Resolution::fine},
    {"TC0E", Place::cpu, Place::cpu, 0, 2.0, -0.03, Resolution::fine},
    {"TC0P", Place::cpu, Place::board, 0.5, -0.5, 0, Resolution::fine},
    {"TCSA", Place::cpu, Place::board, 0.4, 2.0, 0, Resolution::wholeDegrees},
    {"TCGC", Place::cpu, Place::cpu, 0, -1.0, -0.05, Resolution::wholeDegrees},
    {"TCMX", Place::cpu, Place::cpu, 0, 3.0, -0.03, Resolution::wholeDegrees},
    {"TC1C", Place::cpu, Place::cpu, 0, 0.9, -0.03, Resolution::wholeDegrees},
    {"TC2C", Place::cpu, Place::cpu, 0, 2.8, -0.04, Resolution::wholeDegrees},
    {"TC3C", Place::cpu, Place::cpu, 0, 0.2, -0.03, Resolution::wholeDegrees},
    {"TC4C", Place::cpu, Place::cpu, 0, 1.1, -0.02, Resolution::wholeDegrees},
    {"TC5C", Place::cpu, Place::cpu, 0, -0.7, -0.02, Resolution::wholeDegrees},
    {"TC6C", Place::cpu, Place::cpu, 0, -0.9, -0.03, Resolution::wholeDegrees},
    {"TC7C", Place::cpu, Place::cpu, 0, -1.6, -0.02, Resolution::wholeDegrees},
    {"TC8C", Place::cpu, Place::cpu, 0, -1.4, -0.03, Resolution::wholeDegrees},
    {"TGDD", Place::gpu, Place::gpu, 0, 0.4, 0, Resolution::wholeDegrees},
    {"TGDE", Place::gpu, Place::gpu, 0, 0.4, 0, Resolution::wholeDegrees},
    {"TGDF", Place::gpu, Place::gpu, 0, 0.1, 0, Resolution::fine},
    {"TG0P", Place::gpu, Place::board, 0.5, 1.0, 0, Resolution::fine},
    {"TG1P", Place::gpu, Place::board, 0.6, 0.3, 0, Resolution::fine},
    {"TGVF", Place::gpu, Place::board, 0.3, 0.1, 0, Resolution::fine},
    {"TGVP", Place::gpu, Place::board, 0.3, 0.1, 0, Resolution::fine},
    {"Th1H", Place::leftPipe, Place::board, 0.6, 2.2, 0, Resolution::fine},
    {"Th2H", Place::rightPipe, Place::board, 0.6, 4.1, 0, Resolution::fine},
    {"TaLC", Place::board, Place::leftPipe, 0.2, 4.4, 0, Resolution::fine},
    {"TaRC", Place::board, Place::rightPipe, 0.5, 0.1, 0, Resolution::fine},
    {"TA0V", Place::air, Place::air, 0, 1.2, 0, Resolution::fine},
    {"Ts0P", Place::air, Place::board, 0.6, 0.5, 0, Resolution::fine},
    {"Ts1P", Place::air, Place::board, 0.45, 0.4, 0, Resolution::fine},
    {"Tm0P", Place::board, Place::board, 0, 1.8, 0, Resolution::fine},
    {"TM0P", Place::board, Place::board, 0, -0.7, 0, Resolution::fine},
    {"TPCD", Place::board, Place::board, 0, 3.6, 0, Resolution::wholeDegrees},
    {"TW0P", Place::board, Place::air, 0.07, 0, 0, Resolution::fine},
    {"TH0a", Place::board, Place::air, 0.25, 0.3, 0, Resolution::fine},
    {"TH0b", Place::board, Place::air, 0.12, 0.1, 0, Resolution::fine},
    {"TTLD", Place::board, Place::air, 0.2, 8.5, 0, Resolution::fine},
    {"TTRD", Place::board, Place::air, 0.5, 0.2, 0, Resolution::fine},
    {"TB0T", Place::battery, Place::battery, 0, 1.2, 0, Resolution::fine},
    {"TB1T", Place::battery, Place::battery, 0, 0.7, 0, Resolution::fine},
    {"TB2T", Place::battery, Place::battery, 0, 0.2, 0, Resolution::fine},
    {"Ts0S", Place::board, Place::air, 0.25, 0.1, 0, Resolution::fine},
}};

constexpr double noiseAmplitude = 0.15; // °C

} // namespace

void computeSensors(const ThermalModel& model, std::uint64_t seed, std::int64_t instant,
                    const std::function<void(std::string_view key, double value)>& publish) {
    const PowerDraw& power = model.drawn();
    std::uint64_t stream = 100; // apart from the workload's
    for (const TemperatureRow& row : temperatures) {
        const double near = temperatureAt(model, row.near);
        const double far = temperatureAt(model, row.far);
        const double value = near + (far - near) * row.share + row.offset +
                             row.perWatt * power.cpu +
                             noiseAmplitude * noiseAt(seed, stream++, instant);
        publish(row.key, row.resolution == Resolution::fine ? value : std::round(value));
    }
    // Mains power through an adapter of usual efficiency, the battery full and held there.
    constexpr double adapterEfficiency = 0.93;
    const double trickle = 0.3 + 0.1 * noiseAt(seed, stream, instant);
    publish("PC0R", power.cpu);
    publish("PG0R", power.gpu);
    publish("PM0C", power.memory);
    publish("PSTR", power.total());
    publish("PPBR", trickle);
    publish("PDTR", (power.total() + trickle) / adapterEfficiency);
}

} // namespace ventaro
