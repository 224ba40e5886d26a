#include "InProcessMachine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace ventaro {
namespace {

std::optional<double> valueOf(const std::vector<SensorReading>& readings, const char* key) {
    const auto found = std::find_if(readings.begin(), readings.end(),
                                    [key](const auto& reading) { return reading.key == key; });
    return found == readings.end() ? std::nullopt : std::optional(found->value);
}

TEST(SensorSweep, ReadsTheWholeCatalogueWithOneExchangePerSensor) {
    InProcessMachine machine;
    const auto first = machine.service.readSensors();
    ASSERT_EQ(first.size(), 41U);
    EXPECT_EQ(machine.taken().size(), 82U) << "key information and value";
    machine.service.readSensors();
    EXPECT_EQ(machine.taken().size(), 41U);

    EXPECT_EQ(first.front().key, "TCXC");
    EXPECT_EQ(first.back().key, "PPBR");
    EXPECT_TRUE(std::is_sorted(first.begin(), first.end(), [](const auto& a, const auto& b) {
        return a.category < b.category;
    }));
    std::set<std::string> keys;
    for (const SensorReading& reading : first) {
        keys.insert(reading.key);
        EXPECT_EQ(reading.unit, reading.category == SensorCategory::power ? "W" : "°C");
    }
    EXPECT_EQ(keys.size(), first.size());
}

TEST(SensorSweep, DropsImplausibleValues) {
    struct Row {
        const char* fault;
        const char* key;
        std::optional<double> value;
    };
    const Row rows[] = {
        {"TC0P value 0500", "TC0P", std::nullopt},             // 5.0
        {"TC0P value 0501", "TC0P", 5.00390625},               //
        {"TC0P value 7CFF", "TC0P", 124.99609375},             //
        {"TC0P value 7D00", "TC0P", std::nullopt},             // 125.0
        {"TC0P value 8100", "TC0P", std::nullopt},             // -127.0, no sensor
        {"PSTR value 00000000", "PSTR", 0.0},                  //
        {"PSTR value 00000080", "PSTR", -0.0},                 //
        {"PSTR value 0000807F", "PSTR", std::nullopt},         // infinity
        {"PSTR value nan", "PSTR", std::nullopt},              //
        {"PSTR value 00007A43", "PSTR", std::nullopt},         // 250.0
        {"PSTR value FFFF7943", "PSTR", 249.9999847412109375}, //
        {"PSTR value 0AD7A3BB", "PSTR", std::nullopt},         // -0.005
        {"TC0P type si16", "TC0P", std::nullopt},
        {"TC0P size 1", "TC0P", std::nullopt},
        {"TC0P read-fails", "TC0P", std::nullopt},
        {"TC0P info-fails", "TC0P", std::nullopt},
    };
    for (const Row& row : rows) {
        InProcessMachine machine;
        machine.smc.faults().add(row.fault);
        const auto readings = machine.service.readSensors();
        EXPECT_EQ(valueOf(readings, row.key), row.value) << row.fault;
        EXPECT_EQ(readings.size(), row.value ? 41U : 40U) << "one bad key costs only its row";
    }
}

TEST(SensorSweep, IsEmptyWithoutAService) {
    SimulatedSmc smc({});
    InProcessIOKit ioKit(smc, true);
    smc.faults().add("service gone");
    SMCService service(ioKit);
    EXPECT_TRUE(service.readSensors().empty());
}

} // namespace
} // namespace ventaro
