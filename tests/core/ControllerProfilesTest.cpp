#include "ControllerFixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using testing::ElementsAre;
using Controller = FanControllerViewModel;

class ControllerProfilesTest : public ControllerFixture {
protected:
    /// Brings the controller to show this CPU temperature, with the GPU far below it.
    void warmTo(double cpu) {
        setKey("TCXC", cpu);
        setKey("TGDD", 20);
        refresh();
    }
};

TEST_F(ControllerProfilesTest, EachProfileDoesWhatItsRowSays) {
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

TEST_F(ControllerProfilesTest, PresetsAreSavedBeforeTheyOverwriteTheManualSpeeds) {
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

TEST_F(ControllerProfilesTest, BothManualSpeedsMoveTogetherAndAreSentInTheManualProfileOnly) {
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
    controller.applyPresetPercentage(1);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "set 0 5600", "set 1 3450"))
        << "a fan that is missing keeps its speed, which is still sent";
}

TEST_F(ControllerProfilesTest, TheCurveSendsOnlyWhatMovesBy45RPM) {
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
    controller.setCurvePoints({{50, std::nan("")}});
    tasks_.runAll();
    helper_.taken();
    controller.applySmartCurveStep(true);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping")) << "the encoder refuses";
    EXPECT_NE(status().find("rpm"), std::string::npos) << status();
    EXPECT_TRUE(controller.isErrorStatus());
    controller.setCurvePoints({}); // what is not a number equals nothing, as the audit would note
}

TEST_F(ControllerProfilesTest, TheCurveFollowsItsSourceAndKnowsTheRangesOfFansThatCannotBeRead) {
    setKey("FNum", 0);
    Controller& controller = settled();
    controller.setCurvePoints({{0, 0}, {100, 100}});
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
    controller.applySmartCurveStep(false);
    EXPECT_EQ(controller.lastAppliedRPMs(), (std::map<int, double>{{0, 3726}, {1, 3450}}));
}

TEST_F(ControllerProfilesTest, ADispatchReportsItsOutcome) {
    const auto no = [](const std::string& reason) { return RecordingHelper::refuse(reason); };
    const std::string yes = RecordingHelper::accept("gut");
    const std::string old = RecordingHelper::accept("gut", 2);
    const std::string nothing; // the connection ends without an answer
    const auto set = ControlProfile::manual;
    const auto reset = ControlProfile::systemAuto;
    const char* const notReady = "Bitte zuerst den Hintergrund-Helper oben per Klick installieren.";
    const char* const noAnswer = "Keine Antwort vom Helper erhalten.";
    const char* const done = "Ziel-Drehzahl gesetzt: Links 3000 RPM · Rechts 2900 RPM";
    const std::vector<std::string> ping{"ping"};
    const std::vector<std::string> left{"ping", "set 0 3000"};
    const std::vector<std::string> both{"ping", "set 0 3000", "set 1 2900"};
    const std::vector<std::string> all{"ping", "reset"};
    struct Row {
        const char* what;
        ControlProfile profile;
        std::string answers[3]; // to the ping, to the first and to the second command
        std::vector<std::string> requests;
        const char* status;
        bool isError;
        bool isInstalled;
        bool refreshes;
    };
    const Row rows[] = {
        {"old helper", set, {old, yes, yes}, ping, notReady, true, false, false},
        {"no helper", set, {nothing, yes, yes}, ping, notReady, true, false, false},
        {"left unanswered", set, {yes, nothing, yes}, left, noAnswer, true, false, false},
        {"right refused", set, {yes, yes, no("M")}, both, "M", true, true, true},
        {"right unanswered", set, {yes, yes, nothing}, both, noAnswer, true, true, false},
        {"both refused", set, {yes, no("L"), no("R")}, both, "L", true, true, true},
        {"accepted", set, {yes, yes, yes}, both, done, false, true, true},
        {"reset refused", reset, {yes, no("kaputt")}, all, "kaputt", true, true, true},
        {"reset in silence", reset, {yes, RecordingHelper::accept("")}, all, "", false, true, true},
        {"reset unanswered", reset, {yes, nothing}, all, noAnswer, true, true, false},
        {"no helper to reset", reset, {nothing, yes}, ping, notReady, true, false, false},
    };
    Controller& controller = settled();
    controller.setManualRPMFan0(3000.9);
    controller.setManualRPMFan1(2900);
    using Applied = std::map<int, double>;
    const Applied applied{{0, 3000.9}, {1, 2900}};
    for (const Row& row : rows) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, row.what);
        helper_.setAnswer([&row](const HelperRequest& request) {
            const bool isPing = request.action == HelperAction::ping;
            return row.answers[isPing ? 0 : 1 + request.fanIndex.value_or(0)];
        });
        controller.selectProfile(row.profile);
        EXPECT_EQ(controller.lastAppliedRPMs(), row.profile == set ? applied : Applied())
            << "before anything is sent";
        tasks_.work();
        tasks_.deliver();
        expectStatus(row.status, row.isError);
        EXPECT_EQ(controller.isHelperInstalled(), row.isInstalled);
        EXPECT_EQ(tasks_.waiting(), row.refreshes ? 1U : 0U);
        machine_.taken();
        tasks_.runAll();
        EXPECT_EQ(machine_.taken().size(), row.refreshes ? 14U : 0U) << "the fast readout";
        EXPECT_EQ(helper_.taken(), row.requests);
    }
    EXPECT_TRUE(controller.hasStatusMessage());
}

TEST_F(ControllerProfilesTest, TheNewestWishWins) {
    Controller& controller = settled();
    controller.selectProfile(ControlProfile::turbo);
    controller.selectProfile(ControlProfile::systemAuto);
    EXPECT_EQ(tasks_.waiting(), 2U) << "neither waits for the other to begin";
    tasks_.work(1);
    tasks_.deliver();
    tasks_.work(0);
    tasks_.deliver();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset"));
    expectStatus("gut", false);
    tasks_.runAll();

    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::refuse("nein"); });
    controller.selectProfile(ControlProfile::turbo);
    tasks_.runAll();
    const std::string error = status();
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
    controller.applySmartCurveStep(true);
    tasks_.runAll();
    expectStatus(error, true); // a silent success leaves it
}

} // namespace
} // namespace ventaro
