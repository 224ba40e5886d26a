#include "SimulatedMachine.h"

#include <atomic>
#include <fstream>
#include <thread>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using namespace testing;

/// `ventaroctl run` on a stepped machine.
struct Headless : Program {
    Headless(const SimulatedMachine& where, const std::string& arguments,
             const std::string& ventaroctl = bin + "ventaroctl")
        : Program(where.folder(), split(ventaroctl + " run " + arguments), where.environment()),
          machine(where) {}
    /// Lets time pass, two seconds at a time, until the program has printed `text`.
    bool printsInTime(const std::string& text) const {
        return stepUntil([&] { return has(text); });
    }
    bool stepUntil(const std::function<bool()>& condition) const {
        return waitUntil([&] {
            machine.control("step 2");
            return condition();
        });
    }
    const SimulatedMachine& machine;
};

TEST(HeadlessControl, HandsTheFansBackOnEverySignalAndWithoutATemperature) {
    const SimulatedMachine machine({"--workload", "compile"});
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Headless run(machine, "--curve 100:80,0:80 --source gpuDie");
        EXPECT_TRUE(run.printsInTime("asking for left 4860 RPM, right 4500 RPM"));
        EXPECT_TRUE(machine.becomes("F0Md,F1Tg", "1,4500"));
        run.signal(signal);
        EXPECT_EQ(run.wait(), 0);
        EXPECT_TRUE(run.has("The fans are automatic again."));
        EXPECT_EQ(machine.keys("F0Md,F1Md"), "0,0");
    }
    EXPECT_FALSE(fs::exists(machine.path("/Users/ventaro/Library")))
        << "the user's settings are left alone";

    const Headless run(machine, "--source gpuDie");
    EXPECT_TRUE(run.printsInTime("asking for"));
    for (const std::string key : {"TGDD", "TG0P", "TG0D"}) {
        machine.control("fault " + key + " read-fails");
    }
    EXPECT_TRUE(run.printsInTime("nicht lesbar"));
    EXPECT_TRUE(machine.becomes("F0Md", "0"));
    machine.control("clear");
    EXPECT_TRUE(run.stepUntil([&] { return machine.keys("F0Md") == "1"; }));
}

/// Kills the helper, more than once if it was old enough to be restarted at once.
void killHelper(const SimulatedMachine& machine) {
    EXPECT_TRUE(waitUntil([&] {
        const pid_t helper = machine.helperProcess();
        if (helper != 0) {
            ::kill(helper, SIGKILL);
        }
        return helper == 0;
    }));
}

TEST(HeadlessControl, ComesThroughALostHelper) {
    const SimulatedMachine machine;
    killHelper(machine);
    Headless run(machine, "--profile Leise --json");
    EXPECT_TRUE(run.prints("Bitte zuerst"));
    EXPECT_EQ(machine.keys("F0Md"), "0");
    // launchd brings it back after ten seconds, and nobody has to press the button again.
    EXPECT_TRUE(run.printsInTime("Ziel-Drehzahl gesetzt: Links 2403 RPM"));
    EXPECT_EQ(machine.keys("F0Md"), "1");

    // The same for fans that something else has set free.
    EXPECT_THAT(machine.run({bin + "VentaroHelper", "--reset-all"}, "root"), ends(0));
    EXPECT_EQ(machine.keys("F1Md"), "0");
    EXPECT_TRUE(run.stepUntil([&] { return machine.keys("F1Md") == "1"; }));

    killHelper(machine);
    run.signal(SIGHUP);
    EXPECT_TRUE(run.prints(R"("event":"trying")"));
    run.signal(SIGHUP); // the shell's, after the kernel's
    machine.control("step 10");
    EXPECT_EQ(run.wait(), 0) << run.errors();
    EXPECT_EQ(machine.keys("F0Md"), "0");
}

