#include "SimulatedMachine.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// `ventaroctl run` on a stepped machine.
class Headless {
public:
    Headless(SimulatedMachine& machine, std::vector<std::string> arguments,
             const std::string& program = bin + "ventaroctl")
        : machine_(machine),
          program_(machine.folder(), full(program, std::move(arguments)), machine.environment()) {}

    /// Lets time pass, two seconds at a time, until the program has printed `text`.
    bool prints(const std::string& text) {
        return stepUntil([&] { return program_.output().find(text) != std::string::npos; });
    }
    bool stepUntil(const std::function<bool()>& condition) {
        return waitUntil([&] {
            machine_.control({"step", "2"});
            return condition();
        });
    }
    Program& program() { return program_; }

private:
    static std::vector<std::string> full(const std::string& program,
                                         std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {program, "run"});
        return arguments;
    }
    SimulatedMachine& machine_;
    Program program_;
};

TEST(HeadlessControl, HandsTheFansBackOnEverySignal) {
    SimulatedMachine machine({"--workload", "compile"});
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Headless run(machine, {"--curve", "100:80,0:80", "--source", "gpuDie"});
        EXPECT_TRUE(run.prints("asking for left 4860 RPM, right 4500 RPM"));
        EXPECT_TRUE(waitUntil([&] { return machine.key("F1Tg") == "4500.0000"; }));
        EXPECT_EQ(machine.key("F0Md"), "1.0000");
        run.program().signal(signal);
        EXPECT_EQ(run.program().wait(), 0);
        EXPECT_THAT(run.program().output(), HasSubstr("The fans are automatic again."));
        EXPECT_EQ(machine.key("F0Md"), "0.0000");
        EXPECT_EQ(machine.key("F1Md"), "0.0000");
    }
    EXPECT_FALSE(fs::exists(machine.path("/Users/ventaro/Library")))
        << "the user's settings are left alone";
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
    SimulatedMachine machine;
    killHelper(machine);
    Headless run(machine, {"--profile", "Leise", "--json"});
    EXPECT_TRUE(waitUntil(
        [&] { return run.program().output().find("Bitte zuerst") != std::string::npos; }));
    EXPECT_EQ(machine.key("F0Md"), "0.0000");
    // launchd brings it back after ten seconds, and nobody has to press the button again.
    EXPECT_TRUE(run.prints("Ziel-Drehzahl gesetzt: Links 2403 RPM"));
    EXPECT_EQ(machine.key("F0Md"), "1.0000");

    // The same for fans that somebody else has set free.
    EXPECT_EQ(machine.ctl({"auto"}).exitCode, 0);
    EXPECT_TRUE(run.stepUntil([&] { return machine.key("F1Md") == "1.0000"; }));

    killHelper(machine);
    run.program().signal(SIGHUP);
    EXPECT_TRUE(waitUntil(
        [&] { return run.program().output().find(R"("event":"trying")") != std::string::npos; }));
    run.program().signal(SIGHUP); // the shell's, after the kernel's
    machine.control({"step", "10"});
    EXPECT_EQ(run.program().wait(), 0) << run.program().errors();
    EXPECT_EQ(machine.key("F0Md"), "0.0000");
}

TEST(HeadlessControl, SaysHowToFreeFansThatStayForced) {
    SimulatedMachine machine;
    Headless run(machine, {"--profile", "turbo"});
    EXPECT_TRUE(waitUntil([&] { return machine.key("F1Md") == "1.0000"; }));
    killHelper(machine);
    run.program().signal(SIGTERM);
    EXPECT_EQ(run.program().wait(), 1) << "after its ten seconds";
    EXPECT_THAT(run.program().errors(), HasSubstr("the fans are still forced"));
    EXPECT_THAT(run.program().errors(), HasSubstr("ventaroctl auto"));
    EXPECT_THAT(run.program().output(), Not(HasSubstr("automatic again")));
    EXPECT_EQ(machine.key("F0Md"), "1.0000");
}

