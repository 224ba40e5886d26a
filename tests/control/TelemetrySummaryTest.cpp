#include "TelemetrySummary.h"

#include "TemperatureBand.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ventaro {
namespace {

TEST(TemperatureBands, BeginAtTheirLowerBounds) {
    const std::pair<double, TemperatureBand> rows[] = {
        {85, TemperatureBand::red},          {84.9, TemperatureBand::orange},
        {70, TemperatureBand::orange},       {69.9, TemperatureBand::yellow},
        {55, TemperatureBand::yellow},       {54.9, TemperatureBand::green},
        {-INFINITY, TemperatureBand::green}, {std::nan(""), TemperatureBand::green},
    };
    for (const auto& [value, band] : rows) {
        EXPECT_EQ(temperatureBand(value), band) << value;
    }
}

SensorReading sensor(const char* key, SensorCategory category, double value) {
    return {key, "", category, value, ""};
}

TEST(TelemetrySummaries, PreferTheNamedSensors) {
    using enum SensorCategory;
    struct Row {
        std::vector<SensorReading> sensors;
        double cpu, gpu, power;
    };
    const Row rows[] = {
        {{}, 0, 0, 0},
        {{sensor("TC0F", cpu, 70), sensor("TCXC", cpu, 60), sensor("TG0P", gpu, 50),
          sensor("TGDD", gpu, 40), sensor("PSTR", power, 20), sensor("PDTR", power, 0)},
         60,
         40,
         0},
        {{sensor("TC0F", cpu, 50), sensor("TC0E", cpu, 70), sensor("TG0P", gpu, 45),
          sensor("TG1P", gpu, 44), sensor("PC0R", power, 99), sensor("PSTR", power, 20)},
         70,
         45,
         20},
        {{sensor("PC0R", power, 99)}, 0, 0, 0},
    };
    for (const Row& row : rows) {
        const TelemetrySummary summary = summarize(row.sensors);
        EXPECT_EQ(summary.cpuTemperature, row.cpu);
        EXPECT_EQ(summary.gpuTemperature, row.gpu);
        EXPECT_EQ(summary.systemPower, row.power);
    }
}

} // namespace
} // namespace ventaro
