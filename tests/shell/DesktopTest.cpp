#include "Desktop.h"

#include "ControllerFixture.h"
#include "ShellFixture.h"

#include <gmock/gmock.h>

#include <QDBusConnection>
#include <QDBusInterface>

namespace ventaro {

/// A panel's part of the tray protocol: takes the items that register.
class StandInWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    QString item;

    // NOLINTNEXTLINE(readability-identifier-naming): the protocol's name
    Q_SLOT void RegisterStatusNotifierItem(const QString& service) { item = service; }
};

namespace {

using namespace testing;

const std::string dashboard = "Ventaro —";
const std::string statusWindow = "Lüfterstatus";

/// The built program on a simulated machine, on a virtual screen.
class DesktopTest : public Test {
protected:
    SimulatedMachine machine_{{}, false};
    RecordingHelper helper_{machine_.path(HelperConstants::socketPath)};
    Desktop desktop_{machine_.folder()};
};

TEST_F(DesktopTest, TheDashboardAloneIsInTheTaskBar) {
    const auto windowManager = desktop_.manageWindows();
    const auto program = desktop_.start(machine_);
    const std::string popover = "Lüfter und";
    const auto properties = [&](const std::string& title) {
        return desktop_.run({"xprop", "-id", desktop_.window(title), "_NET_WM_STATE",
                             "_NET_WM_WINDOW_TYPE", "_NET_WM_DESKTOP"});
    };
    const auto isUtility = AllOf(HasSubstr("SKIP_TASKBAR"), HasSubstr("SKIP_PAGER"),
                                 HasSubstr("UTILITY"), HasSubstr("4294967295"));
    ASSERT_TRUE(desktop_.activates(dashboard));
    ASSERT_TRUE(desktop_.shows(statusWindow));
    EXPECT_THAT(properties(dashboard), Not(HasSubstr("SKIP")));
    EXPECT_THAT(properties(statusWindow), isUtility);

    desktop_.keys({"ctrl+w"});
    EXPECT_TRUE(desktop_.hides(dashboard));
    EXPECT_EQ(desktop_.start(machine_, {"--minimized"})->wait(), 0);
    EXPECT_EQ(desktop_.window(dashboard), "");
    EXPECT_EQ(desktop_.start(machine_)->wait(), 0);
    EXPECT_TRUE(desktop_.activates(dashboard));

    for (const bool closesByKey : {true, false}) {
        desktop_.click(statusWindow, "1");
        ASSERT_TRUE(desktop_.activates(popover));
        EXPECT_THAT(properties(popover), isUtility);
        EXPECT_THAT(desktop_.run({"xwininfo", "-id", desktop_.window(popover), "-shape"}),
                    HasSubstr("Window shape extents: "))
            << "nothing could blend its round corners";
        if (closesByKey) {
            desktop_.keys({"Escape"});
        } else {
            desktop_.click(statusWindow, "1");
        }
        EXPECT_TRUE(desktop_.hides(popover));
    }

    helper_.taken();
    desktop_.run({"xdotool", "windowactivate", desktop_.window(dashboard)});
    ASSERT_TRUE(desktop_.activates(dashboard));
    desktop_.keys({"ctrl+q"});
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset"));
    EXPECT_EQ(program->errors(), "");
}

TEST_F(DesktopTest, TheStatusItemFollowsTheX11Tray) {
    const auto program = desktop_.start(machine_, {"--minimized", "nonsense"});
    ASSERT_TRUE(desktop_.shows(statusWindow));
    for (int time = 0; time < 2; ++time) {
        const Program tray(machine_.folder(), {"trayer"}, desktop_.environment());
        EXPECT_TRUE(desktop_.hides(statusWindow));
        EXPECT_TRUE(desktop_.shows("Lüftersymbol")) << "the icon in the tray";
        tray.signal(SIGTERM);
        EXPECT_TRUE(desktop_.shows(statusWindow));
    }
    EXPECT_EQ(desktop_.window(dashboard), "");
    desktop_.click(statusWindow, "3");
    desktop_.keys({"Up", "Up", "Return"});
    EXPECT_TRUE(desktop_.shows(dashboard));
    EXPECT_EQ(program->errors(), "Ventaro: the argument \"nonsense\" is ignored\n");
}

TEST_F(DesktopTest, SignalsAndALostDisplayHandTheFansBackOnce) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, 0}) {
        const bool losesDisplay = signal == 0;
        const auto program =
            desktop_.start(machine_, {losesDisplay ? "with-its-window" : "--minimized"});
        ASSERT_TRUE(desktop_.shows(losesDisplay ? dashboard : statusWindow));
        ASSERT_TRUE(waitUntil([&] { return !helper_.taken().empty(); })) << "its first look";
        if (losesDisplay) {
            desktop_.end();
        } else {
            program->signal(signal);
            program->signal(signal);
        }
        EXPECT_EQ(program->wait(), losesDisplay ? 1 : 0);
        EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset")) << signal;
    }
}

TEST_F(DesktopTest, TheStatusItemFollowsThePanelOfTheSessionBus) {
    const SessionBus sessionBus(machine_.folder());
    const auto program = desktop_.start(machine_, {"--minimized"}, {sessionBus.environment()});
    ASSERT_TRUE(desktop_.shows(statusWindow));

    const QString watcherName = "org.kde.StatusNotifierWatcher";
    auto bus = QDBusConnection::connectToBus(QString::fromStdString(sessionBus.address), "panel");
    for (int time = 0; time < 2; ++time) {
        StandInWatcher watcher;
        ASSERT_TRUE(bus.registerObject("/StatusNotifierWatcher", &watcher,
                                       QDBusConnection::ExportAllContents));
        ASSERT_TRUE(bus.registerService(watcherName));
        ASSERT_TRUE(processUntil([&] { return !watcher.item.isEmpty(); }));
        EXPECT_TRUE(processUntil([&] { return desktop_.window(statusWindow).empty(); }));
        QDBusInterface icon(watcher.item, "/StatusNotifierItem", "org.kde.StatusNotifierItem", bus);
        icon.call("Activate", 640, 450);
        EXPECT_TRUE(desktop_.shows("Lüfter und"));
        icon.call("Activate", 640, 450);
        EXPECT_TRUE(desktop_.hides("Lüfter und"));
        bus.unregisterService(watcherName);
        bus.unregisterObject("/StatusNotifierWatcher");
        EXPECT_TRUE(desktop_.shows(statusWindow));
    }
    QDBusConnection::disconnectFromBus("panel");
}

} // namespace
} // namespace ventaro

#include "DesktopTest.moc"
