#include "ControllerFixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace ventaro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
using Controller = FanControllerViewModel;

class FanControllerTest : public ControllerFixture {
protected:
    /// Counts how often `changed` is heard while `action` runs.
    template<typename Action>
    int heard(void (Controller::*changed)(), Action action) {
        int count = 0;
        const auto connection = QObject::connect(controller_.get(), changed, [&count] { ++count; });
        action();
        QObject::disconnect(connection);
        return count;
    }
    std::string status() const { return controller_->statusMessage().value_or("(absent)"); }
    void expectStatus(const std::string& text, bool isError) const {
        EXPECT_EQ(status(), text);
        EXPECT_EQ(controller_->isErrorStatus(), isError);
    }
    /// Brings the controller to show this CPU temperature, with the GPU far below it.
    void warmTo(double cpu) {
        setKey("TCXC", cpu);
        setKey("TGDD", 20);
        controller_->refreshTelemetryAsync(false);
        tasks_.runAll();
    }
};

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

TEST_F(FanControllerTest, SettingsComeBack) {
    setKey("FNum", 0); // otherwise the fans decide about the manual speeds
    Controller& first = settled();
    first.setManualRPMFan0(3001.5);
    first.setManualRPMFan1(2999);
    first.setLinkFansInManualMode(true);
    first.setResetToAutoOnQuit(false);
    first.setCurveSensorSource(CurveSensorSource::gpuDie);
    first.setCurvePoints({{80, 90}, {40, 10}, {60, 33.5}, {70, 50}});
    first.setStartMinimized(false); // saves
    const auto points = first.curvePoints();
    openStore();
    const Controller& second = make();
    EXPECT_EQ(second.manualRPMFan0(), 3001.5);
    EXPECT_EQ(second.manualRPMFan1(), 2999);
    EXPECT_TRUE(second.linkFansInManualMode());
    EXPECT_FALSE(second.resetToAutoOnQuit());
    EXPECT_FALSE(second.startMinimized());
    EXPECT_EQ(second.curveSensorSource(), CurveSensorSource::gpuDie);
    EXPECT_EQ(second.curvePoints(), points) << "identities and order included";
}

TEST_F(FanControllerTest, SettingsThatCannotBeAreIgnoredAndRepairedByTheNextSave) {
    const auto data = [](const std::string& text) {
        return DefaultsData(text.begin(), text.end());
    };
    const std::string id = R"("id":"01234567-89ab-cdef-0123-456789abcdef",)";
    const std::string point = "{" + id + R"("temperature":50,"speedPercent":20})";
    const auto curve = [&](int count, std::string last) {
        std::string text = "[";
        for (int index = 1; index < count; ++index) {
            text += point + " ,";
        }
        return data(text + std::move(last) + "]");
    };
    struct Row {
        const char* suffix;
        DefaultsValue value;
    };
    const Row rows[] = {
        {"curvePoints", curve(3, point)},
        {"curvePoints", curve(5, point)},
        {"curvePoints", curve(4, R"({"temperature":50,"speedPercent":20})")},
        {"curvePoints", curve(4, R"({"id":"0123","temperature":50,"speedPercent":20})")},
        {"curvePoints", curve(4, "{" + id + R"("temperature":"50","speedPercent":20})")},
        {"curvePoints", curve(4, "7")},
        {"curvePoints", data("{}")},
        {"curvePoints", data("[[[[")},
        {"curvePoints", data("\xff")},
        {"curvePoints", std::string("[]")},
        {"curveSensorSource", std::string("cpu package (tcxc)")},
        {"curveSensorSource", 1.0},
        {"startMinimized", 0.0},
        {"linkFans", std::string("true")},
        {"manualRPMFan0", true},
    };
    setKey("FNum", 0);
    for (const Row& row : rows) {
        const std::string key = std::string("com.ventaro.pref.") + row.suffix;
        session_.defaults->store({{key, row.value}});
        Controller& controller = settled();
        EXPECT_EQ(controller.curvePoints()[3].temperature, 85) << row.suffix;
        EXPECT_EQ(controller.curveSensorSource(), CurveSensorSource::maxCpuGpu) << row.suffix;
        EXPECT_TRUE(controller.startMinimized());
        EXPECT_FALSE(controller.linkFansInManualMode());
        EXPECT_EQ(controller.manualRPMFan0(), 2200);
        EXPECT_EQ(status(), "(absent)");
        controller.saveSettings();
        EXPECT_NE(session_.defaults->object(key), row.value) << row.suffix;
    }
    session_.defaults->store({{"com.ventaro.pref.curvePoints", curve(4, point)}});
    EXPECT_EQ(settled().curvePoints()[3].speedPercent, 20) << "these four would have been right";

    controller_->setCurvePoints({{notANumber, 0}});
    controller_->setLinkFansInManualMode(true);
    controller_->saveSettings();
    EXPECT_EQ(session_.defaults->value<DefaultsData>("com.ventaro.pref.curvePoints"),
              curve(4, point));
    EXPECT_EQ(session_.defaults->value<bool>("com.ventaro.pref.linkFans"), true);
    controller_->setCurvePoints({}); // what is not a number equals nothing, as the audit would note
}

