#include "ControlSettings.h"

#include "ControllerFixture.h"
#include "CurveFile.h"
#include "LoginItem.h"

#include <cmath>

namespace ventaro {
namespace {

namespace fs = std::filesystem;

using ControlSettingsTest = ControllerFixture;

TEST_F(ControlSettingsTest, ComeBackFromTheStore) {
    ControlSettings first(*session_.defaults);
    first.setManualRPMFan0(3001.5);
    first.setManualRPMFan1(2999);
    first.setLinkFans(true);
    first.setResetOnQuit(false);
    first.setStartMinimized(false);
    first.setCurveSensorSource(CurveSensorSource::gpuDie);
    first.setCurvePoints({{80, 90}, {40, 10}, {60, 33.5}, {70, 50}});
    first.save();
    first.setManualRPMFan1(1);
    openStore();
    SavedSettings expected = first.values();
    expected.manualRPMFan1 = 2999;
    EXPECT_EQ(ControlSettings(*session_.defaults).values(), expected)
        << "identities and order of the points included";
}

TEST_F(ControlSettingsTest, WhatCannotBeIsPassedOverAndRepairedByTheNextSave) {
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
    const std::pair<const char*, DefaultsValue> rows[] = {
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
    const SavedSettings standard;
    DefaultsStore& store = *session_.defaults;
    for (const auto& [suffix, value] : rows) {
        const std::string key = std::string("com.ventaro.pref.") + suffix;
        store.store({{key, value}});
        EXPECT_EQ(loadedSettings(store, standard), standard) << suffix;
        saveSettings(store, standard);
        EXPECT_NE(store.object(key), value) << suffix;
    }
    const DefaultsData whole = curve(4, point);
    store.store({{"com.ventaro.pref.curvePoints", whole}});
    EXPECT_EQ(loadedSettings(store).curvePoints[3].speedPercent, 20);

    SavedSettings endless{.linkFans = true};
    endless.curvePoints[0].temperature = std::nan("");
    saveSettings(store, endless);
    EXPECT_EQ(store.value<DefaultsData>("com.ventaro.pref.curvePoints"), whole);
    EXPECT_TRUE(loadedSettings(store).linkFans);
}

TEST(CurveFile, IsOnlyWrittenIfItCanBeReadAgain) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "curve.json";
    const CurveLimits limits{35, 95};
    const std::vector<CurvePoint> unreadable[] = {
        {},
        {{45, 0}, {60, 30}, {72, 60}, {96, 100}},
        {{45, 0}, {60, 30.5}, {72, 60}, {85, 100}},
        {{45, 0}, {60, std::nan("")}, {72, 60}, {85, 100}},
    };
    for (const auto& points : unreadable) {
        EXPECT_THROW(writeCurveFile(file, points, limits), CurveFileError);
        EXPECT_FALSE(std::filesystem::exists(file));
    }
    writeCurveFile(file, defaultCurve(), limits);
    EXPECT_EQ(readCurveFile(file, limits)[3].speedPercent, 100);
}

using LoginItemTest = ControllerFixture;

TEST_F(LoginItemTest, StartsWhatIsInstalledOrElseThisProgram) {
    const fs::path& file = session_.loginItem.file;
    LoginItem item(session_, root_);
    std::string said;
    QObject::connect(&item, &LoginItem::reported,
                     [&](const std::optional<std::string>& line, bool isError) {
                         said = (isError ? "Fehler: " : "") + *line;
                     });
    const auto starts = [&](const std::string& program) {
        return readFile(file).find("<string>" + program + "</string>") != std::string::npos;
    };
    EXPECT_FALSE(item.isEnabled());
    item.setEnabled(true, false);
    EXPECT_EQ(said, "Autostart beim Anmelden in macOS aktiviert.");
    EXPECT_TRUE(starts("/opt/Ventaro/Ventaro") && !starts("--minimized"));
    item.setEnabled(true, true);
    EXPECT_EQ(said, "Autostart aktiviert (startet minimiert in der Menüleiste).");
    EXPECT_TRUE(starts("--minimized"));
    EXPECT_TRUE(LoginItem(session_, root_).isEnabled()) << "from the file";

    const std::string installed = "/Applications/Ventaro.app/Contents/MacOS/Ventaro";
    fs::create_directories(root_.resolve(installed));
    item.setEnabled(true, false);
    EXPECT_TRUE(starts(installed));
    fs::remove_all(folder_.path() / "Applications");
    session_.bundle.executable.reset();
    item.setEnabled(true, true);
    EXPECT_TRUE(starts(installed));
    for (int time = 0; time < 2; ++time) {
        item.setEnabled(false, true);
        EXPECT_EQ(said, "Autostart beim Anmelden deaktiviert.");
        EXPECT_FALSE(fs::exists(file));
    }
    fs::remove_all(folder_.path() / "home");
    writeFile(folder_.path() / "home", "in the way");
    item.setEnabled(true, false);
    EXPECT_EQ(said.find("Fehler: Autostart konnte nicht gespeichert werden: „"), 0U) << said;
    EXPECT_TRUE(item.isEnabled());
}

} // namespace
} // namespace ventaro
