#include "SimulatedMachine.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <sstream>

namespace ventaro {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(Programs, ForceAFanAndHandItBack) {
    const SimulatedMachine machine({"--workload", "office"});
    EXPECT_EQ(machine.ctl({"set", "0", "4000"}).output,
              "Linker Lüfter (CPU) auf 4000 RPM gesetzt.\n");
    EXPECT_EQ(machine.key("F0Md"), "1.0000");
    EXPECT_EQ(machine.key("F0Tg"), "4000.0000");
    const double before = std::stod(machine.key("TCXC"));
    machine.control({"step", "120"});
    EXPECT_NEAR(std::stod(machine.key("F0Ac")), 4000, 10);
    EXPECT_LT(std::stod(machine.key("TCXC")), before - 3) << "the temperature falls";

    EXPECT_EQ(machine.ctl({"auto", "0"}).output, "Linker Lüfter (CPU) auf macOS-Automatik.\n");
    EXPECT_EQ(machine.key("F0Md"), "0.0000");
    machine.ctl({"set", "1", "3000"});
    EXPECT_EQ(
        machine.ctl({"auto", "--json"}).output,
        "{\"success\":true,\"message\":\"Alle Lüfter auf macOS-Automatik.\",\"version\":1}\n");
    EXPECT_EQ(machine.key("F1Md"), "0.0000");
}

TEST(Programs, ExitCodes) {
    const SimulatedMachine machine({}, false);
    struct Row {
        std::vector<std::string> arguments;
        int exitCode;
        const char* errors;
    };
    const Row rows[] = {
        {{"--help"}, 0, ""},
        {{"--version"}, 0, ""},
        {{"set", "--help"}, 0, ""},
        {{"fans"}, 0, ""},
        {{"sensors", "--json"}, 0, ""},
        {{"watch", "--count", "2", "--interval", "0.05"}, 0, ""},
        {{"watch", "--count", "1", "--json"}, 0, ""},
        {{}, 2, "subcommand"},
        {{"frobnicate"}, 2, "frobnicate"},
        {{"fans", "extra"}, 2, "extra"},
        {{"set", "0"}, 2, "RPM is required"},
        {{"set", "x", "1"}, 2, "FAN"},
        {{"set", "-1", "2000"}, 2, ""},
        {{"set", "0", "nan"}, 2, "nan"},
        {{"set", "0", "2000x"}, 2, "2000x"},
        {{"key", "TC0"}, 2, "four characters"},
        {{"run", "--curve", "60:30"}, 2, "at least two points"},
        {{"run", "--curve", "60:30,"}, 2, "no point"},
        {{"run", "--curve", "60:30,121:5"}, 2, "temperature from 0 to 120"},
        {{"run", "--curve", "60:30,70:101"}, 2, "speed from 0 to 100"},
        {{"run", "--source", "cpu"}, 2, "cpu"},
        {{"run", "--profile", "silent", "--curve", "60:30,70:40"}, 2, "smartCurve"},
        {{"watch", "--count", "0"}, 2, "count"},
        {{"watch", "--interval", "0"}, 2, "interval"},
        {{"watch", "--interval", "nan"}, 2, "interval"},
        {{"key", "ZZZZ"}, 1, "SMC-Schlüssel 'ZZZZ' wurde nicht gefunden."},
        {{"ping"}, 1, "Hintergrund-Helper nicht erreichbar (/var/run/com.ventaro.helper.sock)."},
        {{"set", "0", "2000"}, 1, "Hintergrund-Helper nicht erreichbar"},
        {{"auto"}, 1, "Hintergrund-Helper nicht erreichbar"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = machine.ctl(row.arguments);
        const std::string shown = testing::PrintToString(row.arguments);
        EXPECT_EQ(outcome.exitCode, row.exitCode) << shown << outcome.errors;
        EXPECT_THAT(outcome.errors, HasSubstr(row.errors)) << shown;
        EXPECT_EQ(outcome.errors.empty(), row.exitCode == 0) << shown << outcome.errors;
    }
}

TEST(Programs, TheInventoryIsATableOrJson) {
    const SimulatedMachine machine;
    const std::string table = machine.ctl({"hardware"}).output;
    EXPECT_THAT(table, HasSubstr("\nProzessor (CPU)\nIntel(R) Core(TM) i9-9880H CPU @ 2.30GHz\n"
                                 "  Modell                   Intel(R)"));
    EXPECT_THAT(table, HasSubstr("\n\n    Modul-Bank / Kanal     BANK 2/ChannelB-DIMM0\n"));
    EXPECT_THAT(table, HasSubstr("Version 11.7.10 (Build 20G1427)"));
    EXPECT_THAT(machine.ctl({"hardware", "--json"}).output,
                StartsWith("[{\"title\":\"System & Logic Board\","
                           "\"subtitle\":\"MacBook Pro (MacBookPro16,1)\","
                           "\"icon\":\"laptopcomputer\",\"accentColorName\":\"blue\","
                           "\"specs\":[{\"label\":\"Modellname\",\"value\":\"MacBook Pro\"},"));
}

TEST(Programs, WithoutASmcNothingIsInvented) {
    const TemporaryFolder folder;
    for (const char* command : {"fans", "sensors", "watch"}) {
        const Outcome outcome =
            runProgram(folder.path(), {bin + "ventaroctl", command}, {"VENTARO_MACHINE_ROOT="});
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, HasSubstr("AppleSMC IOKit-Dienst wurde nicht gefunden."));
    }
    const Outcome bad =
        runProgram(folder.path(), {bin + "ventaroctl", "fans"}, {"VENTARO_MACHINE_ROOT=nowhere"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_THAT(bad.errors, HasSubstr("nowhere"));
}

TEST(Programs, AFullDiskIsNoSuccess) {
    const SimulatedMachine machine;
    const Outcome outcome =
        machine.run({"/bin/sh", "-c", bin + "ventaroctl fans --json >/dev/full"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("standard output"));
    EXPECT_EQ(machine.run({"/bin/sh", "-c", bin + "ventaroctl ping 0<&- 1>&- 2>&-"}).exitCode, 0);
}

TEST(Programs, WatchRedrawsInPlaceAndGivesTheTerminalBack) {
    const SimulatedMachine machine;
    const std::string watch = bin + "ventaroctl watch --interval 0.05";
    const Outcome outcome = machine.run({"script", "-qec", watch + " --count 3", "/dev/null"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("\x1b[?1049h\x1b[?25l"));
    EXPECT_THAT(outcome.output, HasSubstr("simulated MacBook"));
    EXPECT_TRUE(outcome.output.ends_with("\x1b[?25h\x1b[?1049l")) << outcome.output;

    Program endless(machine.folder(), {"script", "-qec", "echo $$; exec " + watch, "/dev/null"},
                    machine.environment());
    ASSERT_TRUE(waitUntil([&] { return endless.output().find("Linker") != std::string::npos; }));
    ::kill(std::stoi(endless.output()), SIGINT);
    EXPECT_EQ(endless.wait(), 0);
    EXPECT_TRUE(endless.output().ends_with("\x1b[?25h\x1b[?1049l"));
}

TEST(HelperProgram, ResetAllNeedsTheMachinesRoot) {
    const SimulatedMachine machine;
    machine.ctl({"set", "0", "3000"});
    const std::vector<std::string> resetAll{machine.path("/Library/PrivilegedHelperTools/"
                                                         "com.ventaro.helper"),
                                            "--reset-all"};
    const Outcome refused = machine.run(resetAll, "user");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.errors, HasSubstr("(kern: -536870207, smc: 0). Root-Rechte erforderlich."));
    EXPECT_EQ(machine.key("F0Md"), "1.0000");
    EXPECT_EQ(machine.run(resetAll, "root").exitCode, 0);
    EXPECT_EQ(machine.key("F0Md"), "0.0000");
}

TEST(HelperProgram, CommandLine) {
    const SimulatedMachine machine({}, false);
    const std::string helper = bin + "VentaroHelper";
    EXPECT_THAT(machine.run({helper, "--help"}).output, HasSubstr("--reset-all"));
    EXPECT_THAT(machine.run({helper, "--version"}).output, StartsWith("VentaroHelper "));
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{helper, "--reset"},
                                                      {helper, "--reset-all", "x"},
                                                      {helper, ""}}) {
        EXPECT_EQ(machine.run(arguments, "root").exitCode, 2);
    }
}

TEST(HelperProgram, SignalsEndItAndTakeTheSocketAway) {
    const SimulatedMachine machine({}, false);
    const std::string socket = machine.path(HelperConstants::socketPath);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        Program helper(machine.folder(), {bin + "VentaroHelper"}, machine.environment("root"));
        ASSERT_TRUE(waitUntil([&] { return machine.ctl({"ping"}).exitCode == 0; }));
        helper.signal(SIGPIPE);
        Program second(machine.folder(), {bin + "VentaroHelper"}, machine.environment("root"));
        second.signal(SIGTERM); // while it waits for the first one to go
        EXPECT_NE(second.wait(), 0);
        EXPECT_EQ(machine.ctl({"ping"}).exitCode, 0);
        helper.signal(signal);
        EXPECT_EQ(helper.wait(), 0);
        EXPECT_FALSE(std::filesystem::exists(socket));
    }
}

TEST(HelperProgram, KilledWithAFanForcedItComesBackAndTheFanStays) {
    const SimulatedMachine machine;
    machine.ctl({"set", "0", "4000"});
    const pid_t first = machine.helperProcess();
    ASSERT_GT(first, 0);
    ::kill(first, SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return machine.helperProcess() == 0; }));
    EXPECT_EQ(machine.ctl({"ping"}).exitCode, 1);
    machine.control({"step", "10"}); // the restart of a job that ran too shortly is held back
    ASSERT_TRUE(waitUntil([&] { return machine.ctl({"ping"}).exitCode == 0; }));
    EXPECT_NE(machine.helperProcess(), first);
    EXPECT_EQ(machine.key("F0Md"), "1.0000");
    EXPECT_EQ(machine.key("F0Tg"), "4000.0000");
    EXPECT_THAT(readFile(machine.path("/var/log/launchd.log")), HasSubstr("signal 9"));
    EXPECT_THAT(readFile(machine.path("/var/log/com.ventaro.helper.log")),
                HasSubstr("fan 0 forced"));
}