TEST_F(FanControllerTest, WhatIsStoredAgainIsNoChange) { // as the audit of every test would see
    Controller& controller = settled();
    controller.setManualRPMFan0(controller.manualRPMFan0());
    controller.setCurvePoints(std::vector<CurvePoint>(controller.curvePoints()));
    for (int count = 0; count < 2; ++count) {
        controller.setLaunchAtLogin(false);
        controller.setSensorsTabVisible(true);
        controller.setOverviewTabVisible(false);
    }
    EXPECT_EQ(
        heard(&Controller::curvePointsChanged, [&] { controller.setCurvePoints(defaultCurve()); }),
        1)
        << "the same numbers with new identities";
    controller.applySmartCurveStep(true);
    EXPECT_EQ(
        heard(&Controller::lastAppliedRPMsChanged, [&] { controller.applySmartCurveStep(true); }),
        0);
    tasks_.runAll();
    controller.selectProfile(ControlProfile::systemAuto);
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::refuse("nein"); });
    controller.applyManualSpeeds();
    tasks_.runAll();
    controller.dismissStatusMessage();
    controller.dismissStatusMessage();
    EXPECT_TRUE(controller.isErrorStatus()) << "only the text is taken away";
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

TEST_F(FanControllerTest, ATickSweepsAsLongAsNoSensorsAreKnown) {
    machine_.smc.faults().add("service gone");
    Controller& controller = settled();
    EXPECT_EQ(controller.cpuMaxTemp(), 0);
    for (int count = 1; count <= 2; ++count) {
        if (count == 2) {
            machine_.smc.faults().clear();
        }
        tick();
        tasks_.runAll();
        EXPECT_EQ(controller.sensors().empty(), count == 1);
    }
}

