#include "SimulatedMachine.h"

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using Words = std::vector<std::string>;

const std::string simulator = bin + "VentaroSimulator";

TEST(SimulatorProgram, RunsACommandAndLeavesNothingBehind) {
    const TemporaryFolder folder;
    const TemporaryFolder temporary;
    const auto run = [&](Words arguments) {
        arguments.insert(arguments.begin(), simulator);
        return runProgram(folder.path(), arguments, {"TMPDIR=" + temporary.path().string()});
    };
    const std::pair<const char*, int> rows[] = {
        {"exit 7", 7},
        {"kill -TERM $PPID; sleep 1000", 128 + 15},
        {"kill -9 $$", 128 + 9},
        {"[ 1 = 1 ] && [ '[a,b] %% []' = '[a,b] '%%' []' ]", 0}, // arguments stay as they are
        {"test \"$HOME\" = \"$VENTARO_MACHINE_ROOT/Users/ventaro\" && test -d \"$HOME\"", 0},
        {"command -v launchctl | grep -q \"^$VENTARO_MACHINE_ROOT/usr/bin\"", 0},
        {"launchctl list", 1}, // the user is not root
        {"VENTARO_MACHINE_ACCESS=root launchctl list | grep -q com.ventaro.helper", 0},
        // A process that outlives the command, in a session of its own.
        {"setsid sleep 1000 & echo $! >\"$VENTARO_MACHINE_ROOT/../pid\"", 0}};
    for (const auto& [command, exitCode] : rows) {
        EXPECT_THAT(run({"--", "sh", "-c", command}), ends(exitCode)) << command;
    }
    const int pid = std::stoi(readFile(temporary.path() / "pid"));
    EXPECT_FALSE(fs::exists("/proc/" + std::to_string(pid)));
    fs::remove(temporary.path() / "pid");
    EXPECT_TRUE(fs::is_empty(temporary.path()));
    for (const char* helper : {"installed", "absent"}) {
        EXPECT_THAT(run({"--helper", helper, "--", "/no/such/program"}), ends(127));
    }
    EXPECT_TRUE(fs::is_empty(temporary.path()));

    const std::string root = folder.path() / "m"; // which is kept, but for its sockets
    for (int start = 0; start < 2; ++start) {
        EXPECT_THAT(run({"--root", root, "--", "sh", "-c", "echo x >>\"$HOME/kept\""}), ends(0));
    }
    EXPECT_EQ(readFile(root + "/Users/ventaro/kept"), "x\nx\n");
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        EXPECT_FALSE(entry.is_socket()) << entry.path();
    }
}

TEST(SimulatorProgram, CtrlCTakesEverythingDown) {
    const TemporaryFolder folder;
    const Words command{"--", "sh", "-c",
                        "trap 'exit 3' INT TERM; echo Ctrl-C; while :; do sleep 0.01; done"};
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        for (const bool hasCommand : {false, true}) {
            const TemporaryFolder temporary;
            Words arguments{simulator};
            arguments.insert(arguments.end(), command.begin(),
                             hasCommand ? command.end() : command.begin());
            Program program(folder.path(), arguments, {"TMPDIR=" + temporary.path().string()});
            ASSERT_TRUE(program.prints("Ctrl-C"));
            program.signal(signal);
            EXPECT_EQ(program.wait(), hasCommand ? 3 : 0) << signal << program.errors();
            EXPECT_TRUE(fs::is_empty(temporary.path()));
        }
    }
}

TEST(SimulatorProgram, MachinesRunSideBySide) {
    const SimulatedMachine one;
    const SimulatedMachine two({"--fans", "3", "--variant", "legacy"});
    one.ctl("set 0 3000");
    EXPECT_THAT(two.ctl("set 2 3000").output, HasSubstr("Lüfter 3 auf 3000 RPM"));
    EXPECT_EQ(two.keys("FNum,FS! "), "3,4");
    EXPECT_EQ(one.keys("F0Tg"), "3000");
    EXPECT_NE(two.keys("F0Tg"), "3000");
    EXPECT_THAT(one.run({simulator, "--root", one.root()}),
                ends(1, "another simulated machine runs in"));
    EXPECT_THAT(one.ctl("ping"), ends(0)) << "the first one is unharmed";
}

TEST(SimulatorProgram, WrongUsageIsExplained) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "faults", "TC0P late 1\nTC0P nonsense\n");
    writeFile(folder.path() / "file", "");
    const std::string tooLong = folder.path() / std::string(90, 'x');
    const std::tuple<std::string, int, const char*> rows[] = {
        {"--workload nap", 2, "nap"},
        {"--fans 4", 2, "4"},
        {"--seed -1", 2, "-1"},
        {"extra", 2, "extra"},
        {"control", 2, "step SECONDS"},
        {"--time-scale nan", 2, "time-scale"},
        {"--time-scale 2 --stepped", 2, "excludes"},
        {"--faults /no/such/file", 2, "/no/such/file"},
        {"--faults " + (folder.path() / "faults").string(), 1, "line 2"},
        {"--root " + tooLong, 1, "too long"},
        {"--root " + (folder.path() / "file" / "x").string(), 1, "file"},
        {"control status", 1, "no simulated machine"}};
    for (const auto& [words, exitCode, errors] : rows) {
        std::vector<std::string> command = split(words);
        command.insert(command.begin(), simulator);
        EXPECT_THAT(runProgram(folder.path(), command, {"VENTARO_MACHINE_ROOT="}),
                    ends(exitCode, errors));
    }
    EXPECT_TRUE(!fs::exists(tooLong) || fs::is_empty(tooLong));
}

TEST(SimulatorProgram, CommandsToARunningMachine) {
    const SimulatedMachine machine;
    EXPECT_THAT(machine.control("step 2.5"), ends(0));
    EXPECT_THAT(machine.control("status").output, HasSubstr("time 2.50 s\n"));
    EXPECT_THAT(machine.control("workload compile"), ends(0));
    machine.control("step 600");
    EXPECT_GT(machine.number("TCXC"), 75);
    EXPECT_THAT(machine.control("fault TC0P read-fails"), ends(0));
    EXPECT_THAT(machine.ctl("key TC0P"), ends(1));
    for (const char* command : {"step -1", "step x", "step 1e9", "workload nap", "fault TC0P",
                                "fault", "dance", "clear all"}) {
        const Outcome outcome = machine.control(command);
        EXPECT_EQ(outcome.exitCode, 1) << command;
        EXPECT_NE(outcome.errors, "") << command;
    }
    EXPECT_THAT(machine.control("clear"), ends(0));
    EXPECT_THAT(machine.ctl("key TC0P"), ends(0));

    const std::string list = machine.path(HelperConstants::launchDaemonPlistPath);
    EXPECT_THAT(machine.launchctl("bootstrap system " + list), Not(ends(0))) << "loaded already";
    EXPECT_THAT(machine.launchctl("bootout system " + list), ends(0));
    ASSERT_TRUE(machine.answers(false));
    EXPECT_THAT(machine.launchctl("unload " + list), Not(ends(0))) << "not loaded";
    ASSERT_TRUE(waitUntil([&] { return machine.launchctl("list").output.empty(); }));
    EXPECT_THAT(machine.launchctl("load -w " + list), ends(0));
    EXPECT_THAT(machine.launchctl("kickstart"), Not(ends(0)));
}

} // namespace
} // namespace ventaro
