#include "ControlHolder.h"
#include "CurveArgument.h"
#include "EventLoop.h"
#include "FileDescriptor.h"
#include "HeadlessControl.h"
#include "HostPlatform.h"
#include "HostSession.h"
#include "NumberParse.h"
#include "SignalWatch.h"
#include "SystemCalls.h"
#include "Watch.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <limits>
#include <thread>

namespace {

using namespace ventaro;

constexpr const char* commandName = "ventaroctl";
constexpr int exitRefused = 1;
constexpr int exitWrongUsage = 2;
constexpr const char* profileNames = "systemAuto, smartCurve, manual, silent, balanced or turbo";

/// A number in decimal notation; CLI11's own range lets "nan" pass.
CLI::Validator numberBetween(double least, double most) {
    return {[least, most](std::string& text) {
                return parseNumber(text, least, most) ? std::string()
                                                      : "\"" + text + "\" is not a number in range";
            },
            "NUMBER"};
}

const CLI::Validator fourCharacters(
    [](std::string& text) {
        return text.size() == 4
                   ? std::string()
                   : "\"" + text + "\" has not four characters (quote a blank: \"FS! \")";
    },
    "KEY");

const CLI::Validator profileName(
    [](std::string& text) {
        return controlProfileFromName(text) ? std::string()
                                            : "\"" + text + "\" is no profile: " + profileNames;
    },
    "PROFILE");

const CLI::Validator curve(
    [](std::string& text) {
        try {
            parseCurve(text);
            return std::string();
        } catch (const std::invalid_argument& error) {
            return std::string(error.what());
        }
    },
    "CURVE");

std::vector<std::string> sourceNames() {
    std::vector<std::string> names;
    for (const CurveSensorSource source : allCurveSensorSources) {
        names.emplace_back(caseName(source));
    }
    return names;
}

/// Throws CommandError if another program steers the fans and is not to let go, or does not.
void requireControl(const ControlHolder& holder, bool takeOver) {
    if (takeOver && !holder.otherLettingGo()()) {
        throw CommandError(holder.other().value_or("Another program") +
                           " does not let go of the fans.");
    }
    if (const auto other = holder.other()) {
        throw CommandError(*other + " is steering the fans; --take-over makes it let go.");
    }
}

void warnUnlessOtherLetsGo(const ControlHolder& holder) {
    if (!holder.otherLettingGo()()) {
        std::cerr << holder.other().value_or("Another program")
                  << " does not let go of the fans and may force them again.\n";
    }
}

/// Takes a profiler along when a signal ends this program.
void endProfilerOnSignals() {
    static const auto& signals = *new StopSignals; // the thread may outlive main
    std::thread([] {
        EventLoop loop;
        loop.watch(signals.descriptor(), [] {
            SystemHardwareInspector::shared().endCollection();
            std::_Exit(exitRefused);
        });
        loop.run();
    }).detach();
}

/// How a second terminal reaches the same machine, where that takes more than the command's name.
std::string secondTerminalHint(const Platform& platform) {
    if (platform.machineKind != MachineKind::simulated) {
        return {};
    }
    std::error_code ignored;
    const auto program = executablePath().value_or("ventaroctl");
    return std::string("In a second terminal: export ") + MachineRoot::environmentVariable + "=" +
           platform.machineRoot.folder().string() +
           "\nand then for example: " + std::filesystem::proximate(program, ignored).string() +
           " set 0 4000";
}

int run(int argc, char** argv) {
    CLI::App app("Reads temperatures, power and fans of a MacBook Pro and sets its fan speeds.",
                 "ventaroctl");
    app.footer("Exit codes: 0 done, 1 the machine or the helper refused or is not there, 2 wrong "
               "usage.");
    app.set_version_flag("--version", "ventaroctl " VENTARO_VERSION);
    app.require_subcommand(0, 1);

    bool json = false;
    const auto command = [&](const char* name, const char* description) {
        CLI::App* subcommand = app.add_subcommand(name, description);
        subcommand->add_flag("--json", json, "print JSON");
        return subcommand;
    };
    const auto* fans = command("fans", "show the fans with their speeds and limits");
    const auto* sensors = command("sensors", "show all temperatures and powers");
    auto* watchCommand = command("watch", "show everything, live");
    auto* set = command("set", "force a fan to a speed");
    auto* automatic = command("auto", "give one fan, or all, back to the automatic control");
    const auto* ping = command("ping", "ask whether the helper answers");
    const auto* hardware = command("hardware", "show what the machine is made of");
    auto* key = command("key", "show one SMC key: type, bytes, value");

    auto* profile = command("profile", "apply a profile once");
    auto* runCommand = command("run", "control the fans until Ctrl-C, then hand them back");
    const auto* install = command("install", "install the helper; asks for an administrator");
    const auto* uninstall = command("uninstall", "hand the fans back and remove the helper");

    bool takeOver = false;
    for (auto* forcing : {set, profile, runCommand}) {
        forcing->add_flag("--take-over", takeOver,
                          "make the program that steers the fans now let go of them");
    }

    double interval = 1;
    int count = 0;
    watchCommand->add_option("--interval", interval, "seconds between two looks")
        ->check(numberBetween(0.05, 3600))
        ->option_text("SECONDS [1]");
    watchCommand->add_option("--count", count, "end after this many looks")
        ->check(CLI::Range(1, 1000000000))
        ->option_text("N");
    std::uint32_t fan = 0;
    double rpm = 0;
    set->add_option("FAN", fan, "index of the fan, from 0")->required()->option_text(" ");
    set->add_option("RPM", rpm, "the speed; the fan's limits apply")
        ->required()
        ->check(numberBetween(0, std::numeric_limits<double>::max()))
        ->option_text(" ");
    auto* automaticFan =
        automatic->add_option("FAN", fan, "index of the fan, from 0")->option_text(" ");
    std::string keyName;
    key->add_option("KEY", keyName, "four characters, such as TC0P")
        ->required()
        ->check(fourCharacters)
        ->option_text(" ");
    std::string chosenProfile = "smartCurve";
    profile->add_option("NAME", chosenProfile, std::string("by its case or title: ") + profileNames)
        ->required()
        ->check(profileName)
        ->option_text(" ");
    runCommand->add_option("--profile", chosenProfile, profileNames)
        ->check(profileName)
        ->option_text("NAME [smartCurve]");
    std::string chosenCurve;
    auto* curveOption =
        runCommand
            ->add_option("--curve", chosenCurve,
                         "°C and percent, such as 45:0,60:30,72:60,85:100; without it your own")
            ->check(curve)
            ->option_text("POINTS");
    std::string chosenSource;
    auto* sourceOption =
        runCommand->add_option("--source", chosenSource, "the temperature that drives the curve")
            ->check(CLI::IsMember(sourceNames()))
            ->option_text("maxCpuGpu|cpuPackage|gpuDie");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_SUCCESS : exitWrongUsage;
    }
    if (app.get_subcommands().empty()) {
        std::cerr << "A subcommand is required.\n\n" << app.help();
        return exitWrongUsage;
    }
    HeadlessOptions headless;
    headless.profile = *controlProfileFromName(chosenProfile);
    headless.json = json;
    if (curveOption->count() > 0) {
        headless.curve = parseCurve(chosenCurve);
    }
    if (sourceOption->count() > 0) {
        headless.source = curveSensorSourceFromCaseName(chosenSource);
    }
    if ((headless.curve || headless.source) && headless.profile != ControlProfile::smartCurve) {
        std::cerr << "--curve and --source belong to the profile smartCurve.\n";
        return exitWrongUsage;
    }

