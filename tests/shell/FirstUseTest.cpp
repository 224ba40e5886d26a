#include "AssistiveReader.h"
#include "Desktop.h"

#include <gmock/gmock.h>

#include <QRegularExpression>

namespace ventaro {
namespace {

/// What a person with a mouse sees and does, found by what a screen reader is told.
class Person {
public:
    Person(const Desktop& desktop, const AssistiveReader& reader)
        : desktop_(desktop), reader_(reader) {}

    bool sees(const char* role, const QString& name) const {
        return waitUntil([&] { return !reader_.place(role, name).isEmpty(); });
    }
    /// Clicks as soon as the element has come to rest.
    void clicks(const char* role, const QString& name) const {
        constexpr int looks = 10;
        QRect place;
        int atRest = 0;
        ASSERT_TRUE(waitUntil([&] {
            const QRect now = reader_.place(role, name);
            atRest = now.isEmpty() || now != place ? 0 : atRest + 1;
            place = now;
            return atRest == looks;
        })) << name.toStdString();
        desktop_.click(place.center().x(), place.center().y());
    }

private:
    const Desktop& desktop_;
    const AssistiveReader& reader_;
};

/// What the first group of `pattern` catches in those of the texts that it fits.
std::vector<int> numbers(const QStringList& texts, const QString& pattern) {
    std::vector<int> found;
    for (const QString& text : texts) {
        const auto match =
            QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text);
        if (match.hasMatch()) {
            found.push_back(match.captured(1).toInt());
        }
    }
    return found;
}

TEST(FirstUseTest, FromTheHelpersInstallationToFullSpeedAndBack) {
    const SimulatedMachine machine({"--consent", "waiting"}, false);
    const Desktop desktop(machine.folder());
    const WindowManager windowManager(machine.folder(), desktop);
    const SessionBus sessionBus(machine.folder(), desktop.environment());
    const AssistiveReader reader(sessionBus.address());
    ASSERT_TRUE(reader.isConnected());
    const Person person(desktop, reader);

    // Qt 6.4 loses what it has attached to a radio button while a screen reader listens.
    const std::filesystem::path known = machine.folder() / "known-leaks";
    writeFile(known, "leak:QQmlData::createQQmlData\n");
    auto environment = machine.environment();
    for (const auto& part :
         {desktop.environment(),
          {sessionBus.environment(), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
           "LSAN_OPTIONS=print_suppressions=0:suppressions=" + known.string(),
           // The bridge complains when the reader asks for what has just gone from the screen.
           "QT_LOGGING_RULES=qt.accessibility.atspi*=false"}}) {
        environment.insert(environment.end(), part.begin(), part.end());
    }
    Program program(machine.folder(), {bin + "Ventaro"}, environment);

    ASSERT_TRUE(person.sees("label", "Lese-Modus"));
    EXPECT_TRUE(person.sees("alert message",
                            "Hintergrund-Helper für SMC-Schreibzugriff noch nicht installiert."));
    person.clicks("push button", "Helper installieren");
    EXPECT_TRUE(person.sees("indicator", "Bitte warten")) << "for the administrator";
    EXPECT_EQ(machine.helperProcess(), 0);
    machine.control({"consent", "granted"});
    EXPECT_TRUE(person.sees("label", "Root aktiv"));
    EXPECT_TRUE(
        person.sees("alert message", "Hintergrund-Helper erfolgreich installiert und aktiv!"));
    EXPECT_TRUE(
        waitUntil([&] { return reader.place("push button", "Helper installieren").isEmpty(); }));
    EXPECT_NE(machine.helperProcess(), 0);

    EXPECT_EQ(machine.key("F0Md"), "0.0000");
    person.clicks("radio button", "Max / Turbo");
    EXPECT_TRUE(waitUntil([&] { return machine.key("F1Md") == "1.0000"; }));
    EXPECT_TRUE(reader.isChecked("radio button", "Max / Turbo"));
    EXPECT_EQ(machine.key("F0Md"), "1.0000");
    EXPECT_EQ(machine.key("F0Tg"), "5616.0000");
    EXPECT_EQ(machine.key("F1Tg"), "5200.0000");
    EXPECT_TRUE(waitUntil([&] {
        machine.control({"step", "2"});
        const auto loads = numbers(reader.names("progress bar"), "Auslastung (\\d+) %");
        const auto speeds = numbers(reader.names("label"), "Lüfter (?:Links|Rechts): (\\d+) RPM");
        return loads.size() == 2 && std::min(loads[0], loads[1]) >= 98 && speeds.size() == 2 &&
               speeds[0] > 5500 && speeds[1] > 5100;
    })) << "the fans are up to speed, and the window says so";
    EXPECT_EQ(reader.names("label").count("Manuell"), 2);

    desktop.click("Lüfterstatus", "1");
    person.clicks("push button", "Beenden");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
    EXPECT_EQ(machine.key("F0Md"), "0.0000");
    EXPECT_EQ(machine.key("F1Md"), "0.0000");
}

} // namespace
} // namespace ventaro