TEST(HeadlessControl, LeavesTheFansAloneWithoutATemperature) {
    SimulatedMachine machine({"--workload", "compile"});
    Headless run(machine, {"--source", "gpuDie"});
    EXPECT_TRUE(run.prints("asking for"));
    for (const char* key : {"TGDD", "TG0P", "TG0D"}) {
        machine.control({"fault", key, "read-fails"});
    }
    EXPECT_TRUE(run.prints("cannot be read"));
    EXPECT_TRUE(waitUntil([&] { return machine.key("F0Md") == "0.0000"; }));
    machine.control({"clear"});
    EXPECT_TRUE(run.stepUntil([&] { return machine.key("F0Md") == "1.0000"; }));
}

TEST(HeadlessControl, EndsWhenNobodyReadsItAndGoesOnWhenNobodyHurries) {
    SimulatedMachine machine;
    // A reader that leaves after the first line; nohup, which has SIGHUP ignored.
    Program headed(machine.folder(),
                   {"/bin/bash", "-c",
                    "set -o pipefail; '" + bin + "ventaroctl' run --profile turbo | head -1"},
                   machine.environment());
    Program deaf(
        machine.folder(),
        {"/bin/bash", "-c", "trap '' HUP; exec '" + bin + "ventaroctl' run --profile turbo"},
        machine.environment());
    EXPECT_TRUE(waitUntil([&] {
        machine.control({"step", "2"});
        return machine.key("F0Md") == "1.0000" && !deaf.output().empty();
    }));
    deaf.signal(SIGHUP);
    std::atomic<bool> hasEnded = false;
    std::thread clock([&] {
        while (!hasEnded) {
            machine.control({"step", "2"});
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
    SimulatedMachine machine;
    const fs::path copy = machine.folder() / "tgpro";
    const fs::path other = machine.folder() / "Macs Fan Control";
    fs::copy_file(bin + "ventaroctl", copy);
    fs::copy_file("/bin/sleep", other);
    Headless run(machine, {"--profile", "systemAuto", "--json"}, copy);
    EXPECT_TRUE(run.prints(R"({"event":"helper","answers":true})"));
    EXPECT_THAT(run.program().output(), Not(HasSubstr("competitor")));
    {
        const Program competitor(machine.folder(), {other, "100"}, machine.environment());
        EXPECT_TRUE(run.prints(R"({"event":"competitor","running":true})"));
    }
    EXPECT_TRUE(run.prints(R"({"event":"competitor","running":false})"));
    run.program().signal(SIGTERM);
    EXPECT_EQ(run.program().wait(), 0);
}

TEST(Profiles, AreAppliedOnce) {
    const SimulatedMachine machine({"--workload", "compile"});
    struct Row {
        const char* name;
        const char* left;
        const char* mode;
    };
    const Row rows[] = {{"silent", "2403.0000", "1.0000"},
                        {"Max / Turbo", "5616.0000", "1.0000"},
                        {"manual", "2200.0000", "1.0000"},
                        {"systemAuto", "", "0.0000"}};
    for (const Row& row : rows) {
        const Outcome outcome = machine.ctl({"profile", row.name});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_EQ(machine.key("F0Md"), row.mode);
        if (*row.left != '\0') {
            EXPECT_EQ(machine.key("F0Tg"), row.left);
        }
    }
    const double celsius = std::stod(machine.key("TCXC"));
    EXPECT_EQ(machine.ctl({"profile", "Temperatur-Kurve"}).exitCode, 0);
    const double percent = 60 + (celsius - 72) / 13 * 40; // the default curve's hot end
    EXPECT_NEAR(std::stod(machine.key("F0Tg")), 1836 + percent / 100 * 3780, 5);
    EXPECT_EQ(machine.ctl({"profile", "laut"}).exitCode, 2);
}

TEST(Installation, IsRefusedWhereThereIsNoMac) {
    const TemporaryFolder folder;
    for (const char* command : {"install", "uninstall"}) {
        const Outcome outcome = runProgram(folder.path(), {bin + "ventaroctl", command});
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_THAT(outcome.errors, HasSubstr("Auf diesem Rechner lässt sich"));
    }
}

} // namespace
} // namespace ventaro
