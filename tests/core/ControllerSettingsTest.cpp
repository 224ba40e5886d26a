#include "ControllerFixture.h"

#include <cmath>

namespace ventaro {
namespace {

using Controller = FanControllerViewModel;
using ControllerSettingsTest = ControllerFixture;

TEST_F(ControllerSettingsTest, ManualSpeedsBeginWithTheFansTargetsWithinTheirLimits) {
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

TEST_F(ControllerSettingsTest, SettingsComeBack) {
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

TEST_F(ControllerSettingsTest, SettingsThatCannotBeAreIgnoredAndRepairedByTheNextSave) {
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
        EXPECT_FALSE(controller.hasStatusMessage());
        controller.saveSettings();
        EXPECT_NE(session_.defaults->object(key), row.value) << row.suffix;
    }
    session_.defaults->store({{"com.ventaro.pref.curvePoints", curve(4, point)}});
    EXPECT_EQ(settled().curvePoints()[3].speedPercent, 20) << "these four would have been right";

    controller_->setCurvePoints({{std::nan(""), 0}});
    controller_->setLinkFansInManualMode(true);
    controller_->saveSettings();
    EXPECT_EQ(session_.defaults->value<DefaultsData>("com.ventaro.pref.curvePoints"),
              curve(4, point));
    EXPECT_EQ(session_.defaults->value<bool>("com.ventaro.pref.linkFans"), true);
    controller_->setCurvePoints({}); // what is not a number equals nothing, as the audit would note
}

TEST_F(ControllerSettingsTest,
       WhatIsStoredAgainIsNoChange) { // as the audit of every test would see
    Controller& controller = settled();
    controller.setManualRPMFan0(controller.manualRPMFan0());
    controller.setCurvePoints(std::vector<CurvePoint>(controller.curvePoints()));
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

TEST_F(ControllerSettingsTest, TheLoginItemFollowsTheSwitches) {
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

} // namespace
} // namespace ventaro
