#include "ControllerFixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Controller = FanControllerViewModel;

class FanControllerTest : public ControllerFixture {
protected:
    /// Brings the controller to show this CPU temperature, with the GPU far below it.
    void warmTo(double cpu) {
        setKey("TCXC", cpu);
        setKey("TGDD", 20);
        refresh();
    }
};

TEST_F(FanControllerTest, EachProfileDoesWhatItsRowSays) {
    setLimits(1800, 5600, 1700, 5200);
    Controller& controller = settled();
    struct Row {
        ControlProfile profile;
        std::vector<std::string> requests;
        std::string status;
    };
    const auto set = [](const std::string& left, const std::string& right) {
        return std::vector<std::string>{"ping", "set 0 " + left, "set 1 " + right};
    };
    const auto done = [](const std::string& left, const std::string& right) {
        return "Ziel-Drehzahl gesetzt: Links " + left + " RPM · Rechts " + right + " RPM";
    };
    warmTo(66);
    const Row rows[] = {
        {ControlProfile::silent, set("2370", "2225"), done("2370", "2225")},
        {ControlProfile::balanced, set("3700", "3450"), done("3700", "3450")},
        {ControlProfile::balanced, set("3700", "3450"), done("3700", "3450")},
        {ControlProfile::turbo, set("5600", "5200"), done("5600", "5200")},
        {ControlProfile::manual, set("5600", "5200"), done("5600", "5200")},
        {ControlProfile::smartCurve, set("3510", "3275"), done("5600", "5200")},
        {ControlProfile::smartCurve, set("3510", "3275"), done("5600", "5200")},
        {ControlProfile::systemAuto, {"ping", "reset"}, "gut"},
    };
    for (const Row& row : rows) {
        const auto profile = std::string(rawValue(row.profile));
        controller.selectProfile(row.profile);
        EXPECT_EQ(controller.activeProfile(), row.profile);
        machine_.taken();
        tasks_.runAll();
        EXPECT_EQ(machine_.taken().size(), 14U) << "the readout that follows";
        EXPECT_EQ(helper_.taken(), row.requests) << profile;
        expectStatus(row.status, false);
        EXPECT_EQ(controller.lastAppliedRPMs().size(),
                  row.profile == ControlProfile::systemAuto ? 0U : 2U);
    }
    EXPECT_EQ(make().activeProfile(), ControlProfile::systemAuto) << "at every start";
}

TEST_F(FanControllerTest, PresetsAreSavedBeforeTheyOverwriteTheManualSpeeds) {
    Controller& controller = settled();
    controller.setManualRPMFan0(3333);
    controller.selectProfile(ControlProfile::turbo);
    EXPECT_EQ(controller.manualRPMFan0(), controller.fans()[0].maxRPM);
    EXPECT_EQ(session_.defaults->value<double>("com.ventaro.pref.manualRPMFan0"), 3333);
    tasks_.runAll();
    controller.applyManualSpeeds();
    EXPECT_EQ(controller.activeProfile(), ControlProfile::manual);
    EXPECT_EQ(session_.defaults->value<double>("com.ventaro.pref.manualRPMFan0"),
              controller.fans()[0].maxRPM);
}

TEST_F(FanControllerTest, BothManualSpeedsMoveTogetherAndAreSentInTheManualProfileOnly) {
    setLimits(1800, 5600, 1700, 5200);
    Controller& controller = settled();
    controller.setManualPercentageForBoth(1.7);
    EXPECT_EQ(controller.manualRPMFan0(), 5600);
    controller.setManualPercentageForBoth(-0.3);
    EXPECT_EQ(controller.manualRPMFan1(), 1700);
    EXPECT_EQ(tasks_.waiting(), 0U);
    EXPECT_FALSE(session_.defaults->object("com.ventaro.pref.manualRPMFan0")) << "nor saved";
    controller.applyManualSpeeds();
    controller.setManualPercentageForBoth(0.5);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 3700", "set 1 3450"));
    setKey("FNum", 1);
    refresh();
    helper_.taken();
    controller.applyPresetPercentage(1);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 5600", "set 1 3450"))
        << "a fan that is missing keeps its speed, which is still sent";
}

