#include "SimulatedMachine.h"

#include <gmock/gmock.h>

namespace ventaro {
namespace {

using testing::HasSubstr;

const std::string simulator = bin + "VentaroSimulator";

TEST(SimulatorProgram, RunsACommandAndLeavesNothingBehind) {
    const TemporaryFolder folder;
    const TemporaryFolder temporary;
    const std::vector<std::string> environment{"TMPDIR=" + temporary.path().string()};
    struct Row {
        const char* command;
        int exitCode;
    };
    const Row rows[] = {
        {"exit 7", 7},
        {"kill -TERM $PPID; sleep 1000", 128 + 15},
        {"kill -9 $$", 128 + 9},
        {"[ 1 = 1 ] && [ '[a,b] %% []' = '[a,b] '%%' []' ]", 0}, // arguments stay as they are
        {"test \"$HOME\" = \"$VENTARO_MACHINE_ROOT/Users/ventaro\" && test -d \"$HOME\"", 0},
        {"command -v launchctl | grep -q \"^$VENTARO_MACHINE_ROOT/usr/bin\"", 0},
        {"launchctl list", 1}, // the user is not root
        {"VENTARO_MACHINE_ACCESS=root launchctl list | grep -q com.ventaro.helper", 0},
        // A process that outlives the command, in a session of its own.
        {"setsid sleep 1000 & echo $! >\"$VENTARO_MACHINE_ROOT/../pid\"", 0},
    };
    for (const Row& row : rows) {
        const Outcome outcome =
            runProgram(folder.path(), {simulator, "--", "sh", "-c", row.command}, environment);
        EXPECT_EQ(outcome.exitCode, row.exitCode) << row.command << outcome.errors;
    }
    const std::string pid = readFile(temporary.path() / "pid");
    EXPECT_FALSE(std::filesystem::exists("/proc/" + pid.substr(0, pid.find('\n'))));
    std::filesystem::remove(temporary.path() / "pid");
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
    for (const char* helper : {"installed", "absent"}) {
        const std::vector<std::string> arguments{simulator, "--helper", helper, "--",
                                                 "/no/such/program"};
        EXPECT_EQ(runProgram(folder.path(), arguments, environment).exitCode, 127);
    }
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST(SimulatorProgram, CtrlCTakesEverythingDown) {
    const TemporaryFolder folder;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        for (const bool hasCommand : {false, true}) {
            const TemporaryFolder temporary;
            std::vector<std::string> arguments{simulator};
            if (hasCommand) {
                arguments.insert(arguments.end(), {"--", "sh", "-c",
                                                   "trap 'exit 3' INT TERM; echo Ctrl-C; "
                                                   "while :; do sleep 0.01; done"});
            }
            Program program(folder.path(), arguments, {"TMPDIR=" + temporary.path().string()});
            ASSERT_TRUE(
                waitUntil([&] { return program.output().find("Ctrl-C") != std::string::npos; }));
            program.signal(signal);
            EXPECT_EQ(program.wait(), hasCommand ? 3 : 0) << signal << program.errors();
            EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
        }
    }
}

TEST(SimulatorProgram, MachinesRunSideBySide) {
    const SimulatedMachine one;
    const SimulatedMachine two({"--fans", "3", "--variant", "legacy"});
    one.ctl({"set", "0", "3000"});
    EXPECT_EQ(two.key("FNum"), "3.0000");
    EXPECT_THAT(two.ctl({"set", "2", "3000"}).output, HasSubstr("Lüfter 3 auf 3000 RPM"));
    EXPECT_EQ(two.key("FS! "), "4.0000");
    EXPECT_EQ(one.key("F0Tg"), "3000.0000");
    EXPECT_NE(two.key("F0Tg"), "3000.0000");

    const Outcome again = one.run({simulator, "--root", one.root()});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.errors, HasSubstr("another simulated machine runs in"));
    EXPECT_EQ(one.ctl({"ping"}).exitCode, 0) << "the first one is unharmed";
}

TEST(SimulatorProgram, ANamedRootIsKeptWithoutItsSockets) {
    const TemporaryFolder folder;
    const std::string root = folder.path() / "m";
    for (int start = 0; start < 2; ++start) {
        const Outcome outcome = runProgram(folder.path(), {simulator, "--root", root, "--", "sh",
                                                           "-c", "echo x >>\"$HOME/kept\""});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    }
    EXPECT_EQ(readFile(root + "/Users/ventaro/kept"), "x\nx\n");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        EXPECT_FALSE(entry.is_socket()) << entry.path();
    }
}

