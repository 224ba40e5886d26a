#include "FanControllerViewModel.h"
#include "FanRange.h"
#include "HelperClient.h"
#include "HostSession.h"
#include "MachineControl.h"
#include "SMCService.h"
#include "SimulatedMachine.h"
#include "SimulatedPlatform.h"
#include "SystemHardwareInspector.h"
#include "ThreadTaskRunner.h"

#include <QCoreApplication>
#include <QString>
#include <cmath>
#include <thread>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using namespace testing;

/// The real controller in this process, the real helper in its own, on a simulated MacBook whose
/// clock the test steps.
struct ControlLoop {
    explicit ControlLoop(const std::vector<std::string>& options = {}, bool helperInstalled = true)
        : machine(options, helperInstalled), bundle(machine.folder() / "it's \"a\\b\" \u00fc") {
        fs::create_directories(bundle);
        fs::copy_file(bin + "VentaroHelper", bundle / "VentaroHelper");
        session.bundle.executable = bundle / "Ventaro";
        controller.emplace(FanControllerDependencies{smc, client, inspector, root, session, tasks});
        settle();
    }
    ~ControlLoop() {
        controller->shutdown();
        settle();
    }

    void settle() { tasks.finishAll(); }
    double key(const char* name) { return smc.readDouble(name).value_or(-1); }
    void tell(const MachineCommand& command) {
        EXPECT_EQ(sendMachineCommand(root, command, std::chrono::minutes(1)).exitCode, 0);
    }
    /// Lets two seconds pass, and all that they bring about.
    void tick(const std::string& seconds = "2") {
        const std::int64_t count = controller->tickCount() + 1;
        tell({"step", seconds});
        EXPECT_TRUE(processUntil(
            [&] { return controller->tickCount() == count && !controller->isPollingInFlight(); }));
        if (!controller->isLoadingHardwareInfo()) {
            settle();
        }
    }
    void select(ControlProfile profile) {
        controller->selectProfile(profile);
        settle();
    }
    static bool processUntil(const std::function<bool()>& condition) {
        return waitUntil([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    SimulatedMachine machine;
    MachineRoot root{machine.root()};
    Platform platform = makeSimulatedPlatform(root);
    const std::shared_ptr<UserSession> owner = makeHostSession(platform);
    UserSession& session = *owner;
    fs::path bundle;
    SMCService smc{*platform.ioKit};
    HelperClient client{root.resolve(HelperConstants::socketPath),
                        std::chrono::seconds(2),
                        std::chrono::seconds(2),
                        {root,
                         {bundle / "Ventaro", std::nullopt},
                         session.administratorScripts.get(),
                         [](std::chrono::milliseconds time) {
                             std::this_thread::sleep_for(time); // real: a process is starting
                         }}};
    SystemHardwareInspector inspector{*session.hostInformation};
    ThreadTaskRunner tasks;
    std::optional<FanControllerViewModel> controller;
};

/// The temperatures of `ticks` ticks along the curve, with the load changing on the way.
std::vector<double> followCurve(ControlLoop& loop, int ticks) {
    const char* const workloads[] = {"compile", "idle", "game", "office", "burst"};
    constexpr int ticksPerWorkload = 90;
    FanControllerViewModel& controller = *loop.controller;
    std::vector<double> temperatures;
    loop.select(ControlProfile::smartCurve);
    for (int tick = 0; tick < ticks; ++tick) {
        if (tick % ticksPerWorkload == 0) {
            loop.tell({"workload", workloads[(tick / ticksPerWorkload) % 5]});
        }
        const double percent =
            controller.evaluateCurvePercent(controller.currentSourceTemperature());
        loop.tick();
        for (const int fan : {0, 1}) {
            const double applied = controller.lastAppliedRPMs().at(fan);
            const double wanted = mapToRange(percent / 100, rangeOf(controller.fans(), fan));
            EXPECT_LT(std::abs(applied - wanted), 45) << "tick " << tick;
            EXPECT_EQ(loop.key(fan == 0 ? "F0Tg" : "F1Tg"), applied) << "tick " << tick;
        }
        temperatures.push_back(controller.cpuMaxTemp());
    }
    return temperatures;
}

TEST(ControlLoopTest, FollowsTheCurveForHalfAnHour) {
    constexpr int ticks = 900;
    ControlLoop loop;
    const auto temperatures = followCurve(loop, ticks);
    EXPECT_EQ(loop.key("F0Md"), 1);
    EXPECT_THAT(temperatures, AllOf(Contains(Gt(75)), Each(Lt(95)), Contains(Lt(55))))
        << "it was hot, but not too hot, and idle";
    // The helper notes every speed it sets. 333 pairs on 900 ticks: most moves are below 45 RPM.
    const auto log = QString::fromStdString(loop.machine.log("com.ventaro.helper.log"));
    const auto speeds = log.count(" forced");
    EXPECT_GT(speeds, 2 * 20);
    EXPECT_LT(speeds, 2 * 350);
    EXPECT_EQ(loop.controller->history().size(), 60U);
    EXPECT_FALSE(loop.controller->hasStatusMessage());

    loop.controller->shutdown();
    EXPECT_EQ(loop.key("F0Md"), 0);
    EXPECT_EQ(loop.key("F1Md"), 0);
}

TEST(ControlLoopTest, AHelperThatDiesIsMissedAndFoundAgain) {
    ControlLoop loop;
    FanControllerViewModel& controller = *loop.controller;
    EXPECT_TRUE(controller.isHelperInstalled());
    const pid_t helper = loop.machine.helperProcess();
    ::kill(helper, SIGKILL); // young, so that launchd holds the restart back
    ASSERT_TRUE(waitUntil([&] { return loop.machine.helperProcess() == 0; }));
    while (controller.tickCount() < 4) {
        EXPECT_TRUE(controller.isHelperInstalled()) << "nobody has looked before tick 4";
        loop.tick();
    }
    EXPECT_FALSE(controller.isHelperInstalled());
    EXPECT_FALSE(controller.hasStatusMessage()) << "a check says nothing";
    loop.select(ControlProfile::turbo);
    EXPECT_EQ(controller.statusMessage(),
              "Bitte zuerst den Hintergrund-Helper oben per Klick installieren.");
    EXPECT_EQ(controller.lastAppliedRPMs().at(0), 5616);
    EXPECT_EQ(loop.key("F0Md"), 0);

    loop.tick("10"); // launchd restarts it
    ASSERT_TRUE(loop.machine.answers());
    while (controller.tickCount() < 8) {
        EXPECT_FALSE(controller.isHelperInstalled());
        loop.tick();
    }
    EXPECT_TRUE(controller.isHelperInstalled());
    loop.tick();
    EXPECT_EQ(loop.key("F0Md"), 1) << "what was asked for last is sent now";
    EXPECT_EQ(controller.statusMessage(),
              "Ziel-Drehzahl gesetzt: Links 5616 RPM · Rechts 5200 RPM");
}

TEST(ControlLoopTest, QuittingDoesNotWaitForTheProfiler) {
    const auto begin = std::chrono::steady_clock::now();
    {
        ControlLoop loop;
        loop.controller->refreshHardwareSpecs();
        loop.settle();
        ASSERT_EQ(loop.controller->hardwareSections().size(), 6U);
        EXPECT_EQ(loop.controller->hardwareSections()[4].subtitle,
                  "APPLE SSD AP1024N · 1 TB PCIe x4 (8.0 GT/s)");
        const fs::path profiler = loop.machine.path("/usr/sbin/system_profiler");
        const fs::path started = loop.machine.folder() / "started";
        fs::remove(profiler);
        writeFile(profiler, "#!/bin/sh\n: >" + started.string() + "\nsleep 600\ntrue\n");
        fs::permissions(profiler, fs::perms(0755));
        loop.controller->refreshHardwareSpecs();
        EXPECT_TRUE(waitUntil([&] { return fs::exists(started); }));
        loop.tick();
        EXPECT_TRUE(loop.controller->isLoadingHardwareInfo()) << "and the loop goes on meanwhile";
        loop.controller->shutdown();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(300));
}

TEST(InstallationTest, InstallsReinstallsAndRemovesTheHelper) {
    ControlLoop loop({"--consent", "waiting"}, false);
    FanControllerViewModel& controller = *loop.controller;
    const auto install = [&](const MachineCommand& consent) {
        controller.installHelper();
        EXPECT_TRUE(controller.isInstallingHelper());
        loop.tell(consent);
        EXPECT_TRUE(ControlLoop::processUntil([&] { return !controller.isInstallingHelper(); }));
    };
    const std::string binary = loop.machine.path(HelperConstants::helperBinaryInstallPath);
    const std::string list = loop.machine.path(HelperConstants::launchDaemonPlistPath);

    install({"consent", "refused", "Der Benutzer hat abgebrochen."});
    EXPECT_EQ(controller.statusMessage(), "Der Benutzer hat abgebrochen.");
    loop.tell({"consent", "waiting"});
    EXPECT_FALSE(fs::exists(binary));

    fs::create_directories(list); // the chain stops at its fifth command
    install({"consent", "granted"});
    EXPECT_TRUE(controller.isErrorStatus());
    EXPECT_THAT(*controller.statusMessage(), HasSubstr("com.ventaro.helper.plist"));
    EXPECT_TRUE(fs::exists(binary)) << "what was done before it stays";
    fs::remove_all(list);

    pid_t before = 0;
    for (int round = 0; round < 3; ++round) {
        install({"consent", "granted"});
        EXPECT_EQ(controller.statusMessage(),
                  "Hintergrund-Helper erfolgreich installiert und aktiv!");
        EXPECT_TRUE(controller.isHelperInstalled());
        const pid_t helper = loop.machine.helperProcess();
        EXPECT_NE(helper, 0);
        EXPECT_NE(helper, before) << "a new one each time";
        before = helper;
    }
    EXPECT_EQ(fs::status(binary).permissions(), fs::perms(0755));
    loop.select(ControlProfile::turbo);
    EXPECT_EQ(loop.key("F0Md"), 1);

    for (int round = 0; round < 2; ++round) { // also when nothing is installed
        controller.dismissStatusMessage();
        controller.uninstallHelper();
        EXPECT_TRUE(ControlLoop::processUntil([&] { return controller.hasStatusMessage(); }));
        EXPECT_FALSE(controller.isErrorStatus()) << *controller.statusMessage();
    }
    EXPECT_EQ(controller.activeProfile(), ControlProfile::systemAuto);
    EXPECT_EQ(loop.key("F0Md"), 0) << "the fans are free";
    for (const std::string& path : {binary, list, loop.machine.path(HelperConstants::socketPath)}) {
        EXPECT_FALSE(fs::exists(path)) << path;
    }
    EXPECT_EQ(loop.machine.launchctl("list").output, "");
}

} // namespace
} // namespace ventaro