/// The watchers on this machine.
std::vector<pid_t> watchers(const SimulatedMachine& machine) {
    std::vector<pid_t> found;
    for (const auto& process : fs::directory_iterator("/proc")) {
        std::string line;
        std::getline(std::ifstream(process.path() / "cmdline"), line); // which may just have ended
        if (line.starts_with("VentaroWatcher") && line.find(machine.root()) != std::string::npos) {
            found.push_back(std::atoi(process.path().filename().c_str()));
        }
    }
    return found;
}

TEST(HeadlessControl, WhoeverKillsItFindsTheFansFree) {
    const SimulatedMachine machine;
    for (const bool isHelperAway : {false, true}) {
        Headless run(machine, "--profile turbo");
        ASSERT_TRUE(machine.becomes("F0Md,F1Md", "1,1"));
        const auto first = watchers(machine);
        ASSERT_EQ(first.size(), 1U);
        ::kill(first.front(), SIGTERM); // to which it is deaf
        if (isHelperAway) {
            ::kill(first.front(), SIGKILL);
            EXPECT_TRUE(waitUntil([&] {
                const auto next = watchers(machine);
                return next.size() == 1 && next != first;
            }));
            killHelper(machine);
        }
        run.signal(SIGKILL);
        run.wait();
        if (isHelperAway) {
            EXPECT_EQ(machine.keys("F0Md"), "1");
            machine.control("step 10");
        }
        EXPECT_TRUE(machine.becomes("F0Md,F1Md", "0,0"));
        EXPECT_TRUE(waitUntil([&] { return watchers(machine).empty(); }));
    }
    Headless run(machine, "--profile turbo");
    ASSERT_TRUE(machine.becomes("F0Md,F1Md", "1,1"));
    run.signal(SIGTERM);
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(waitUntil([&] { return watchers(machine).empty(); })) << "nothing is left to do";

    Headless killed(machine, "--profile turbo");
    ASSERT_TRUE(machine.becomes("F0Md,F1Md", "1,1"));
    killHelper(machine);
    killed.signal(SIGKILL);
    const Headless next(machine, "--profile silent"); // steers from now on
    machine.control("step 10");
    EXPECT_TRUE(machine.becomes("F0Md,F0Tg", "1,2403"));
    EXPECT_TRUE(waitUntil([&] { return watchers(machine).size() == 1; }));
    EXPECT_EQ(machine.keys("F0Md,F0Tg"), "1,2403") << "which the other's watcher respects";
}

TEST(HeadlessControl, OneProgramAtATimeSteersTheFans) {
    const SimulatedMachine machine;
    const std::string refused = "is steering the fans; --take-over makes it let go.";
    const auto lose = [&](const char* command, const char* keys, const char* values) {
        Headless run(machine, "--profile turbo --take-over");
        EXPECT_TRUE(machine.becomes("F0Md,F1Tg", "1,5200"));
        for (const char* other : {"set 0 2000", "profile silent", "run"}) {
            const Outcome outcome = machine.ctl(other);
            EXPECT_THAT(outcome, ends(1, refused)) << other;
            EXPECT_THAT(outcome.errors, HasSubstr("ventaroctl run (PID "));
        }
        EXPECT_EQ(machine.keys("F0Tg,F1Tg"), "5616,5200") << "nothing of it was done";
        EXPECT_THAT(machine.ctl(command), ends(0));
        EXPECT_EQ(run.wait(), 0);
        EXPECT_TRUE(run.has("hat die Steuerung der Lüfter übernommen"));
        EXPECT_FALSE(run.has("automatic again"));
        EXPECT_EQ(machine.keys(keys), values) << "and so it stays";
    };
    lose("set 0 2000 --take-over", "F0Md,F0Tg,F1Tg", "1,2000,5200");
    lose("auto", "F0Md,F1Md", "0,0");
}

