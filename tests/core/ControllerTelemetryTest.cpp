#include "ControllerFixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Controller = FanControllerViewModel;
using ControllerTelemetryTest = ControllerFixture;

TEST_F(ControllerTelemetryTest, AFirstStartReadsTheMachineAndSendsNothing) {
    const Controller& controller = make();
    EXPECT_EQ(controller.activeProfile(), ControlProfile::systemAuto);
    EXPECT_EQ(controller.fans().size(), 2U) << "read before the first refresh is through";
    EXPECT_EQ(controller.menuBarSummaryText(), "-- RPM · --°C");
    EXPECT_TRUE(controller.isPollingInFlight());
    EXPECT_TRUE(controller.sensors().empty());
    EXPECT_FALSE(controller.linkFansInManualMode());
    EXPECT_TRUE(controller.resetToAutoOnQuit());
    EXPECT_TRUE(controller.startMinimized());
    EXPECT_FALSE(controller.launchAtLogin());
    EXPECT_EQ(controller.curveSensorSource(), CurveSensorSource::maxCpuGpu);
    ASSERT_EQ(controller.curvePoints().size(), 4U);
    EXPECT_NE(controller.curvePoints()[0].id, controller.curvePoints()[1].id);
    EXPECT_THAT(clock().intervals, ElementsAre(std::chrono::seconds(2)));
    EXPECT_EQ(tasks_.waiting(), 2U) << "the sweep and the check";

    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping"));
    EXPECT_FALSE(controller.isPollingInFlight());
    EXPECT_GT(controller.sensors().size(), 30U);
    EXPECT_GT(controller.cpuMaxTemp(), 20);
    EXPECT_TRUE(controller.isHelperInstalled());
    EXPECT_EQ(controller.history().size(), 1U);
    EXPECT_FALSE(controller.hasStatusMessage());
}

TEST_F(ControllerTelemetryTest, TicksSweepAndCheckInTheirRhythm) {
    Controller& controller = settled();
    std::string sweeps;
    std::string checks;
    clock().tick();
    QCoreApplication::processEvents();
    EXPECT_EQ(controller.tickCount(), 0) << "the fire only puts the tick behind";
    tasks_.deliver();
    for (int count = 1; count <= 13; ++count) {
        if (count > 1) {
            tick();
        }
        EXPECT_EQ(controller.tickCount(), count);
        tasks_.runAll();
        const std::size_t exchanges = machine_.taken().size();
        EXPECT_TRUE(exchanges == 14 || exchanges > 40) << exchanges;
        sweeps += exchanges == 14 ? "" : std::to_string(count) + " ";
        checks += helper_.taken().empty() ? "" : std::to_string(count) + " ";
    }
    EXPECT_EQ(sweeps, "1 4 7 10 13 ");
    EXPECT_EQ(checks, "4 8 12 ");
    controller.setSensorsTabVisible(true);
    tick();
    tasks_.runAll();
    EXPECT_GT(machine_.taken().size(), 40U) << "tick 14 with the sensors in view";
}

TEST_F(ControllerTelemetryTest, AnSmcThatGoesAndComesBackIsReadAgain) {
    Controller& controller = settled();
    machine_.smc.faults().add("service gone");
    for (int count = 1; count <= 4; ++count) { // tick 1 sweeps, and all that have found nothing
        const bool isGone = count == 2 || count == 3;
        EXPECT_EQ(controller.sensors().empty(), isGone);
        EXPECT_EQ(controller.cpuMaxTemp() == 0, isGone);
        if (count == 3) {
            machine_.smc.faults().clear();
        }
        tick();
        tasks_.runAll();
    }
}

TEST_F(ControllerTelemetryTest, ARefreshWhileOneRunsIsDroppedAndFiguresMoveByATenthOnly) {
    Controller& controller = settled();
    const auto read = [&](double figure) {
        for (const char* key : {"TCXC", "TGDD", "PDTR"}) {
            setKey(key, figure);
        }
        machine_.taken();
        controller.refreshTelemetryAsync(false);
        controller.refreshTelemetryAsync(true);
        tasks_.runAll();
        EXPECT_EQ(machine_.taken().size(), 14U) << "never the sweep that was asked for second";
        EXPECT_NEAR(controller.history().back().cpuTemp, figure, 1e-4) << "as read";
        EXPECT_NEAR(controller.history().back().systemWatts, figure, 1e-4);
    };
    const std::pair<double, double> rows[] = {
        {60, 60}, {60.05, 60}, {60.12, 60.12}, {60.03, 60.12}};
    for (const auto& [figure, shown] : rows) {
        read(figure);
        EXPECT_NEAR(controller.cpuMaxTemp(), shown, 1e-4);
        EXPECT_NEAR(controller.gpuMaxTemp(), shown, 1e-4);
        EXPECT_NEAR(controller.systemPowerWatts(), shown, 1e-4);
    }
    for (int count = 0; count < 61; ++count) {
        clock().time += std::chrono::seconds(2);
        read(50);
    }
    ASSERT_EQ(controller.history().size(), 60U);
    EXPECT_EQ(controller.history().back().timestamp, clock().time);
    EXPECT_EQ(controller.history().front().timestamp, clock().time - std::chrono::seconds(118));
}

