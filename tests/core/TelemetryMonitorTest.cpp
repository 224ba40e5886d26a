#include "TelemetryMonitor.h"

#include "ControllerFixture.h"
#include "HardwareInventory.h"

#include <cmath>

namespace ventaro {
namespace {

class TelemetryMonitorTest : public ControllerFixture {
protected:
    void read(double figure) {
        for (const char* key : {"TCXC", "TGDD", "PDTR"}) {
            setKey(key, figure);
        }
        read();
        EXPECT_NEAR(monitor_.history().back().cpuTemp, figure, 1e-4) << "as read";
        EXPECT_NEAR(monitor_.history().back().systemWatts, figure, 1e-4);
    }
    /// The sweep that is asked for while a readout is under way is dropped.
    TelemetrySample read() {
        monitor_.refresh(false);
        monitor_.refresh(true);
        EXPECT_TRUE(monitor_.isReading());
        tasks_.runAll();
        EXPECT_FALSE(monitor_.isReading());
        EXPECT_TRUE(monitor_.sensors().empty());
        return monitor_.history().back();
    }
    void expectFigures(double cpu, double gpu, double watts) const {
        EXPECT_NEAR(monitor_.cpuMaxTemp(), cpu, 1e-4);
        EXPECT_NEAR(monitor_.gpuMaxTemp(), gpu, 1e-4);
        EXPECT_NEAR(monitor_.systemPowerWatts(), watts, 1e-4);
    }

    TelemetryMonitor monitor_{machine_.service, *session_.clock, tasks_};
};

TEST_F(TelemetryMonitorTest, FiguresMoveByATenthAndTheHistoryIsTwoMinutesLong) {
    const std::pair<double, double> rows[] = {
        {60, 60}, {60.05, 60}, {60.12, 60.12}, {60.03, 60.12}};
    for (const auto& [figure, shown] : rows) {
        read(figure);
        expectFigures(shown, shown, shown);
    }
    for (int count = 0; count < 61; ++count) {
        clock().time += std::chrono::seconds(2);
        read(50);
    }
    ASSERT_EQ(monitor_.history().size(), 60U);
    EXPECT_EQ(monitor_.history().back().timestamp, clock().time);
    EXPECT_EQ(monitor_.history().front().timestamp, clock().time - std::chrono::seconds(118));
}

TEST_F(TelemetryMonitorTest, TheFastReadoutTakesWhatItsKeysSay) {
    setKey("F0Ac", 2156.5);
    read(63.4);
    EXPECT_EQ(monitor_.summaryText(), "2157 RPM · 63°C");
    setKey("PDTR", 0); // a reading like any other
    setRaw("TCXC", std::vector<std::uint8_t>{0x00, 0x00, 0x80, 0x7f});
    EXPECT_EQ(read().systemWatts, 0);
    EXPECT_EQ(monitor_.summaryText(), "2157 RPM · --°C");
    EXPECT_TRUE(std::isinf(monitor_.cpuMaxTemp()));
    const auto fail = [&](std::initializer_list<const char*> keys) {
        for (const char* key : keys) {
            machine_.smc.faults().add(std::string(key) + " read-fails");
        }
    };
    fail({"TCXC", "TGDD", "PDTR"});
    machine_.smc.faults().add("TC0F value 8100");
    EXPECT_EQ(read().cpuTemp, -127) << "no filter here";
    setKey("TC0F", 41);
    setKey("TG0P", 42);
    setKey("PSTR", 43);
    read();
    expectFigures(41, 42, 43);
    fail({"TC0F", "TG0P", "PSTR"});
    setKey("FNum", 0);
    EXPECT_EQ(read().fan0RPM, 0);
    EXPECT_EQ(monitor_.summaryText(), "0 RPM · 0°C");
    expectFigures(0, 0, 0);
}

using HardwareInventoryTest = ControllerFixture;

TEST_F(HardwareInventoryTest, IsLoadedOnceAndAnewOnRequest) {
    HardwareInventory inventory(inspector_, tasks_);
    for (const int runs : {1, 2}) {
        inventory.reload();
        inventory.ensureLoaded();
        inventory.reload();
        EXPECT_TRUE(inventory.isLoading());
        tasks_.runAll();
        EXPECT_FALSE(inventory.isLoading());
        inventory.ensureLoaded();
        EXPECT_EQ(host_.runs, runs);
        EXPECT_EQ(inventory.sections().size(), 6U);
    }
}

} // namespace
} // namespace ventaro
