#include "Faults.h"
#include "FileDescriptor.h"
#include "NumberParse.h"
#include "Simulator.h"
#include "SystemProfiler.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>

namespace {

using namespace ventaro;

constexpr int wrongUsage = 2;

std::string readFile(const std::string& path) {
    std::ifstream file(path);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        throw std::runtime_error("the fault file " + path + " cannot be read");
    }
    return text;
}

/// A number in decimal notation; CLI11's own range lets "nan" pass.
CLI::Validator numberBetween(double least, double most) {
    return {[least, most](std::string& text) {
                return parseNumber(text, least, most) ? std::string()
                                                      : "\"" + text + "\" is not a number in range";
            },
            "NUMBER"};
}

int control(const std::vector<std::string>& command) {
    if (command.empty() || command.front() == "--help" || command.front() == "-h") {
        (command.empty() ? std::cerr : std::cout)
            << "Usage: VentaroSimulator control COMMAND\n"
               "Steers the running machine that VENTARO_MACHINE_ROOT names.\n\n"
            << controlHelp << "\nFaults:\n"
            << Faults::grammar;
        return command.empty() ? wrongUsage : EXIT_SUCCESS;
    }
    return controlMachine(command);
}

/// CLI11 cannot know of what stands behind "--".
class UsageFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
        return "Usage: VentaroSimulator [OPTIONS] [-- COMMAND...]\n"
               "       VentaroSimulator control COMMAND\n\n";
    }
};

/// `arguments`: those of the program before "--".
int simulate(std::vector<std::string> arguments, std::vector<std::string> command) {
    CLI::App app("A simulated 16-inch MacBook Pro (2019): System Management Controller with a\n"
                 "thermal model, launchd and a folder tree of its own. Runs COMMAND on it and\n"
                 "takes everything down again; without a command it runs until Ctrl-C.",
                 "VentaroSimulator");
    app.formatter(std::make_shared<UsageFormatter>());
    app.footer(
        "A fault file has a fault per line, comments begin with \"# \":\n" +
        std::string(Faults::grammar) +
        "\nVentaroSimulator control COMMAND, with VENTARO_MACHINE_ROOT set, steers a running "
        "machine:\n" +
        controlHelp);
    app.set_version_flag("--version", "VentaroSimulator " VENTARO_VERSION);

    SimulatorOptions options;
    options.command = std::move(command);
    std::string workload = "idle";
    std::string helper = "installed";
    std::string consent = "granted";
    std::string variant = "t2";
    std::string faultFile;
    std::string root;
    const auto choice = [&](const char* name, std::string& value, const char* description,
                            std::vector<std::string> choices) {
        const std::string shown = CLI::detail::join(choices, "|");
        app.add_option(name, value, description)
            ->check(CLI::IsMember(std::move(choices)))
            ->option_text(shown);
    };
    choice("--workload", workload, "what the machine is busy with",
           {"idle", "office", "compile", "game", "burst"});
    app.add_option("--seed", options.machine.seed, "the seed of everything random")
        ->check(numberBetween(0, 1e15))
        ->option_text("N");
    app.add_option("--time-scale", options.timeScale, "machine seconds per real second, up to 1000")
        ->check(numberBetween(0.001, 1000))
        ->option_text("X");
    app.add_flag("--stepped", options.stepped, "the clock moves on command only")
        ->excludes("--time-scale");
    choice("--consent", consent, "how the administrator answers",
           {"granted", "refused", "waiting"});
    choice("--helper", helper, "whether the helper is installed", {"installed", "absent"});
    app.add_option("--root", root,
                   "the machine's folder, kept at the end (default: a temporary one)")
        ->option_text("FOLDER");
    app.add_option("--faults", faultFile, "what is wrong with the machine, see below")
        ->check(CLI::ExistingFile)
        ->option_text("FILE");
    choice("--variant", variant, "the generation of fan control", {"t2", "legacy"});
    app.add_option("--fans", options.machine.fanCount, "the number of fans, 0 to 3")
        ->check(numberBetween(0, 3))
        ->option_text("N");
    for (CLI::Option* option : app.get_options()) {
        option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast); // scripts set defaults first
    }

    try {
        std::reverse(arguments.begin(), arguments.end()); // as CLI11 wants them
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_SUCCESS : wrongUsage;
    }
    options.machine.workload = *workloadFromName(workload);
    options.machine.variant = variant == "t2" ? SmcVariant::t2 : SmcVariant::legacy;
    options.helperInstalled = helper == "installed";
    options.consent = *consentFromName(consent);
    if (!root.empty()) {
        options.root = root;
    }
    if (!faultFile.empty()) {
        options.faults = readFile(faultFile);
    }
    return runSimulator(options);
}

int run(const std::string& calledAs, const std::vector<std::string>& arguments) {
    const std::string name = std::filesystem::path(calledAs).filename();
    if (name == "launchctl") {
        return launchctl(arguments);
    }
    if (name == "chown") {
        return chown(arguments);
    }
    if (name == "system_profiler") {
        return systemProfiler(arguments);
    }
    if (!arguments.empty() && arguments.front() == "control") {
        return control({arguments.begin() + 1, arguments.end()});
    }
    // What follows "--" is another program's, to be left exactly as it is.
    const auto separator = std::find(arguments.begin(), arguments.end(), "--");
    const auto command = separator == arguments.end() ? separator : separator + 1;
    return simulate({arguments.begin(), separator}, {command, arguments.end()});
}

} // namespace

int main(int argc, char** argv) {
    try {
        occupyStandardDescriptors();
        return run(argv[0], {argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "VentaroSimulator: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