TEST_F(FanControllerTest, ARefreshWhileOneRunsIsDroppedAndFiguresMoveByATenthOnly) {
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

TEST_F(FanControllerTest, TheFastReadoutTakesWhatItsKeysSay) {
    Controller& controller = settled();
    const auto read = [&] {
        controller.refreshTelemetryAsync(false);
        tasks_.runAll();
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

TEST_F(FanControllerTest, TheInventoryIsLoadedOnceAndAnewOnRequest) {
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
        tasks_.runAll();
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
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 1800", "set 1 1700", "ping",
                                             "set 0 3700", "set 1 3450"));
    setKey("FNum", 1);
    controller.refreshTelemetryAsync(false);
    tasks_.runAll();
    controller.applyPresetPercentage(1);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 5600", "set 1 3450"))
        << "a fan that is missing keeps its speed, which is still sent";
}

TEST_F(FanControllerTest, TheCurveSendsOnlyWhatMovesBy45RPM) {
    setLimits(1800, 5600, 1700, 5200);
    Controller& controller = settled();
    warmTo(66);
    controller.selectProfile(ControlProfile::smartCurve);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 3510", "set 1 3275"));
    EXPECT_EQ(controller.currentCurveTargetPercent(), 45);
    // A line from 0 °C to 100 °C turns temperatures into percents.
    controller.setCurvePoints({{0, 0}, {100, 100}});
    struct Row {
        double percent;
        double shown;
        bool sends;
        const char* left;
    };
    const Row rows[] = {
        {46.05, 46.05, false, "3550"}, // 40 and 37 RPM further
        {46.184, 46.05, true, "3555"}, // 45 RPM, and the shown percentage stays
        {47.25, 47.25, false, "3596"}, // 41 and 38 RPM from what was sent last
        {45, 45, true, "3510"},
    };
    for (const Row& row : rows) {
        warmTo(row.percent);
        tick();
        tasks_.runAll();
        const auto requests = helper_.taken();
        EXPECT_NEAR(controller.currentCurveTargetPercent(), row.shown, 1e-4) << row.percent;
        EXPECT_EQ(std::count(requests.begin(), requests.end(), std::string("set 0 ") + row.left),
                  row.sends ? 1 : 0)
            << row.percent;
    }
    controller.applySmartCurveStep(true);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 3510", "set 1 3275")) << "forced";
    setLimits(1800, 1900, 1000, 6000); // one fan alone may move far enough
    for (const double celsius : {45.0, 46.0}) {
        warmTo(celsius);
        controller.applySmartCurveStep(false);
    }
    EXPECT_EQ(controller.lastAppliedRPMs(), (std::map<int, double>{{0, 1846}, {1, 3300}}));
    tasks_.runAll();
    setLimits(1800, 5600, 1700, 5200);
    warmTo(45);
    controller.setCurvePoints({{50, 120}});
    controller.applySmartCurveStep(false);
    EXPECT_EQ(controller.currentCurveTargetPercent(), 120);
    EXPECT_EQ(controller.lastAppliedRPMs().at(0), 5600);
    controller.setCurvePoints({{50, -10}});
    controller.applySmartCurveStep(false);
    EXPECT_EQ(controller.lastAppliedRPMs().at(1), 1700);
    controller.setCurvePoints({{50, notANumber}});
    tasks_.runAll();
    helper_.taken();
    controller.applySmartCurveStep(true);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping")) << "the encoder refuses";
    EXPECT_NE(status().find("rpm"), std::string::npos) << status();
    EXPECT_TRUE(controller.isErrorStatus());
    controller.setCurvePoints({}); // what is not a number equals nothing, as the audit would note
}

TEST_F(FanControllerTest, TheCurveFollowsItsSourceAndKnowsTheRangesOfFansThatCannotBeRead) {
    setKey("FNum", 0);
    Controller& controller = settled();
    controller.setCurvePoints({{0, 0}, {100, 100}});
    setKey("TCXC", 70);
    setKey("TGDD", 50);
    controller.refreshTelemetryAsync(false);
    tasks_.runAll();
    const std::pair<CurveSensorSource, double> sources[] = {{CurveSensorSource::maxCpuGpu, 70},
                                                            {CurveSensorSource::cpuPackage, 70},
                                                            {CurveSensorSource::gpuDie, 50}};
    for (const auto& [source, temperature] : sources) {
        controller.setCurveSensorSource(source);
        EXPECT_EQ(controller.currentSourceTemperature(), temperature);
    }
    controller.applySmartCurveStep(false);
    EXPECT_EQ(controller.lastAppliedRPMs(), (std::map<int, double>{{0, 3726}, {1, 3450}}));
}

TEST_F(FanControllerTest, ADispatchReportsItsOutcome) {
    using Helper = RecordingHelper;
    const std::string notReady = "Bitte zuerst den Hintergrund-Helper oben per Klick installieren.";
    const auto only = [](HelperAction action, std::int64_t fan, const std::string& text) {
        return [=](const HelperRequest& request) {
            return request.action == action && request.fanIndex.value_or(fan) == fan
                       ? text
                       : Helper::accept("gut");
        };
    };
    struct Row {
        const char* what;
        Helper::Answer answer;
        std::string status;
        bool isError;
        bool isInstalled;
        std::vector<std::string> requests;
        bool refreshes;
    };
    const std::vector<std::string> all{"ping", "set 0 3000", "set 1 2900"};
    const Row targets[] = {
        {"old helper",
         only(HelperAction::ping, 0, Helper::accept("gut", 2)),
         notReady,
         true,
         false,
         {"ping"},
         false},
        {"ping refused",
         only(HelperAction::ping, 0, Helper::refuse("nein")),
         notReady,
         true,
         false,
         {"ping"},
         false},
        {"ping unanswered",
         only(HelperAction::ping, 0, ""),
         notReady,
         true,
         false,
         {"ping"},
         false},
        {"fan 0 unanswered",
         only(HelperAction::setFanRPM, 0, ""),
         "Keine Antwort vom Helper erhalten.",
         true,
         false,
         {"ping", "set 0 3000"},
         false},
        {"fan 1 refused", only(HelperAction::setFanRPM, 1, Helper::refuse("M")), "M", true, true,
         all, true},
        {"fan 1 unanswered", only(HelperAction::setFanRPM, 1, ""),
         "Keine Antwort vom Helper erhalten.", true, true, all, false},
        {"both refused",
         [](const HelperRequest& request) {
             return request.action == HelperAction::ping
                        ? Helper::accept("gut")
                        : Helper::refuse(*request.fanIndex == 0 ? "links" : "rechts");
         },
         "links", true, true, all, true},
        {"accepted", [](const HelperRequest&) { return Helper::accept("gut"); },
         "Ziel-Drehzahl gesetzt: Links 3000 RPM · Rechts 2900 RPM", false, true, all, true},
    };
    Controller& controller = settled();
    controller.setManualRPMFan0(3000.9);
    controller.setManualRPMFan1(2900);
    for (const Row& row : targets) {
        helper_.setAnswer(row.answer);
        controller.applyManualSpeeds();
        EXPECT_EQ(controller.lastAppliedRPMs().at(0), 3000.9) << "before anything is sent";
        tasks_.work();
        tasks_.deliver();
        expectStatus(row.status, row.isError);
        EXPECT_EQ(controller.isHelperInstalled(), row.isInstalled) << row.what;
        EXPECT_EQ(tasks_.waiting(), row.refreshes ? 1U : 0U) << row.what;
        machine_.taken();
        tasks_.runAll();
        EXPECT_EQ(machine_.taken().size(), row.refreshes ? 14U : 0U) << "the fast readout";
        EXPECT_EQ(helper_.taken(), row.requests) << row.what;
    }
    const Row resets[] = {
        {"reset refused",
         only(HelperAction::resetAllAuto, 0, Helper::refuse("kaputt")),
         "kaputt",
         true,
         true,
         {},
         true},
        {"reset with nothing to say",
         only(HelperAction::resetAllAuto, 0, Helper::accept("")),
         "",
         false,
         true,
         {},
         true},
        {"reset unanswered",
         only(HelperAction::resetAllAuto, 0, ""),
         "Keine Antwort vom Helper erhalten.",
         true,
         true,
         {},
         false},
        {"no helper", only(HelperAction::ping, 0, ""), notReady, true, false, {}, false},
    };
    for (const Row& row : resets) {
        helper_.setAnswer(row.answer);
        controller.selectProfile(ControlProfile::systemAuto);
        tasks_.work();
        tasks_.deliver();
        expectStatus(row.status, row.isError);
        EXPECT_EQ(controller.isHelperInstalled(), row.isInstalled) << row.what;
        EXPECT_EQ(tasks_.waiting(), row.refreshes ? 1U : 0U) << row.what;
        tasks_.runAll();
    }
    EXPECT_TRUE(controller.hasStatusMessage());
}

TEST_F(FanControllerTest, OutcomesStandInTheOrderInWhichTheyArrive) {
    Controller& controller = settled();
    controller.selectProfile(ControlProfile::turbo);
    controller.selectProfile(ControlProfile::silent);
    EXPECT_EQ(tasks_.waiting(), 2U) << "neither waits for the other";
    tasks_.work(1);
    tasks_.deliver();
    tasks_.work(0);
    tasks_.deliver();
    EXPECT_NE(status().find("Links 5616"), std::string::npos) << status();

    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::refuse("nein"); });
    controller.selectProfile(ControlProfile::turbo);
    tasks_.runAll();
    const std::string error = status();
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
    controller.applySmartCurveStep(true);
    tasks_.runAll();
    expectStatus(error, true); // a silent success leaves it
}

