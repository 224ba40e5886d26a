#include "AppDelegate.h"

#include "StartArguments.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace ventaro {
namespace {

struct RecordingWindow final : ApplicationWindow {
    RecordingWindow(const char* name, std::string& log)
        : title_(QString::fromUtf8(name)), log_(log) {}
    QString title() const override { return title_; }
    bool isVisible() const override { return visible; }
    void orderOut() override { record("out "); }
    void close() override { record("close "); }
    void makeKeyAndOrderFront() override { record("front "); }
    void record(const char* call) const { log_ += call + title_.left(1).toStdString() + ", "; }

    bool visible = false;

private:
    const QString title_;
    std::string& log_;
};

/// A desktop that only keeps a record; what is queued runs when the record is taken.
struct RecordingShell final : ApplicationShell {
    ActivationPolicy activationPolicy() const override { return policy; }
    void setActivationPolicy(ActivationPolicy wanted) override {
        policy = wanted;
        log += wanted == ActivationPolicy::regular ? "regular, " : "accessory, ";
    }
    void activateIgnoringOtherApps() override { log += "activate, "; }
    std::vector<ApplicationWindow*> windows() override {
        std::vector<ApplicationWindow*> all;
        for (RecordingWindow& window : owned) {
            all.push_back(&window);
        }
        return all;
    }
    void openWindow(const QString& id) override { log += "open " + id.toStdString() + ", "; }
    ObserverToken addWindowWillCloseObserver(WillCloseObserver added) override {
        observer = std::move(added);
        return 7;
    }
    void removeObserver(ObserverToken token) override {
        log += "remove " + std::to_string(token) + ", ";
    }
    void async(Action action) override { queue.push_back(std::move(action)); }
    void terminate() override { log += "terminate, "; }

    /// What was done since the last call, and behind a line what was queued.
    std::string taken() {
        log += "| ";
        for (; !queue.empty(); queue.pop_front()) {
            queue.front()();
        }
        return std::exchange(log, {});
    }

    ActivationPolicy policy = ActivationPolicy::regular;
    std::string log;
    std::deque<RecordingWindow> owned;
    std::deque<Action> queue;
    WillCloseObserver observer;
};

TEST(AppDelegateTest, IsMinimisedByWholeArgumentsOnly) {
    const std::pair<QStringList, bool> rows[] = {{{"Ventaro"}, false},
                                                 {{"Ventaro", "x", "--minimized"}, true},
                                                 {{"Ventaro", "--background", "-x"}, true},
                                                 {{"Ventaro", "--minimized=1"}, false},
                                                 {{"Ventaro", "-minimized"}, false},
                                                 {{"Ventaro", "--Minimized"}, false}};
    for (const auto& [arguments, isMinimized] : rows) {
        EXPECT_EQ(AppDelegate::isLaunchedMinimized(arguments), isMinimized)
            << arguments.join(' ').toStdString();
    }
    EXPECT_EQ(unknownArguments({"Ventaro", "--minimized", "--minimised", "x"}),
              QStringList({"--minimised", "x"}));
}

TEST(AppDelegateTest, StartsInEachOfTheTwoWays) {
    RecordingShell shell;
    for (const char* title : {"other", "1 Ventaro", "2 Ventaro"}) {
        shell.owned.emplace_back(title, shell.log);
    }
    AppDelegate normal(shell, {});
    normal.applicationDidFinishLaunching();
    normal.dashboardWillAppear([] {});
    EXPECT_EQ(shell.taken(), "regular, activate, | ");

    AppDelegate minimized(shell, {"--background"});
    minimized.applicationDidFinishLaunching();
    EXPECT_EQ(shell.taken(), "accessory, | out 1, close 1, out 2, close 2, ");
    minimized.dashboardWillAppear([] {});
    EXPECT_EQ(shell.taken(), "| out 1, close 1, out 2, close 2, ");

    EXPECT_TRUE(normal.applicationShouldHandleReopen(true));
    EXPECT_EQ(shell.taken(), "| ") << "what is visible is not opened";
    EXPECT_TRUE(normal.applicationShouldHandleReopen(false));
    EXPECT_EQ(shell.taken(), "regular, front 1, front 2, activate, | ");
    normal.openDashboardWindow();
    EXPECT_EQ(shell.taken(), "regular, open dashboard, | activate, front 1, front 2, ");
}

TEST(AppDelegateTest, BecomesAnAccessoryWhenTheDashboardIsGone) {
    RecordingShell shell;
    RecordingWindow& dashboard = shell.owned.emplace_back("Ventaro", shell.log);
    RecordingWindow& other = shell.owned.emplace_back("ventaro", shell.log);
    AppDelegate delegate(shell, {});
    delegate.applicationDidFinishLaunching();
    shell.taken();

    shell.observer(other);
    EXPECT_EQ(shell.taken(), "| ");
    shell.observer(dashboard);
    EXPECT_EQ(shell.taken(), "| accessory, ") << "not before the window has closed";
    shell.observer(dashboard);
    dashboard.visible = true; // opened again meanwhile
    EXPECT_EQ(shell.taken(), "| ");
    EXPECT_FALSE(delegate.applicationShouldTerminateAfterLastWindowClosed());
    EXPECT_EQ(shell.taken(), "accessory, | ");
}

TEST(AppDelegateTest, TerminatesOnceWithTheLatestHook) {
    RecordingShell shell;
    AppDelegate delegate(shell, {});
    delegate.applicationWillTerminate(); // nothing has been set up
    EXPECT_EQ(shell.taken(), "| ");
    delegate.applicationDidFinishLaunching();
    delegate.dashboardWillAppear([] { ADD_FAILURE() << "replaced"; });
    delegate.dashboardWillAppear([&] { shell.log += "hook, "; });
    shell.taken();
    delegate.applicationWillTerminate();
    EXPECT_EQ(shell.taken(), "remove 7, hook, | ");
}

} // namespace
} // namespace ventaro