TEST(HelperProgram, AServiceThatComesBackIsFoundAgain) {
    const SimulatedMachine machine;
    ASSERT_EQ(machine.ctl({"set", "0", "3000"}).exitCode, 0);
    machine.control({"fault", "service", "gone"});
    EXPECT_EQ(machine.ctl({"auto"}).exitCode, 1) << "nothing was handed back";
    const Outcome refused = machine.ctl({"set", "0", "3500"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.errors, HasSubstr("F0Tg"));
    machine.control({"clear"});
    EXPECT_EQ(machine.ctl({"set", "0", "3500"}).exitCode, 0);
}

TEST(HelperProgram, AHangingSmcStillGetsAnAnswerInTime) {
    const SimulatedMachine machine;
    machine.control({"fault", "F0Mn", "late", "600000"});
    const Outcome outcome = machine.ctl({"set", "0", "3000"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("F0Tg")) << "the helper's own answer, not a time-out";
    EXPECT_EQ(machine.ctl({"set", "1", "3000"}).exitCode, 0) << "and goes on";
}

#ifdef __x86_64__
TEST(HelperProgram, SleepsWithoutATimeOutWhileIdle) {
    const SimulatedMachine machine;
    const std::string process = "/proc/" + std::to_string(machine.helperProcess());
    // The kernel shows the system call: poll (7), its descriptors, their number, the time-out.
    const auto isInPollForEver = [&] {
        const testing::Matcher<std::string> poll =
            testing::MatchesRegex("7 0x[0-9a-f]+ 0x2 0xffffffff .*\n");
        return poll.Matches(readFile(process + "/syscall"));
    };
    EXPECT_TRUE(waitUntil(isInPollForEver)) << readFile(process + "/syscall");
}
#endif

TEST(HelperProgram, LogsALinePerChangeAndErrorButNoPings) {
    const SimulatedMachine machine;
    for (const std::vector<std::string>& command : {std::vector<std::string>{"ping"},
                                                    {"set", "0", "1e300"},
                                                    {"auto", "0"},
                                                    {"auto"},
                                                    {"set", "7", "2000"},
                                                    {"ping"}}) {
        machine.ctl(command);
    }
    const auto lines = [&](const char* path) {
        std::vector<std::string> list;
        std::istringstream text(readFile(machine.path(path)));
        for (std::string line; std::getline(text, line);) {
            list.push_back(line.substr(line.find(' ') + 1)); // without the time
        }
        return list;
    };
    EXPECT_THAT(lines("/var/log/com.ventaro.helper.log"),
                testing::ElementsAre(StartsWith("serving"),
                                     testing::AllOf(StartsWith("fan 0 forced, requested: 1000"),
                                                    testing::EndsWith("... RPM, set: 5616 RPM")),
                                     "fan 0 back to automatic", "all fans back to automatic"));
    EXPECT_THAT(lines("/var/log/com.ventaro.helper.err"),
                testing::ElementsAre(StartsWith("setFanRPM refused: ")));
}

TEST(HelperProgram, OtherUsersAreTurnedAway) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    const SimulatedMachine machine;
    const auto program = machine.folder() / "ctl";
    std::filesystem::copy_file(bin + "ventaroctl", program);
    for (const auto& folder : {machine.folder(), machine.root()}) {
        std::filesystem::permissions(folder, std::filesystem::perms(0711));
    }
    const Outcome stranger =
        machine.run({"setpriv", "--reuid=65534", "--clear-groups", program, "ping"});
    EXPECT_EQ(stranger.exitCode, 1);
    EXPECT_EQ(stranger.output, "");
    EXPECT_THAT(readFile(machine.path("/var/log/com.ventaro.helper.err")),
                HasSubstr("connection refused for user 65534\n"));
}

} // namespace
} // namespace ventaro