TEST(HeadlessControl, SaysHowToFreeFansThatStayForced) {
    const SimulatedMachine machine;
    Headless run(machine, "--profile turbo");
    EXPECT_TRUE(machine.becomes("F1Md", "1"));
    killHelper(machine);
    for (const char* fan : {"F0Md", "F1Md"}) { // what cannot be read is not known to be free
        machine.control(std::string("fault ") + fan + " read-fails");
    }
    run.signal(SIGTERM);
    EXPECT_EQ(run.wait(), 1) << "after its ten seconds";
    machine.control("clear");
    EXPECT_THAT(run.errors(),
                AllOf(HasSubstr("the fans are still forced"), HasSubstr("ventaroctl auto")));
    EXPECT_FALSE(run.has("automatic again"));
    EXPECT_EQ(machine.keys("F0Md"), "1");
}

TEST(HeadlessControl, EndsWhenNobodyReadsItAndGoesOnWhenNobodyHurries) {
    const SimulatedMachine machine;
    const SimulatedMachine another;
    // A reader that leaves after the first line; nohup, which has SIGHUP ignored.
    const std::string command = "'" + bin + "ventaroctl' run --profile turbo";
    Program headed(machine.folder(),
                   {"/bin/bash", "-c", "set -o pipefail; " + command + " | head -1"},
                   machine.environment());
    Program deaf(another.folder(), {"/bin/bash", "-c", "trap '' HUP; exec " + command},
                 another.environment());
    EXPECT_TRUE(another.becomes("F0Md", "1"));
    deaf.signal(SIGHUP);
    std::atomic<bool> hasEnded = false;
    std::thread clock([&] {
        while (!hasEnded) {
            machine.control("step 2");
        }
    });
    EXPECT_EQ(headed.wait(), 0);
    hasEnded = true;
    clock.join();
    EXPECT_THAT(deaf.output(), Not(HasSubstr("automatic again")));
    deaf.signal(SIGTERM);
    EXPECT_EQ(deaf.wait(), 0);
}

TEST(HeadlessControl, SeesACompetitorButNotItself) {
    const SimulatedMachine machine;
    const fs::path copy = machine.folder() / "tgpro";
    const fs::path other = machine.folder() / "Macs Fan Control";
    fs::copy_file(bin + "ventaroctl", copy);
    fs::copy_file("/bin/sleep", other);
    Headless run(machine, "--profile systemAuto --json", copy);
    EXPECT_TRUE(run.printsInTime(R"({"event":"helper","answers":true})"));
    EXPECT_FALSE(run.has("competitor"));
    {
        const Program competitor(machine.folder(), {other, "100"}, machine.environment());
        EXPECT_TRUE(run.printsInTime(R"({"event":"competitor","running":true})"));
    }
    EXPECT_TRUE(run.printsInTime(R"({"event":"competitor","running":false})"));
    run.signal(SIGTERM);
    EXPECT_EQ(run.wait(), 0);
}

TEST(Profiles, AreAppliedOnce) {
    const SimulatedMachine machine({"--workload", "compile"});
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"silent", "F0Md,F0Tg", "1,2403"},
        {"Max / Turbo", "F0Md,F0Tg", "1,5616"},
        {"manual", "F0Md,F0Tg", "1,2200"},
        {"systemAuto", "F0Md", "0"}};
    for (const auto& [name, keys, values] : rows) {
        EXPECT_THAT(machine.run({bin + "ventaroctl", "profile", name}), ends(0));
        EXPECT_EQ(machine.keys(keys), values) << name;
    }
    const double celsius = machine.number("TCXC");
    EXPECT_THAT(machine.ctl("profile Temperatur-Kurve"), ends(0));
    const double percent = 60 + (celsius - 72) / 13 * 40; // the default curve's hot end
    EXPECT_NEAR(machine.number("F0Tg"), 1836 + percent / 100 * 3780, 5);
    EXPECT_THAT(machine.ctl("profile laut"), ends(2));

    for (const char* command : {"install", "uninstall"}) { // where there is no Mac
        EXPECT_THAT(runProgram(machine.folder(), {bin + "ventaroctl", command}),
                    ends(1, "Auf diesem Rechner lässt sich"));
    }
}

} // namespace
} // namespace ventaro