TEST(SimulatorProgram, WrongUsageIsExplained) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "faults", "TC0P late 1\nTC0P nonsense\n");
    writeFile(folder.path() / "file", "");
    const std::string tooLong = folder.path() / std::string(90, 'x');
    struct Row {
        std::vector<std::string> arguments;
        int exitCode;
        const char* errors;
    };
    const Row rows[] = {
        {{"--workload", "nap"}, 2, "nap"},
        {{"--fans", "4"}, 2, "4"},
        {{"--seed", "-1"}, 2, "-1"},
        {{"extra"}, 2, "extra"},
        {{"control"}, 2, "step SECONDS"},
        {{"--time-scale", "nan"}, 2, "time-scale"},
        {{"--time-scale", "2", "--stepped"}, 2, "excludes"},
        {{"--faults", "/no/such/file"}, 2, "/no/such/file"},
        {{"--faults", folder.path() / "faults"}, 1, "line 2"},
        {{"--root", tooLong}, 1, "too long"},
        {{"--root", folder.path() / "file" / "x"}, 1, "file"},
        {{"control", "status"}, 1, "no simulated machine"},
    };
    for (const Row& row : rows) {
        std::vector<std::string> arguments{simulator};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Outcome outcome = runProgram(folder.path(), arguments, {"VENTARO_MACHINE_ROOT="});
        EXPECT_EQ(outcome.exitCode, row.exitCode) << outcome.errors;
        EXPECT_THAT(outcome.errors, HasSubstr(row.errors));
    }
    EXPECT_TRUE(!std::filesystem::exists(tooLong) || std::filesystem::is_empty(tooLong));
}

TEST(SimulatorProgram, CommandsToARunningMachine) {
    const SimulatedMachine machine;
    EXPECT_EQ(machine.control({"step", "2.5"}).exitCode, 0);
    EXPECT_THAT(machine.control({"status"}).output, HasSubstr("time 2.50 s\n"));
    EXPECT_EQ(machine.control({"workload", "compile"}).exitCode, 0);
    machine.control({"step", "600"});
    EXPECT_GT(std::stod(machine.key("TCXC")), 75);
    EXPECT_EQ(machine.control({"fault", "TC0P", "read-fails"}).exitCode, 0);
    EXPECT_EQ(machine.ctl({"key", "TC0P"}).exitCode, 1);
    for (const std::vector<std::string>& command : {std::vector<std::string>{"step", "-1"},
                                                    {"step", "x"},
                                                    {"step", "1e9"},
                                                    {"workload", "nap"},
                                                    {"fault", "TC0P"},
                                                    {"fault"},
                                                    {"dance"},
                                                    {"clear", "all"}}) {
        const Outcome outcome = machine.control(command);
        EXPECT_EQ(outcome.exitCode, 1) << command[0];
        EXPECT_NE(outcome.errors, "") << command[0];
    }
    EXPECT_EQ(machine.control({"clear"}).exitCode, 0);
    EXPECT_EQ(machine.ctl({"key", "TC0P"}).exitCode, 0);

    const std::string list = machine.path(HelperConstants::launchDaemonPlistPath);
    EXPECT_NE(machine.launchctl({"bootstrap", "system", list}).exitCode, 0) << "loaded already";
    EXPECT_EQ(machine.launchctl({"bootout", "system", list}).exitCode, 0);
    ASSERT_TRUE(waitUntil([&] { return machine.ctl({"ping"}).exitCode == 1; }));
    EXPECT_NE(machine.launchctl({"unload", list}).exitCode, 0) << "not loaded";
    ASSERT_TRUE(waitUntil([&] { return machine.launchctl({"list"}).output.empty(); }));
    EXPECT_EQ(machine.launchctl({"load", "-w", list}).exitCode, 0);
    EXPECT_NE(machine.launchctl({"kickstart"}).exitCode, 0);
}

} // namespace
} // namespace ventaro