TEST_F(ControllerTelemetryTest, TheFastReadoutTakesWhatItsKeysSay) {
    Controller& controller = settled();
    const auto read = [&] {
        refresh();
        return controller.history().back();
    };
    setKey("F0Ac", 2156.5);
    setKey("TCXC", 63.4);
    read();
    EXPECT_EQ(controller.menuBarSummaryText(), "2157 RPM · 63°C");
    setKey("PDTR", 0); // a reading like any other
    setRaw("TCXC", std::vector<std::uint8_t>{0x00, 0x00, 0x80, 0x7f});
    EXPECT_EQ(read().systemWatts, 0);
    EXPECT_EQ(controller.menuBarSummaryText(), "2157 RPM · --°C");
    EXPECT_TRUE(std::isinf(controller.cpuMaxTemp()));
    for (const char* key : {"TCXC", "TGDD", "PDTR"}) {
        machine_.smc.faults().add(std::string(key) + " read-fails");
    }
    machine_.smc.faults().add("TC0F value 8100");
    EXPECT_EQ(read().cpuTemp, -127) << "no filter here";
    setKey("TC0F", 41);
    setKey("TG0P", 42);
    setKey("PSTR", 43);
    EXPECT_EQ(read().cpuTemp, 41);
    EXPECT_EQ(controller.gpuMaxTemp(), 42);
    EXPECT_EQ(controller.systemPowerWatts(), 43);
    for (const char* key : {"TC0F", "TG0P", "PSTR"}) {
        machine_.smc.faults().add(std::string(key) + " read-fails");
    }
    setKey("FNum", 0);
    EXPECT_EQ(read().fan0RPM, 0);
    EXPECT_EQ(controller.menuBarSummaryText(), "0 RPM · 0°C");
    EXPECT_EQ(controller.gpuMaxTemp(), 0);
}

TEST_F(ControllerTelemetryTest, TheInventoryIsLoadedOnceAndAnewOnRequest) {
    Controller& controller = settled();
    controller.ensureHardwareSpecsLoaded();
    controller.ensureHardwareSpecsLoaded();
    controller.refreshHardwareSpecs();
    EXPECT_TRUE(controller.isLoadingHardwareInfo());
    tasks_.runAll();
    EXPECT_FALSE(controller.isLoadingHardwareInfo());
    controller.ensureHardwareSpecsLoaded();
    EXPECT_EQ(host_.runs, 1);
    EXPECT_EQ(controller.hardwareSections().size(), 6U);
    controller.refreshHardwareSpecs();
    tasks_.runAll();
    EXPECT_EQ(host_.runs, 2);
}

TEST_F(ControllerTelemetryTest, ChecksFollowTheHelperAndCompetingPrograms) {
    Controller& controller = settled();
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut", 2); });
    using List = RunningApplications::List;
    const std::pair<List, bool> rows[] = {
        {{{"Terminal", "com.example.terminal"}, {"macs FAN control", ""}}, true},
        {{{"", "COM.TunaBelly.TGPro"}}, true},
        {{{"Fan Control", "macs fan control"}, {"tgpro", "macsfan"}}, false},
    };
    for (const auto& [list, isCompeting] : rows) {
        applications().list = list;
        controller.checkHelperAndConflictsAsync();
        tasks_.runAll();
        EXPECT_EQ(controller.competingProcessDetected(), isCompeting);
        EXPECT_FALSE(controller.isHelperInstalled());
    }
    EXPECT_FALSE(controller.hasStatusMessage());
}

TEST_F(ControllerTelemetryTest, TerminationResetsIfTheUserWantsItAndAHelperAnswers) {
    Controller& controller = settled();
    controller.handleAppTermination();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset"));
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut", 2); });
    controller.handleAppTermination();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping"));
    controller.setResetToAutoOnQuit(false);
    controller.handleAppTermination();
    EXPECT_THAT(helper_.taken(), IsEmpty());
}

TEST_F(ControllerTelemetryTest, AfterTheShutdownNothingIsSent) {
    Controller& controller = settled();
    controller.selectProfile(ControlProfile::turbo); // has not begun when the end comes
    clock().tick();
    QCoreApplication::processEvents(); // nor has this tick
    controller.shutdown();
    controller.shutdown();
    controller.startMonitoring();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset"));
    EXPECT_FALSE(controller.isMonitoring());
    EXPECT_TRUE(host_.hasEnded);
    controller.selectProfile(ControlProfile::silent);
    controller.selectProfile(ControlProfile::systemAuto);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), IsEmpty());
    EXPECT_FALSE(controller.hasStatusMessage());
    EXPECT_EQ(controller.tickCount(), 0);
}

TEST_F(ControllerTelemetryTest, ALateResultFindsNobody) {
    make();
    controller_->selectProfile(ControlProfile::turbo);
    while (tasks_.waiting() > 0) {
        tasks_.work();
    }
    audit_.reset();
    controller_.reset();
    tasks_.deliver(); // the address sanitizer would tell
}

} // namespace
} // namespace ventaro