TEST_F(FanControllerTest, TheCurveFollowsItsSourceAndSendsOnlyWhatMoves) {
    setLimits(1800, 5600, 1700, 5200);
    Controller& controller = settled();
    controller.setCurvePoints({{0, 0}, {100, 100}}); // temperatures are percents
    setKey("TCXC", 70);
    setKey("TGDD", 50);
    refresh();
    const std::pair<CurveSensorSource, double> sources[] = {{CurveSensorSource::maxCpuGpu, 70},
                                                            {CurveSensorSource::cpuPackage, 70},
                                                            {CurveSensorSource::gpuDie, 50}};
    for (const auto& [source, temperature] : sources) {
        controller.setCurveSensorSource(source);
        EXPECT_EQ(controller.currentSourceTemperature(), temperature);
    }
    controller.selectProfile(ControlProfile::smartCurve);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 3700", "set 1 3450"));
    controller.setCurveSensorSource(CurveSensorSource::cpuPackage);
    const std::tuple<double, double, std::vector<std::string>> rows[] = {
        {51.1, 51.1, {}}, // 42 and 39 RPM further
        {51.2, 51.1, {"set 0 3746", "set 1 3492"}},
        {51.2, 51.1, {}},
    };
    for (const auto& [celsius, shown, requests] : rows) {
        warmTo(celsius);
        helper_.taken();
        controller.applySmartCurveStep(false);
        tasks_.runAll();
        EXPECT_NEAR(controller.currentCurveTargetPercent(), shown, 1e-4);
        auto taken = helper_.taken();
        std::erase(taken, "ping");
        EXPECT_EQ(taken, requests) << celsius;
    }
    controller.setCurvePoints({{50, std::nan("")}});
    tasks_.runAll();
    controller.applySmartCurveStep(true);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping")) << "the encoder refuses";
    EXPECT_NE(status().find("rpm"), std::string::npos) << status();
    EXPECT_TRUE(controller.isErrorStatus());
    controller.setCurvePoints({}); // what is not a number equals nothing, as the audit would note
}

TEST_F(FanControllerTest, ACurveThatMayNotSteerLetsGoAndGoesOnLater) {
    Controller& controller = settled();
    warmTo(60);
    const auto steps = [&] { // what a tick sends without the curve having moved
        refresh();
        return helper_.taken();
    };
    helper_.setAnswer([](const HelperRequest& request) {
        return request.action == HelperAction::setFanRPM
                   ? encodeJson(HelperResponse{false, "Zu heiß.", 1, GuardCause::hot})
                   : RecordingHelper::accept("gut");
    });
    controller.selectProfile(ControlProfile::smartCurve);
    tasks_.runAll();
    expectStatus("Der Helper hat die Lüfter freigegeben. Zu heiß. Danach steuert wieder die Kurve.",
                 true);
    helper_.taken();
    EXPECT_THAT(steps(), IsEmpty()) << "the guard is up";
    controller.applySmartCurveStep(true);
    EXPECT_EQ(tasks_.waiting(), 0U);
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
    controller.checkHelperAndConflictsAsync(); // which finds it down
    tasks_.runAll();
    helper_.taken();
    EXPECT_THAT(steps(), ElementsAre("ping", "set 0 2970", "set 1 2750"));

    for (const auto& [key, value] : std::map<std::string, double>{
             {"F0Md", 1}, {"F1Md", 1}, {"F0Tg", 2970}, {"F1Tg", 2750}, {"TCXC", 0}, {"TC0F", 0}}) {
        setKey(key, value);
    }
    EXPECT_THAT(steps(), IsEmpty());
    EXPECT_EQ(controller.cpuMaxTemp(), 0) << "as it is read";
    controller.applySmartCurveStep(false);
    EXPECT_EQ(tasks_.waiting(), 0U) << "one bad reading is none";
    EXPECT_THAT(steps(), ElementsAre("ping", "reset"));
    EXPECT_TRUE(controller.isErrorStatus());
    for (const auto& [key, value] :
         std::map<std::string, double>{{"F0Md", 0}, {"F1Md", 0}, {"TCXC", 60}}) {
        setKey(key, value);
    }
    EXPECT_THAT(steps(), IsEmpty());
    EXPECT_THAT(steps(), ElementsAre("ping", "set 0 2970", "set 1 2750")) << "two good ones";
    expectStatus("Die Temperatur der Kurve ist wieder lesbar.", false);
}