TEST_F(FanControllerTest, ChecksFollowTheHelperAndCompetingPrograms) {
    Controller& controller = settled();
    applications().list = {{"Terminal", "com.example.terminal"}, {"macs FAN control", ""}};
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut", 2); });
    controller.checkHelperAndConflictsAsync();
    tasks_.runAll();
    EXPECT_TRUE(controller.competingProcessDetected());
    EXPECT_FALSE(controller.isHelperInstalled());
    applications().list = {{"", "COM.TunaBelly.TGPro"}};
    EXPECT_EQ(heard(&Controller::competingProcessDetectedChanged,
                    [&] {
                        controller.checkHelperAndConflictsAsync();
                        tasks_.runAll();
                    }),
              0);
    applications().list = {{"Fan Control", "macs fan control"}, {"tgpro", "macsfan"}};
    controller.checkHelperAndConflictsAsync();
    tasks_.runAll();
    EXPECT_FALSE(controller.competingProcessDetected());
    EXPECT_FALSE(controller.hasStatusMessage());
}

TEST_F(FanControllerTest, TheLoginItemFollowsTheSwitches) {
    Controller& controller = settled();
    const auto& file = session_.loginItem.file;
    controller.setStartMinimized(false);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(status(), "(absent)");
    controller.setLaunchAtLogin(true);
    expectStatus("Autostart beim Anmelden in macOS aktiviert.", false);
    EXPECT_NE(readFile(file).find("<string>/opt/Ventaro/Ventaro</string>\n    </array>"),
              std::string::npos);
    controller.setStartMinimized(true);
    expectStatus("Autostart aktiviert (startet minimiert in der Menüleiste).", false);
    EXPECT_NE(readFile(file).find("--minimized"), std::string::npos);
    EXPECT_TRUE(make().launchAtLogin()) << "from the file";

    std::filesystem::create_directories(folder_.path() / "Applications/Ventaro.app/Contents/MacOS");
    writeFile(folder_.path() / "Applications/Ventaro.app/Contents/MacOS/Ventaro", "");
    controller_->setLaunchAtLogin(true);
    EXPECT_NE(readFile(file).find("<string>/Applications/Ventaro.app/Contents/MacOS/Ventaro<"),
              std::string::npos);
    std::filesystem::remove_all(folder_.path() / "Applications");
    session_.bundle.executable.reset();
    controller_->setLaunchAtLogin(true);
    EXPECT_NE(readFile(file).find("<string>/Applications/Ventaro.app/"), std::string::npos);
    controller_->setLaunchAtLogin(false);
    EXPECT_FALSE(std::filesystem::exists(file));
    controller_->setLaunchAtLogin(false);
    expectStatus("Autostart beim Anmelden deaktiviert.", false);

    std::filesystem::remove_all(folder_.path() / "home");
    writeFile(folder_.path() / "home", "in the way");
    controller_->setLaunchAtLogin(true);
    EXPECT_EQ(
        status().find("Autostart konnte nicht gespeichert werden: „/home/Library/LaunchAgents“"),
        0U)
        << status();
    EXPECT_TRUE(controller_->isErrorStatus());
    EXPECT_TRUE(controller_->launchAtLogin());
}

TEST_F(FanControllerTest, TerminationResetsIfTheUserWantsItAndAHelperAnswers) {
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
    EXPECT_EQ(status(), "(absent)");
    EXPECT_EQ(controller.tickCount(), 0);
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

} // namespace
} // namespace ventaro
