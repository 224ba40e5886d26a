#include "AssistiveReader.h"
#include "Desktop.h"

#include <gmock/gmock.h>

#include <QRegularExpression>
#include <memory>

namespace ventaro {
namespace {

using namespace testing;

/// What the first group of `pattern` catches in those of the texts that it fits.
std::vector<int> numbers(const QStringList& texts, const QString& pattern) {
    const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern));
    std::vector<int> found;
    for (const QString& text : texts.filter(whole)) {
        found.push_back(whole.match(text).captured(1).toInt());
    }
    return found;
}

/// The built program on a machine, a screen and a bus of its own, with somebody who uses it with a
/// mouse and finds everything by what a screen reader is told.
class UseTest : public Test {
protected:
    explicit UseTest(const std::vector<std::string>& options = {}, bool helperInstalled = true)
        : machine(options, helperInstalled) {}
    void start() {
        EXPECT_TRUE(reader.isConnected());
        // Qt 6.4 loses what it has attached to a radio button while a screen reader listens.
        const std::filesystem::path known = machine.folder() / "known-leaks";
        writeFile(known, "leak:QQmlData::createQQmlData\n");
        program_ = desktop.start(
            machine, {},
            {sessionBus_.environment(), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
             "LSAN_OPTIONS=print_suppressions=0:suppressions=" + known.string(),
             // The bridge complains when the reader asks for what has just gone from the screen.
             "QT_LOGGING_RULES=qt.accessibility.atspi*=false"});
    }
    /// Waits for the program's end and for fans that are free.
    void expectEnd() {
        EXPECT_EQ(program_->wait(), 0);
        EXPECT_EQ(program_->errors(), "");
        EXPECT_EQ(machine.keys("F0Md,F1Md"), "0,0");
    }
    bool sees(const char* role, const QString& name) const {
        return waitUntil([&] { return !reader.place(role, name).isEmpty(); });
    }
    /// Clicks as soon as the element has come to rest.
    void clicks(const char* role, const QString& name) const {
        constexpr int looks = 10;
        QRect place;
        int atRest = 0;
        ASSERT_TRUE(waitUntil([&] {
            const QRect now = reader.place(role, name);
            atRest = now.isEmpty() || now != place ? 0 : atRest + 1;
            place = now;
            return atRest == looks;
        })) << name.toStdString();
        desktop.click(place.center().x(), place.center().y());
    }

    const SimulatedMachine machine;
    const Desktop desktop{machine.folder()};
    const std::unique_ptr<Program> windowManager = desktop.manageWindows();
    const SessionBus sessionBus_{machine.folder(), desktop.environment()};
    const AssistiveReader reader{sessionBus_.address};
    std::unique_ptr<Program> program_;
};

class FirstUseTest : public UseTest {
protected:
    FirstUseTest() : UseTest({"--consent", "waiting"}, false) {}
};

TEST_F(FirstUseTest, FromTheHelpersInstallationToFullSpeedAndBack) {
    start();
    ASSERT_TRUE(sees("label", "Lese-Modus"));
    EXPECT_TRUE(
        sees("alert message", "Hintergrund-Helper für SMC-Schreibzugriff noch nicht installiert."));
    clicks("push button", "Helper installieren");
    EXPECT_TRUE(sees("indicator", "Bitte warten")) << "for the administrator";
    EXPECT_EQ(machine.helperProcess(), 0);
    machine.control("consent granted");
    EXPECT_TRUE(sees("label", "Root aktiv"));
    EXPECT_TRUE(sees("alert message", "Hintergrund-Helper erfolgreich installiert und aktiv!"));
    EXPECT_TRUE(
        waitUntil([&] { return reader.place("push button", "Helper installieren").isEmpty(); }));
    EXPECT_NE(machine.helperProcess(), 0);

    EXPECT_EQ(machine.keys("F0Md"), "0");
    clicks("radio button", "Max / Turbo");
    EXPECT_TRUE(machine.becomes("F0Md,F1Md,F0Tg,F1Tg", "1,1,5616,5200"));
    EXPECT_TRUE(reader.isChecked("radio button", "Max / Turbo"));
    EXPECT_TRUE(waitUntil([&] {
        machine.control("step 2");
        const auto loads = numbers(reader.names("progress bar"), "Auslastung (\\d+) %");
        const auto speeds = numbers(reader.names("label"), "Lüfter (?:Links|Rechts): (\\d+) RPM");
        return loads.size() == 2 && std::min(loads[0], loads[1]) >= 98 && speeds.size() == 2 &&
               speeds[0] > 5500 && speeds[1] > 5100;
    })) << "the fans are up to speed, and the window says so";
    EXPECT_EQ(reader.names("label").count("Manuell"), 2);

    desktop.click("Lüfterstatus", "1");
    clicks("push button", "Beenden");
    expectEnd();
}

TEST_F(UseTest, ADraggedCurveReachesTheFansAndIsFoundAgain) {
    start();
    ASSERT_TRUE(sees("label", "Root aktiv"));
    clicks("page tab", "Temperatur-Kurve");
    clicks("push button", "Kurve aktivieren");
    EXPECT_TRUE(machine.becomes("F1Md", "1"));
    const std::string before = machine.keys("F0Tg");

    ASSERT_TRUE(sees("slider", "Stützpunkt 1: 45 °C, 0 %"));
    const QPoint from = reader.place("slider", "Stützpunkt 1: 45 °C, 0 %").center();
    desktop.drag(from.x(), from.y(), from.x(), from.y() - 60);
    EXPECT_TRUE(waitUntil([&] { return machine.keys("F0Tg") != before; }));
    const QString dragged = reader.names("slider").filter("Stützpunkt 1: 45 °C, ").value(0);
    EXPECT_THAT(dragged.toStdString(), AllOf(Not(""), Not(EndsWith(" 0 %"))));
    desktop.keys({"ctrl+q"});
    expectEnd();

    start();
    clicks("page tab", "Temperatur-Kurve");
    EXPECT_TRUE(sees("slider", dragged));
    clicks("page tab", "Alle Sensoren");
    desktop.keys({"ctrl+f", "h", "e", "a", "t"});
    EXPECT_TRUE(waitUntil([&] {
        const QStringList rows = reader.names("list item");
        return !rows.isEmpty() && rows.filter(QStringLiteral("Heatpipe")).size() == rows.size();
    })) << reader.names("list item").join('\n').toStdString();

    clicks("page tab", "Helper & Info");
    clicks("push button", "Helper deinstallieren");
    EXPECT_TRUE(sees("label", "Lese-Modus"));
    EXPECT_TRUE(waitUntil([&] { return machine.helperProcess() == 0; }));
    desktop.keys({"ctrl+q"});
    expectEnd();
}

} // namespace
} // namespace ventaro
