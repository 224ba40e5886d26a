#include "AssistiveReader.h"
#include "Desktop.h"

#include <gmock/gmock.h>

#include <QRegularExpression>
#include <memory>

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

/// The built program on a machine, a screen and a bus of its own, with somebody who uses it.
class UseTest : public testing::Test {
protected:
    explicit UseTest(const std::vector<std::string>& options = {}, bool helperInstalled = true)
        : machine(options, helperInstalled) {
        // Qt 6.4 loses what it has attached to a radio button while a screen reader listens.
        const std::filesystem::path known = machine.folder() / "known-leaks";
        writeFile(known, "leak:QQmlData::createQQmlData\n");
        environment_ = machine.environment();
        for (const auto& part :
             {desktop.environment(),
              {sessionBus_.environment(), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
               "LSAN_OPTIONS=print_suppressions=0:suppressions=" + known.string(),
               // The bridge complains when the reader asks for what has just gone from the screen.
               "QT_LOGGING_RULES=qt.accessibility.atspi*=false"}}) {
            environment_.insert(environment_.end(), part.begin(), part.end());
        }
    }
    std::unique_ptr<Program> start() const {
        EXPECT_TRUE(reader.isConnected());
        return std::make_unique<Program>(machine.folder(),
                                         std::vector<std::string>{bin + "Ventaro"}, environment_);
    }

    const SimulatedMachine machine;
    const Desktop desktop{machine.folder()};

private:
    const WindowManager windowManager_{machine.folder(), desktop};
    const SessionBus sessionBus_{machine.folder(), desktop.environment()};
    std::vector<std::string> environment_;

protected:
    const AssistiveReader reader{sessionBus_.address()};
    const Person person{desktop, reader};
};

class FirstUseTest : public UseTest {
protected:
    FirstUseTest() : UseTest({"--consent", "waiting"}, false) {}
};

TEST_F(FirstUseTest, FromTheHelpersInstallationToFullSpeedAndBack) {
    const auto program = start();
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
    EXPECT_EQ(program->wait(), 0);
    EXPECT_EQ(program->errors(), "");
    EXPECT_EQ(machine.key("F0Md"), "0.0000");
    EXPECT_EQ(machine.key("F1Md"), "0.0000");
}

/// The name that the curve's first point has just now; empty if it is not to be seen.
QString firstPoint(const AssistiveReader& reader) {
    const QStringList points = reader.names("slider").filter(QStringLiteral("Stützpunkt 1: "));
    return points.value(0);
}

TEST_F(UseTest, ADraggedCurveReachesTheFansAndIsFoundAgain) {
    auto program = start();
    ASSERT_TRUE(person.sees("label", "Root aktiv"));
    person.clicks("page tab", "Temperatur-Kurve");
    person.clicks("push button", "Kurve aktivieren");
    EXPECT_TRUE(waitUntil([&] { return machine.key("F1Md") == "1.0000"; }));
    const std::string before = machine.key("F0Tg");

    ASSERT_TRUE(person.sees("slider", "Stützpunkt 1: 45 °C, 0 %"));
    const QPoint from = reader.place("slider", "Stützpunkt 1: 45 °C, 0 %").center();
    desktop.drag(from.x(), from.y(), from.x(), from.y() - 60);
    EXPECT_TRUE(waitUntil([&] { return machine.key("F0Tg") != before; }));
    const QString dragged = firstPoint(reader);
    EXPECT_TRUE(dragged.startsWith("Stützpunkt 1: 45 °C, ") && !dragged.endsWith(" 0 %"))
        << dragged.toStdString();
    desktop.keys({"ctrl+q"});
    EXPECT_EQ(program->wait(), 0);
    EXPECT_EQ(program->errors(), "");
    EXPECT_EQ(machine.key("F0Md"), "0.0000");

    program = start();
    person.clicks("page tab", "Temperatur-Kurve");
    EXPECT_TRUE(person.sees("slider", dragged));

    person.clicks("page tab", "Alle Sensoren");
    desktop.keys({"ctrl+f", "h", "e", "a", "t"});
    EXPECT_TRUE(waitUntil([&] {
        const QStringList rows = reader.names("list item");
        return !rows.isEmpty() && rows.filter(QStringLiteral("Heatpipe")).size() == rows.size();
    })) << reader.names("list item").join('\n').toStdString();

    person.clicks("page tab", "Helper & Info");
    person.clicks("push button", "Helper deinstallieren");
    EXPECT_TRUE(person.sees("label", "Lese-Modus"));
    EXPECT_TRUE(waitUntil([&] { return machine.helperProcess() == 0; }));
    desktop.keys({"ctrl+q"});
    EXPECT_EQ(program->wait(), 0);
    EXPECT_EQ(program->errors(), "");
}

} // namespace
} // namespace ventaro
