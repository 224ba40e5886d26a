#include "InProcessMachine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace ventaro {
namespace {

using namespace testing;

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
    const std::pair<const char*, double> kept[] = {{"TC0P value 0501", 5.00390625},
                                                   {"TC0P value 7CFF", 124.99609375},
                                                   {"PSTR value 00000000", 0},
                                                   {"PSTR value 00000080", -0.0},
                                                   {"PSTR value FFFF7943", 249.9999847412109375}};
    for (const auto& [fault, value] : kept) {
        InProcessMachine machine;
        machine.smc.faults().add(fault);
        EXPECT_THAT(machine.service.readSensors(),
                    Contains(AllOf(Field(&SensorReading::key, std::string(fault, 4)),
                                   Field(&SensorReading::value, value))));
    }
    // 5.0, 125.0 and -127.0, which means no sensor; infinity, 250.0 and -0.005.
    for (const char* fault :
         {"TC0P value 0500", "TC0P value 7D00", "TC0P value 8100", "PSTR value 0000807F",
          "PSTR value nan", "PSTR value 00007A43", "PSTR value 0AD7A3BB", "TC0P type si16",
          "TC0P size 1", "TC0P read-fails", "TC0P info-fails"}) {
        InProcessMachine machine;
        machine.smc.faults().add(fault);
        EXPECT_THAT(machine.service.readSensors(),
                    AllOf(SizeIs(40), Each(Field(&SensorReading::key, Ne(std::string(fault, 4))))))
            << fault << ": one bad key costs only its row";
    }
    InProcessMachine machine;
    machine.service.close();
    machine.smc.faults().add("service gone");
    EXPECT_THAT(machine.service.readSensors(), IsEmpty());
}

} // namespace
} // namespace ventaro
