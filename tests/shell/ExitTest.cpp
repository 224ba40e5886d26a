#include "DispatchGate.h"
#include "ShellFixture.h"

#include <gmock/gmock.h>

#include <QKeyEvent>

namespace ventaro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExitTest : public ShellFixture {};

void press(QObject& window, int key, quint32 place = 0) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::ControlModifier, place, 0, 0);
    QCoreApplication::sendEvent(&window, &event);
}

TEST_F(ExitTest, EveryWayOutHandsTheFansBackOnce) {
    const auto pressInDashboard = [](VentaroApp& app, int key, quint32 place = 0) {
        press(app.shell().dashboard()->window(), key, place);
    };
    const std::map<std::string, std::function<void(VentaroApp&)>> ways{
        {"popover", [](VentaroApp& app) { Q_EMIT app.popover().quitRequested(); }},
        {"menu", [&](VentaroApp& app) { choose(app, "Beenden"); }},
        {"keys in the dashboard", [&](VentaroApp& app) { pressInDashboard(app, Qt::Key_Q); }},
        {"no Latin letters", [&](VentaroApp& app) { pressInDashboard(app, 0x0419, 24); }},
        {"keys in the status item",
         [](VentaroApp&) { press(*windowTitled("Lüfterstatus"), Qt::Key_Q); }},
        {"end of the session",
         [](VentaroApp&) {
             QEvent quit(QEvent::Quit);
             QCoreApplication::sendEvent(qApp, &quit);
         }},
        {"end of the user's session",
         [](VentaroApp& app) {
             app.sessionEnds();
             app.quit();
         }},
        {"event loop", [](VentaroApp&) { QCoreApplication::exit(0); }},
        {"twice",
         [](VentaroApp& app) {
             app.quit();
             app.quit();
         }},
    };
    int width = 700;
    for (const auto& [name, go] : ways) {
        for (const bool resets : {true, false}) {
            const QSize size(++width, 600);
            const auto requests = run({}, [&, leave = go](VentaroApp& app) {
                app.viewModel().setResetToAutoOnQuit(resets);
                ASSERT_TRUE(opensDashboard(app));
                app.shell().dashboard()->window().resize(size);
                leave(app);
            });
            EXPECT_EQ(WindowSizeFile(windowSizeFile_).read(), size) << name;
            EXPECT_EQ(requests, resets ? std::vector<std::string>({"ping", "reset"})
                                       : std::vector<std::string>())
                << name;
        }
    }
}

TEST_F(ExitTest, SaysSoWhenTheFansStayForced) {
    setKey("F0Md", 1);
    helper_.setAnswer([](const HelperRequest& request) {
        return request.action == HelperAction::resetAllAuto ? RecordingHelper::refuse("Nein.")
                                                            : RecordingHelper::accept("gut");
    });
    run(
        {"--minimized"},
        [&](VentaroApp& app) {
            app.viewModel().selectProfile(ControlProfile::turbo);
            settle();
        },
        1);
    EXPECT_THAT(desktop_.told, ElementsAre("Die Lüfter sind noch nicht auf macOS-Automatik: Nein. "
                                           "Freigeben: „ventaroctl auto“"));
}

TEST_F(ExitTest, TheGuardActsOnceAndOnlyIfItMust) {
    const auto gate = std::make_shared<DispatchGate>();
    const auto handBack = [this] { client_.resetAllFans(); };
    ExitGuard guard(gate, handBack);
    guard.handFansBack();
    guard.handFansBack();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset"));
    EXPECT_TRUE(gate->isClosed()) << "no request comes after the reset";
    ExitGuard disarmed(gate, handBack);
    disarmed.disarm();
    disarmed.handFansBack();
    EXPECT_THAT(helper_.taken(), IsEmpty());
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("neu", 2); });
    ExitGuard(gate, handBack).handFansBack();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping"));
}

TEST_F(ExitTest, FailuresFromTheStatusItemReachTheUser) {
    helper_.setAnswer([](const HelperRequest& request) {
        return request.action == HelperAction::ping ? RecordingHelper::accept("da")
                                                    : RecordingHelper::refuse("geht nicht");
    });
    run({"--minimized"}, [&](VentaroApp& app) {
        app.viewModel().selectProfile(ControlProfile::turbo); // not from the status item
        settle();
        EXPECT_THAT(desktop_.told, IsEmpty());
        choose(app, "Leise");
        choose(app, "Leise"); // also when nothing about the failure is new
        EXPECT_THAT(desktop_.told, ElementsAre("geht nicht", "geht nicht"));
        Q_EMIT app.popover().actionStarted();
        app.viewModel().installHelper(); // which says first that somebody is being asked
        settle();
        EXPECT_EQ(desktop_.told.size(), 3U);
        EXPECT_EQ(desktop_.told.back(), app.viewModel().statusMessage());

        choose(app, "Dashboard");
        ASSERT_TRUE(opensDashboard(app));
        Q_EMIT app.popover().actionStarted();
        app.viewModel().selectProfile(ControlProfile::systemAuto);
        settle();
        EXPECT_EQ(desktop_.told.size(), 3U) << "the dashboard shows it";
        app.shell().dashboard()->window().showMinimized();
        ASSERT_TRUE(processUntil([&] { return !app.shell().isDashboardReadable(); }));
        choose(app, "Leise");
        EXPECT_EQ(desktop_.told.size(), 4U) << "nobody can read it in the task bar";
        helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
    });
}

} // namespace
} // namespace ventaro
