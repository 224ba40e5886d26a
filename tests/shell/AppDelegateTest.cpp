#include "AppDelegate.h"

#include "StartArguments.h"

#include <gmock/gmock.h>

#include <deque>
#include <memory>
#include <string>

namespace ventaro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingWindow final : public ApplicationWindow {
public:
    RecordingWindow(QString title, std::vector<std::string>& calls)
        : title_(std::move(title)), calls_(calls) {}
    QString title() const override { return title_; }
    bool isVisible() const override { return visible; }
    void orderOut() override { record("out"); }
    void close() override { record("close"); }
    void makeKeyAndOrderFront() override { record("front"); }
    bool visible = false;

private:
    void record(const char* call) {
        calls_.push_back(std::string(call) + ' ' + title_.left(1).toStdString());
    }
    QString title_;
    std::vector<std::string>& calls_;
};

/// A desktop that only keeps a record; what is queued runs when the test says so.
class RecordingShell final : public ApplicationShell {
public:
    ActivationPolicy activationPolicy() const override { return policy; }
    void setActivationPolicy(ActivationPolicy wanted) override {
        policy = wanted;
        calls.emplace_back(wanted == ActivationPolicy::regular ? "regular" : "accessory");
    }
    void activateIgnoringOtherApps() override { calls.emplace_back("activate"); }
    std::vector<ApplicationWindow*> windows() override {
        std::vector<ApplicationWindow*> all;
        for (const auto& window : owned) {
            all.push_back(window.get());
        }
        return all;
    }
    void openWindow(const QString& identifier) override {
        calls.push_back("open " + identifier.toStdString());
    }
    ObserverToken addWindowWillCloseObserver(WillCloseObserver added) override {
        observer = std::move(added);
        return 7;
    }
    void removeObserver(ObserverToken token) override {
        calls.push_back("remove " + std::to_string(token));
    }
    void async(Action action) override { queue.push_back(std::move(action)); }
    void terminate() override { calls.emplace_back("terminate"); }

    RecordingWindow& add(const char* title) {
        return *owned.emplace_back(
            std::make_unique<RecordingWindow>(QString::fromUtf8(title), calls));
    }
    std::vector<std::string> taken() { return std::exchange(calls, {}); }
    std::vector<std::string> takenFromQueue() {
        for (; !queue.empty(); queue.pop_front()) {
            queue.front()();
        }
        return taken();
    }

    ActivationPolicy policy = ActivationPolicy::regular;
    std::vector<std::unique_ptr<RecordingWindow>> owned;
    std::vector<std::string> calls;
    std::deque<Action> queue;
    WillCloseObserver observer;
};

TEST(AppDelegateTest, IsMinimisedByWholeArgumentsOnly) {
    struct Row {
        QStringList arguments;
        bool isMinimized;
    };
    const Row rows[] = {{{"Ventaro"}, false},
                        {{"Ventaro", "x", "--minimized"}, true},
                        {{"Ventaro", "--background", "-x"}, true},
                        {{"Ventaro", "--minimized=1"}, false},
                        {{"Ventaro", "-minimized"}, false},
                        {{"Ventaro", "--Minimized"}, false}};
    for (const Row& row : rows) {
        EXPECT_EQ(AppDelegate::isLaunchedMinimized(row.arguments), row.isMinimized)
            << row.arguments.join(' ').toStdString();
    }
    EXPECT_EQ(unknownArguments({"Ventaro", "--minimized", "--minimised", "x"}),
              QStringList({"--minimised", "x"}));
}

TEST(AppDelegateTest, StartsInEachOfTheTwoWays) {
    RecordingShell shell;
    shell.add("other");
    shell.add("1 Ventaro");
    shell.add("2 Ventaro");
    AppDelegate normal(shell, {});
    normal.applicationDidFinishLaunching();
    normal.dashboardWillAppear([] {});
    EXPECT_THAT(shell.taken(), ElementsAre("regular", "activate"));
    EXPECT_THAT(shell.takenFromQueue(), IsEmpty());

    AppDelegate minimized(shell, {"--background"});
    minimized.applicationDidFinishLaunching();
    EXPECT_THAT(shell.taken(), ElementsAre("accessory"));
    EXPECT_THAT(shell.takenFromQueue(), ElementsAre("out 1", "close 1", "out 2", "close 2"));
    minimized.dashboardWillAppear([] {});
    EXPECT_THAT(shell.taken(), IsEmpty());
    EXPECT_THAT(shell.takenFromQueue(), ElementsAre("out 1", "close 1", "out 2", "close 2"));
}

TEST(AppDelegateTest, BecomesAnAccessoryWhenTheDashboardIsGone) {
    RecordingShell shell;
    RecordingWindow& dashboard = shell.add("Ventaro");
    RecordingWindow& other = shell.add("ventaro");
    AppDelegate delegate(shell, {});
    delegate.applicationDidFinishLaunching();
    shell.taken();

    shell.observer(other);
    EXPECT_THAT(shell.takenFromQueue(), IsEmpty());
    shell.observer(dashboard);
    EXPECT_THAT(shell.taken(), IsEmpty()) << "not before the window has closed";
    EXPECT_THAT(shell.takenFromQueue(), ElementsAre("accessory"));
    shell.observer(dashboard);
    dashboard.visible = true; // opened again meanwhile
    EXPECT_THAT(shell.takenFromQueue(), IsEmpty());
    EXPECT_FALSE(delegate.applicationShouldTerminateAfterLastWindowClosed());
    EXPECT_THAT(shell.taken(), ElementsAre("accessory"));
}

TEST(AppDelegateTest, ReopensOnlyWhatIsNotVisible) {
    RecordingShell shell;
    shell.add("other");
    shell.add("1 Ventaro");
    AppDelegate delegate(shell, {});
    EXPECT_TRUE(delegate.applicationShouldHandleReopen(true));
    EXPECT_THAT(shell.taken(), IsEmpty());
    EXPECT_TRUE(delegate.applicationShouldHandleReopen(false));
    EXPECT_THAT(shell.taken(), ElementsAre("regular", "front 1", "activate"));
    delegate.openDashboardWindow();
    EXPECT_THAT(shell.taken(), ElementsAre("regular", "open dashboard"));
    EXPECT_THAT(shell.takenFromQueue(), ElementsAre("activate", "front 1"));
}

TEST(AppDelegateTest, TerminatesOnceWithTheLatestHook) {
    RecordingShell shell;
    AppDelegate delegate(shell, {});
    delegate.applicationWillTerminate(); // nothing has been set up
    EXPECT_THAT(shell.taken(), IsEmpty());
    delegate.applicationDidFinishLaunching();
    shell.taken();
    delegate.dashboardWillAppear([] { ADD_FAILURE() << "replaced"; });
    delegate.dashboardWillAppear([&] { shell.calls.emplace_back("hook"); });
    delegate.applicationWillTerminate();
    EXPECT_THAT(shell.taken(), ElementsAre("remove 7", "hook"));
}

} // namespace
} // namespace ventaro