    Platform& platform = Platform::install(makeHostPlatform(false).platform);
    if (profile->parsed() || runCommand->parsed() || install->parsed() || uninstall->parsed() ||
        hardware->parsed()) {
        platform.session = makeHostSession(platform);
    }
    if (set->parsed() || profile->parsed() || runCommand->parsed()) {
        requireControl(ControlHolder(platform.machineRoot, commandName), takeOver);
    } else if (automatic->parsed()) {
        warnUnlessOtherLetsGo(ControlHolder(platform.machineRoot, commandName));
    }
    int exitCode = EXIT_SUCCESS;
    Commands commands(SMCService::shared(), HelperClient::shared(), platform.machineKind,
                      std::cout);
    if (fans->parsed()) {
        commands.fans(json);
    } else if (sensors->parsed()) {
        commands.sensors(json, terminalStyle());
    } else if (watchCommand->parsed()) {
        const std::chrono::duration<double> seconds(interval);
        const WatchOptions options{std::chrono::round<std::chrono::milliseconds>(seconds), count,
                                   json, secondTerminalHint(platform)};
        if (!watch(commands, platform.machineKind, options, std::cout)) {
            exitCode = exitRefused;
        }
    } else if (set->parsed()) {
        commands.set(fan, rpm, json);
    } else if (automatic->parsed()) {
        commands.automatic(
            automaticFan->count() > 0 ? std::optional<std::int64_t>(fan) : std::nullopt, json);
    } else if (profile->parsed()) {
        commands.profile(headless.profile, *platform.session->defaults, json);
    } else if (runCommand->parsed()) {
        runHeadless(commands, SMCService::shared(), HelperClient::shared(), platform, headless);
    } else if (hardware->parsed()) {
        endProfilerOnSignals();
        commands.hardware(SystemHardwareInspector::shared(), json);
    } else if (install->parsed()) {
        std::cerr << "Waiting for an administrator's consent.\n";
        commands.installHelper(json);
    } else if (uninstall->parsed()) {
        std::cerr << "Waiting for an administrator's consent.\n";
        commands.uninstallHelper(json);
    } else if (ping->parsed()) {
        commands.ping(json);
    } else {
        commands.key(keyName, json);
    }
    std::cout.flush();
    if (!std::cout) {
        throw CommandError("standard output cannot be written");
    }
    return exitCode;
}

} // namespace

int main(int argc, char** argv) {
    try {
        occupyStandardDescriptors();
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "ventaroctl: " << error.what() << '\n';
        return exitRefused;
    }
}