TEST_F(FanControllerTest, AFirstStartReadsTheMachineAndSendsNothing) {
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

TEST_F(FanControllerTest, TicksSweepAndCheckInTheirRhythm) {
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

TEST_F(FanControllerTest, AnSmcThatGoesAndComesBackIsReadAgain) {
    Controller& controller = settled();
    machine_.smc.faults().add("service gone");
    for (int count = 1; count <= 4; ++count) { // tick 1 sweeps, and all that have found nothing
        const bool isGone = count == 2 || count == 3;
        EXPECT_EQ(controller.sensors().empty(), isGone);
        EXPECT_EQ(controller.cpuMaxTemp() == 0, isGone);
        EXPECT_EQ(controller.isSmcLost(), isGone);
        EXPECT_NE(controller.isCpuTempKnown(), isGone);
        if (count == 3) {
            machine_.smc.faults().clear();
        }
        tick();
        tasks_.runAll();
    }
    for (int count = 1; count <= 4; ++count) { // with a readout that takes its time
        EXPECT_EQ(controller.staleSeconds(), 0);
        tick();
    }
    EXPECT_EQ(controller.staleSeconds(), 8);
    tasks_.runAll();
    EXPECT_EQ(controller.staleSeconds(), 0);
}

TEST_F(FanControllerTest, ChecksFollowTheHelperAndCompetingPrograms) {
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

TEST_F(FanControllerTest, AfterTheShutdownNothingIsSent) {
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

TEST_F(FanControllerTest, TheWayOutGoesOnUntilTheFansAreFree) {
    struct Row {
        bool hasForced;
        int freedAfter; // tries
        std::vector<std::string> requests;
        std::optional<std::string> failure;
    };
    const std::vector<std::string> once{"ping", "reset"};
    const Row rows[] = {{false, 9, once, {}},
                        {true, 1, {"ping", "reset", "ping", "reset"}, {}},
                        {true, 9, {"ping", "reset", "ping", "reset", "ping", "reset"}, "nein"}};
    for (const Row& row : rows) {
        setKey("F0Md", 1);
        Controller& controller = settled();
        if (row.hasForced) {
            controller.selectProfile(ControlProfile::turbo);
            tasks_.runAll();
            helper_.taken();
        }
        helper_.setAnswer([](const HelperRequest& request) {
            return request.action == HelperAction::ping ? RecordingHelper::accept("gut")
                                                        : RecordingHelper::refuse("nein");
        });
        int tries = 0;
        EXPECT_EQ(controller.shutdown([&](const std::string& reason) {
            EXPECT_EQ(reason, "nein");
            if (++tries == row.freedAfter) {
                setKey("F0Md", 0);
            }
            return tries < 3;
        }),
                  row.failure);
        EXPECT_EQ(helper_.taken(), row.requests);
        helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
    }
    Controller& controller = settled();
    controller.shutdownAtOnce(); // with nobody to do the work
    tasks_.runAll();
    EXPECT_EQ(helper_.taken(), once);
}

TEST_F(FanControllerTest, ALateResultFindsNobody) {
    make();
    controller_->selectProfile(ControlProfile::turbo);
    while (tasks_.waiting() > 0) {
        tasks_.work();
    }
    audit_.reset();
    controller_.reset();
    tasks_.deliver(); // the address sanitizer would tell
}

TEST_F(FanControllerTest, ManualSpeedsBeginWithTheFansTargetsWithinTheirLimits) {
    setKey("F0Tg", 100);
    setKey("F1Tg", 9000);
    const Controller& controller = make();
    EXPECT_EQ(controller.manualRPMFan0(), controller.fans()[0].minRPM);
    EXPECT_EQ(controller.manualRPMFan1(), controller.fans()[1].maxRPM);

    setKey("FNum", 0);
    EXPECT_EQ(make().manualRPMFan0(), 2200);
    EXPECT_EQ(make().manualRPMFan1(), 2100);
    EXPECT_FALSE(session_.defaults->object("com.ventaro.pref.manualRPMFan0"))
        << "seeding is not saving";
}

TEST_F(FanControllerTest, WhatIsStoredAgainIsNoChange) { // as the audit of every test would see
    Controller& controller = settled();
    controller.setManualRPMFan0(controller.manualRPMFan0());
    controller.setCurvePoints(std::vector<CurvePoint>(controller.curvePoints()));
    controller.setStartMinimized(true);
    EXPECT_FALSE(std::filesystem::exists(session_.loginItem.file));
    for (int count = 0; count < 2; ++count) {
        controller.setLaunchAtLogin(false);
        controller.setSensorsTabVisible(true);
        controller.setOverviewTabVisible(false);
    }
    controller.setCurvePoints(defaultCurve()); // the same numbers with new identities are one
    int applications = 0;
    const QObject listener; // this one is no property, which the audit would see
    QObject::connect(&controller, &Controller::lastAppliedRPMsChanged, &listener,
                     [&applications] { ++applications; });
    controller.applySmartCurveStep(true);
    controller.applySmartCurveStep(true);
    EXPECT_EQ(applications, 1);
    tasks_.runAll();
    controller.selectProfile(ControlProfile::systemAuto);
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::refuse("nein"); });
    controller.applyManualSpeeds();
    tasks_.runAll();
    controller.dismissStatusMessage();
    controller.dismissStatusMessage();
    EXPECT_TRUE(controller.isErrorStatus()) << "only the text is taken away";
}

} // namespace
} // namespace ventaro
