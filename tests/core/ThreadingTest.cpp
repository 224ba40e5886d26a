#include "ControllerFixture.h"
#include "DispatchGate.h"
#include "MonitoringTimer.h"
#include "ThreadTaskRunner.h"

#include <gmock/gmock.h>

#include <QEventLoop>
#include <QTimer>
#include <future>

namespace ventaro {
namespace {

using std::chrono::steady_clock;

TEST(ThreadTaskRunnerTest, AWaitingTaskHoldsNobodyUp) {
    ThreadTaskRunner runner;
    std::promise<void> password;
    const std::shared_future<void> given = password.get_future().share();
    runner.detach(TaskPriority::standard, [given] {
        given.wait();
        return [] {};
    });
    int finished = 0;
    for (int count = 0; count < 10; ++count) {
        for (const auto priority : {TaskPriority::userInitiated, TaskPriority::utility}) {
            runner.detach(priority, [&finished] { return [&finished] { ++finished; }; });
        }
    }
    EXPECT_TRUE(processUntil([&] { return finished == 20; }));
    password.set_value();
    runner.finishAll();
}

TEST(ThreadTaskRunnerTest, ActionsRunOnTheMainThreadInOrderAlsoInANestedLoop) {
    ThreadTaskRunner runner;
    std::vector<int> order;
    runner.onMainThread([&] {
        QEventLoop dialog;
        runner.onMainThread([&] {
            order.push_back(2);
            dialog.quit();
        });
        dialog.exec();
        order.push_back(3);
    });
    runner.onMainThread([&] { order.push_back(1); });
    std::thread::id thread;
    runner.detach(TaskPriority::background,
                  [&] { return [&] { thread = std::this_thread::get_id(); }; });
    EXPECT_TRUE(processUntil([&] { return thread != std::thread::id(); }));
    EXPECT_EQ(thread, std::this_thread::get_id());
    EXPECT_TRUE(processUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(ThreadTaskRunnerTest, ATaskMayOutliveItsRunner) {
    auto runner = std::make_unique<ThreadTaskRunner>();
    std::promise<void> goOn;
    const auto isDone = std::make_shared<int>();
    runner->detach(TaskPriority::utility, [&, isDone]() -> TaskRunner::Action {
        goOn.get_future().wait();
        return [isDone] { ADD_FAILURE() << "nobody is left for it"; };
    });
    runner.reset();
    goOn.set_value();
    EXPECT_TRUE(waitUntil([&] { return isDone.use_count() == 1; })) << "all is freed";
    QCoreApplication::processEvents();
}

TEST(MonitoringTimerTest, ANestedLoopHoldsItBackAndMissedFiresAreNotMadeUp) {
    ManualClock clock;
    int fires = 0;
    MonitoringTimer timer(clock, std::chrono::seconds(2), [&] { ++fires; });
    QEventLoop main;
    QTimer::singleShot(0, &main, [&] {
        QEventLoop menu;
        QTimer::singleShot(0, &menu, [&] {
            clock.tick();
            clock.tick();
            QCoreApplication::processEvents();
            QCoreApplication::processEvents();
            menu.quit();
        });
        menu.exec();
        EXPECT_EQ(fires, 0);
        QTimer::singleShot(20, &main, &QEventLoop::quit);
    });
    main.exec();
    EXPECT_EQ(fires, 1);
    clock.tick();
    EXPECT_TRUE(processUntil([&] { return fires == 2; }));
}

TEST(DispatchGateTest, LetsTheNewestWishThroughBehindTheExchangeUnderWay) {
    DispatchGate gate;
    const auto first = gate.newWish();
    std::promise<void> arrived;
    std::promise<void> answer;
    std::thread dispatch([&] {
        gate.pass(first, [&] {
            arrived.set_value();
            answer.get_future().wait();
            return true;
        });
        EXPECT_FALSE(gate.pass(first, [] { return true; })) << "it is no longer the newest";
    });
    arrived.get_future().wait();
    const auto second = gate.newWish();
    bool isFirstOver = false;
    std::thread newer([&] {
        gate.pass(second, [&] {
            EXPECT_TRUE(isFirstOver);
            return true;
        });
    });
    std::this_thread::yield();
    isFirstOver = true;
    answer.set_value();
    dispatch.join();
    newer.join();
    EXPECT_THROW(gate.pass(second, []() -> int { throw std::runtime_error("x"); }),
                 std::runtime_error);

    gate.close();
    EXPECT_FALSE(gate.pass(second, [] { return true; })) << "closed";
}

using ShutdownTest = ControllerFixture;

TEST_F(ShutdownTest, TheResetWaitsForTheExchangeUnderWay) {
    const std::chrono::milliseconds timeout(100);
    const HelperClient client(folder_.path() / "helper.sock", timeout, timeout);
    std::promise<void> arrived;
    helper_.setAnswer([&](const HelperRequest& request) -> std::string {
        if (request.action == HelperAction::setFanRPM) {
            arrived.set_value();
            return RecordingHelper::hang;
        }
        return RecordingHelper::accept("gut");
    });
    ThreadTaskRunner runner;
    FanControllerViewModel controller(
        {machine_.service, client, inspector_, root_, session_, runner});
    runner.finishAll();
    helper_.taken();
    controller.selectProfile(ControlProfile::turbo);
    arrived.get_future().wait();
    const auto start = steady_clock::now();
    controller.shutdown();
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_THAT(helper_.taken(), testing::ElementsAre("ping", "set 0 5616", "ping", "reset"));
    runner.finishAll();
}

} // namespace
} // namespace ventaro
