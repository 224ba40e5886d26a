#include "SimulatedMachine.h"

#include <unistd.h>

namespace ventaro {
namespace {

using namespace testing;
using Words = std::vector<std::string>;

TEST(Programs, ForceAFanAndHandItBack) {
    const SimulatedMachine machine({"--workload", "office"});
    EXPECT_EQ(machine.ctl("set 0 4000").output, "Linker Lüfter (CPU) auf 4000 RPM gesetzt.\n");
    EXPECT_EQ(machine.keys("F0Md,F0Tg"), "1,4000");
    const double before = machine.number("TCXC");
    machine.control("step 120");
    EXPECT_NEAR(machine.number("F0Ac"), 4000, 10);
    EXPECT_LT(machine.number("TCXC"), before - 3) << "the temperature falls";

    EXPECT_EQ(machine.ctl("auto 0").output, "Linker Lüfter (CPU) auf macOS-Automatik.\n");
    machine.ctl("set 1 3000");
    EXPECT_EQ(machine.keys("F0Md,F1Md"), "0,1");
    EXPECT_EQ(
        machine.ctl("auto --json").output,
        "{\"success\":true,\"message\":\"Alle Lüfter auf macOS-Automatik.\",\"version\":1}\n");
    EXPECT_EQ(machine.keys("F1Md"), "0");

    machine.ctl("set 0 3000");
    const Words resetAll{machine.path(HelperConstants::helperBinaryInstallPath), "--reset-all"};
    EXPECT_THAT(machine.run(resetAll, "user"),
                ends(1, "(kern: -536870207, smc: 0). Root-Rechte erforderlich."));
    EXPECT_EQ(machine.keys("F0Md"), "1");
    EXPECT_THAT(machine.run(resetAll, "root"), ends(0));
    EXPECT_EQ(machine.keys("F0Md"), "0");
}

TEST(Programs, ExitCodes) {
    const SimulatedMachine machine({}, false);
    for (const char* words : {"--help", "--version", "set --help", "fans", "sensors --json",
                              "watch --count 2 --interval 0.05", "watch --count 1 --json"}) {
        EXPECT_THAT(machine.ctl(words), AllOf(ends(0), Field(&Outcome::errors, ""))) << words;
    }
    // With what the errors say of it.
    for (const std::string row :
         {"=subcommand", "frobnicate=frobnicate", "fans extra=extra", "set 0=RPM is required",
          "set x 1=FAN", "set -1 2000=-1", "set 0 nan=nan", "set 0 2000x=2000x",
          "key TC0=four characters", "run --curve 60:30=at least two points",
          "run --curve 60:30,=no point", "run --curve 60:30,121:5=temperature from 0 to 120",
          "run --curve 60:30,70:101=speed from 0 to 100", "run --source cpu=cpu",
          "run --profile silent --curve 60:30,70:40=smartCurve", "watch --count 0=count",
          "watch --interval 0=interval", "watch --interval nan=interval"}) {
        const auto parts = split(row, '=');
        EXPECT_THAT(machine.ctl(parts[0]), ends(2, parts[1])) << row;
    }
    const std::string unreachable =
        "Hintergrund-Helper nicht erreichbar (/var/run/com.ventaro.helper.sock).";
    for (const char* words : {"ping", "set 0 2000", "auto"}) {
        EXPECT_THAT(machine.ctl(words), ends(1, unreachable));
    }
    EXPECT_THAT(machine.ctl("key ZZZZ"), ends(1, "SMC-Schlüssel 'ZZZZ' wurde nicht gefunden."));

    const std::string helper = bin + "VentaroHelper";
    EXPECT_THAT(machine.run({helper, "--help"}).output, HasSubstr("--reset-all"));
    EXPECT_THAT(machine.run({helper, "--version"}).output, StartsWith("VentaroHelper "));
    for (const Words& arguments :
         {Words{helper, "--reset"}, {helper, "--reset-all", "x"}, {helper, ""}}) {
        EXPECT_EQ(machine.run(arguments, "root").exitCode, 2);
    }

    // The inventory needs no helper.
    EXPECT_THAT(machine.ctl("hardware").output,
                AllOf(HasSubstr("\nProzessor (CPU)\nIntel(R) Core(TM) i9-9880H CPU @ 2.30GHz\n"
                                "  Modell                   Intel(R)"),
                      HasSubstr("\n\n    Modul-Bank / Kanal     BANK 2/ChannelB-DIMM0\n"),
                      HasSubstr("Version 11.7.10 (Build 20G1427)")));
    EXPECT_THAT(machine.ctl("hardware --json").output,
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
        EXPECT_THAT(outcome, ends(1, "AppleSMC IOKit-Dienst wurde nicht gefunden."));
        EXPECT_THAT(outcome, ends(1, "scripts/run"));
        EXPECT_EQ(outcome.output, "");
    }
    EXPECT_THAT(
        runProgram(folder.path(), {bin + "ventaroctl", "fans"}, {"VENTARO_MACHINE_ROOT=nowhere"}),
        ends(1, "nowhere"));
}

TEST(Programs, WatchRedrawsInPlaceAndGivesTheTerminalBack) {
    const SimulatedMachine machine;
    const std::string watch = bin + "ventaroctl watch --interval 0.05";
    const Outcome outcome = machine.run({"script", "-qec", watch + " --count 3", "/dev/null"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output,
                AllOf(StartsWith("\x1b[?1049h\x1b[?25l"), HasSubstr("simulated MacBook"),
                      EndsWith("\x1b[?25h\x1b[?1049l")));

    Program endless(machine.folder(), {"script", "-qec", "echo $$; exec " + watch, "/dev/null"},
                    machine.environment());
    ASSERT_TRUE(endless.prints("Linker"));
    ::kill(std::stoi(endless.output()), SIGINT);
    EXPECT_EQ(endless.wait(), 0);
    EXPECT_THAT(endless.output(), EndsWith("\x1b[?25h\x1b[?1049l"));

    EXPECT_THAT(machine.run({"/bin/sh", "-c", bin + "ventaroctl fans --json >/dev/full"}),
                ends(1, "standard output"));
    EXPECT_THAT(machine.run({"/bin/sh", "-c", bin + "ventaroctl ping 0<&- 1>&- 2>&-"}), ends(0));
}

TEST(HelperProgram, SignalsEndItAndTakeTheSocketAway) {
    const SimulatedMachine machine({}, false);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        Program helper(machine.folder(), {bin + "VentaroHelper"}, machine.environment("root"));
        ASSERT_TRUE(machine.answers());
        helper.signal(SIGPIPE);
        Program second(machine.folder(), {bin + "VentaroHelper"}, machine.environment("root"));
        second.signal(SIGTERM); // while it waits for the first one to go
        EXPECT_NE(second.wait(), 0);
        EXPECT_THAT(machine.ctl("ping"), ends(0));
        helper.signal(signal);
        EXPECT_EQ(helper.wait(), 0);
        EXPECT_FALSE(std::filesystem::exists(machine.path(HelperConstants::socketPath)));
    }
}

TEST(HelperProgram, AServiceThatComesBackOrHangsGetsItsAnswerInTime) {
    const SimulatedMachine machine;
    EXPECT_THAT(machine.ctl("set 0 3000"), ends(0));
    machine.control("fault service gone");
    EXPECT_THAT(machine.ctl("set 0 3500"), ends(1, "Nichts geändert"));
    EXPECT_THAT(machine.ctl("auto"), ends(1, "Der Helper versucht es weiter."));
    machine.control("clear");
    EXPECT_TRUE(machine.becomes("F0Md", "0")) << "without being asked again";
    EXPECT_THAT(machine.ctl("set 0 3500"), ends(0));
    EXPECT_THAT(machine.ctl("set 1 3500"), ends(0));
    machine.control("fault F0Mn late 600000");
    EXPECT_THAT(machine.ctl("set 0 3000"), ends(1, "Nichts geändert"))
        << "the helper's own answer, not a time-out";
    machine.control("fault F0Md late 600000");
    EXPECT_THAT(machine.ctl("auto"), ends(1, "Der Helper versucht es weiter."));
    EXPECT_TRUE(machine.becomes("F1Md", "0")) << "one fan's key that hangs does not hold the other";
    EXPECT_THAT(machine.ctl("ping"), ends(0));
    machine.control("clear");
    EXPECT_TRUE(machine.becomes("F0Md", "0"));
}

#ifdef __x86_64__
TEST(HelperProgram, SleepsWithoutATimeOutWhileIdle) {
    const SimulatedMachine machine;
    const std::string call = "/proc/" + std::to_string(machine.helperProcess()) + "/syscall";
    // The kernel shows the system call: poll (7), its descriptors, their number, the time-out,
    // which some C libraries extend to 64 bits.
    const Matcher<std::string> isPollForEver = MatchesRegex("7 0x[0-9a-f]+ 0x2 0x(ffffffff)+ .*\n");
    EXPECT_TRUE(waitUntil([&] { return isPollForEver.Matches(readFile(call)); })) << readFile(call);
}
#endif

TEST(HelperProgram, FreesFansThatAreForcedLowOnAHotMachine) {
    const SimulatedMachine machine;
    EXPECT_THAT(machine.ctl("set 0 2000"), ends(0));
    ::kill(machine.helperProcess(), SIGKILL);
    machine.control("step 10");
    ASSERT_TRUE(machine.answers());           // one that finds the fan forced
    machine.control("fault TC5C value 6300"); // 99 °C
    EXPECT_TRUE(waitUntil([&] {
        machine.control("step 5");
        return machine.keys("F0Md") == "0";
    }));
    EXPECT_THAT(machine.log("com.ventaro.helper.err"), HasSubstr("freeing fans"));
    EXPECT_THAT(machine.ctl("set 0 2000"), ends(1, "Der Rechner war zu heiß."));
    EXPECT_THAT(machine.ctl("set 0 5400"), ends(0));
}

TEST(HelperProgram, LogsALinePerChangeAndErrorAndGoesOnAfterItsDeath) {
    const SimulatedMachine machine;
    for (const char* command :
         {"ping", "set 0 1e300", "auto 0", "auto", "set 7 2000", "set 1 4000"}) {
        machine.ctl(command);
    }
    const pid_t first = machine.helperProcess();
    ASSERT_GT(first, 0);
    ::kill(first, SIGKILL);
    ASSERT_TRUE(machine.answers(false));
    machine.control("step 10"); // the restart of a job that ran too shortly is held back
    ASSERT_TRUE(machine.answers());
    EXPECT_NE(machine.helperProcess(), first);
    EXPECT_EQ(machine.keys("F1Md,F1Tg"), "1,4000") << "the fan stays forced";
    EXPECT_THAT(machine.log("launchd.log"), HasSubstr("signal 9"));
    EXPECT_THAT(
        machine.log("com.ventaro.helper.log"),
        MatchesRegex("[^ ]+ serving[^\n]*\n"
                     "[^ ]+ fan 0 forced, requested: 1000[0-9]+\\.\\.\\. RPM, set: 5616 RPM\n"
                     "[^ ]+ fan 0 back to automatic\n"
                     "[^ ]+ all fans back to automatic\n"
                     "[^ ]+ fan 1 forced, [^\n]*\n"
                     "[^ ]+ serving[^\n]*\n"));
    EXPECT_THAT(machine.log("com.ventaro.helper.err"),
                MatchesRegex("[^ ]+ setFanRPM refused: [^\n]*\n"));
}

TEST(HelperProgram, OtherUsersAreTurnedAwayAndTheirFoldersNotFollowed) {
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
    EXPECT_THAT(stranger, ends(1, "nur, wer am Bildschirm angemeldet ist"));
    EXPECT_EQ(stranger.output, "");
    EXPECT_THAT(machine.log("com.ventaro.helper.err"),
                HasSubstr("request refused for user 65534\n"));
    // Nor does root follow anybody's folder.
    ASSERT_EQ(::chown(machine.root().c_str(), 65534, 65534), 0);
    EXPECT_THAT(machine.run({bin + "VentaroHelper", "--reset-all"}, "root"),
                ends(1, "machine root ignored"));
}

} // namespace
} // namespace ventaro
