#include "ControllerFixture.h"
#include "ThreadTaskRunner.h"

#include <QEventLoop>
#include <QTimer>
#include <future>
#include <numeric>

namespace ventaro {
namespace {

using std::chrono::steady_clock;

bool processUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
        QCoreApplication::processEvents();
        return condition();
    });
}

TEST(ThreadTaskRunnerTest, AWaitingTaskHoldsNobodyUp) {
    ThreadTaskRunner runner;
    std::promise<void> password;
    const std::shared_future<void> given = password.get_future().share();
    runner.detach(TaskPriority::standard, [given] { given.wait(); });
    int finished = 0;
    for (int count = 0; count < 10; ++count) {
        for (const auto priority : {TaskPriority::userInitiated, TaskPriority::utility}) {
            runner.detach(priority, [&] { runner.onMainThread([&finished] { ++finished; }); });
        }
    }
    EXPECT_TRUE(processUntil([&] { return finished == 20; }));
    password.set_value();
    runner.finishAll();
}

TEST(ThreadTaskRunnerTest, ActionsRunOnTheMainThreadInOrder) {
    ThreadTaskRunner runner;
    std::vector<int> order;
    const auto mainThread = std::this_thread::get_id();
    runner.detach(TaskPriority::background, [&] {
        for (int number = 0; number < 100; ++number) {
            runner.onMainThread([&, number] {
                EXPECT_EQ(std::this_thread::get_id(), mainThread);
                order.push_back(number);
            });
        }
    });
    EXPECT_TRUE(processUntil([&] { return order.size() == 100; }));
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(ThreadTaskRunnerTest, WhatIsLeftAtTheEndIsDropped) {
    auto runner = std::make_unique<ThreadTaskRunner>();
    std::promise<void> done;
    runner->detach(TaskPriority::utility, [&] {
        runner->onMainThread([] { ADD_FAILURE(); });
        done.set_value();
    });
    done.get_future().wait();
    runner.reset();
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

TEST(DispatchGateTest, ClosesBehindTheExchangeUnderWay) {
    DispatchGate gate;
    std::promise<void> arrived;
    std::atomic<bool> hasAnswered = false;
    std::thread dispatch([&] {
        gate.pass([&] {
            arrived.set_value();
            EXPECT_TRUE(waitUntil([&] { return gate.isClosed(); }));
            hasAnswered = true;
            return true;
        });
        EXPECT_FALSE(gate.pass([] { return true; })) << "the next request stays behind";
    });
    arrived.get_future().wait();
    gate.close();
    EXPECT_TRUE(hasAnswered);
    dispatch.join();
    EXPECT_THROW(DispatchGate().pass([]() -> int { throw std::runtime_error("x"); }),
                 std::runtime_error);
}

class ShutdownTest : public ControllerFixture {};

TEST_F(ShutdownTest, TheResetIsTheLastThingOnTheWire) {
    ThreadTaskRunner runner;
    std::promise<void> arrived;
    std::promise<void> goOn;
    helper_.setAnswer([&, isFirst = std::make_shared<bool>(true)](const HelperRequest& request) {
        if (request.action == HelperAction::setFanRPM && std::exchange(*isFirst, false)) {
            arrived.set_value();
            goOn.get_future().wait();
        }
        return RecordingHelper::accept("gut");
    });
    FanControllerViewModel controller(
        {machine_.service, client_, inspector_, root_, session_, runner});
    runner.finishAll();
    helper_.taken();
    controller.selectProfile(ControlProfile::turbo);
    controller.selectProfile(ControlProfile::silent);
    arrived.get_future().wait();
    std::thread release([&] { goOn.set_value(); });
    controller.shutdown();
    controller.shutdown();
    release.join();
    runner.finishAll();
    const auto requests = helper_.taken();
    EXPECT_EQ(requests.back(), "reset");
    EXPECT_EQ(std::count(requests.begin(), requests.end(), "reset"), 1);
}

TEST_F(ShutdownTest, AHelperThatHangsCostsItsTimeOutsAndNoMore) {
    const auto path = folder_.path() / "hung.sock";
    const FileDescriptor hung = listenOnUnixSocket(path, SOCK_STREAM, 0600);
    const std::chrono::milliseconds timeout(50);
    const HelperClient client(path, timeout, timeout);
    ThreadTaskRunner runner;
    FanControllerViewModel controller(
        {machine_.service, client, inspector_, root_, session_, runner});
    controller.selectProfile(ControlProfile::turbo);
    const auto start = steady_clock::now();
    controller.shutdown();
    EXPECT_GE(steady_clock::now() - start, timeout) << "it was tried";
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(20));
    runner.finishAll();
}

} // namespace
} // namespace ventaro
