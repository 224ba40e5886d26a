#include "Faults.h"
#include "Simulator.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>

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
                double number = 0;
                const char* end = text.data() + text.size();
                const auto result = std::from_chars(text.data(), end, number);
                return result.ec == std::errc{} && result.ptr == end && number >= least &&
                               number <= most
                           ? std::string()
                           : "\"" + text + "\" is not a number in range";
            },
            "NUMBER"};
}

int run(int argc, char** argv) {
    const std::filesystem::path calledAs(argv[0]);
    if (calledAs.filename() == "launchctl") {
        return launchctl({argv + 1, argv + argc});
    }

    CLI::App app("A simulated 16-inch MacBook Pro (2019): System Management Controller with a\n"
                 "thermal model, launchd and a folder tree of its own. Runs COMMAND on it and\n"
                 "takes everything down again; without a command it runs until Ctrl-C.",
                 "VentaroSimulator");
    app.footer(
        "A fault file has a fault per line:\n" + std::string(Faults::grammar) +
        "\nVentaroSimulator control COMMAND, with VENTARO_MACHINE_ROOT set, steers a running "
        "machine:\n" +
        controlHelp);
    app.set_version_flag("--version", "VentaroSimulator " VENTARO_VERSION);

    SimulatorOptions options;
    std::string faultFile;
    std::string root;
    const std::map<std::string, Workload> workloads{{"idle", Workload::idle},
                                                    {"office", Workload::office},
                                                    {"compile", Workload::compile},
                                                    {"game", Workload::game},
                                                    {"burst", Workload::burst}};
    const std::map<std::string, SmcVariant> variants{{"t2", SmcVariant::t2},
                                                     {"legacy", SmcVariant::legacy}};
    const std::map<std::string, bool> helper{{"installed", true}, {"absent", false}};
    app.add_option("--workload", options.machine.workload, "what the machine is busy with")
        ->transform(
            CLI::CheckedTransformer(workloads).description("idle|office|compile|game|burst"))
        ->option_text("idle|office|compile|game|burst");
    app.add_option("--seed", options.machine.seed, "the seed of everything random")
        ->option_text("N");
    auto* scale = app.add_option("--time-scale", options.timeScale,
                                 "machine seconds per real second, up to 1000")
                      ->check(numberBetween(0.001, 1000))
                      ->option_text("X");
    app.add_flag("--stepped", options.stepped, "the clock moves on command only")->excludes(scale);
    app.add_option("--helper", options.helperInstalled, "whether the helper is installed")
        ->transform(CLI::CheckedTransformer(helper).description("installed|absent"))
        ->option_text("installed|absent");
    app.add_option("--root", root,
                   "the machine's folder, kept at the end (default: a temporary one)")
        ->option_text("FOLDER");
    app.add_option("--faults", faultFile, "what is wrong with the machine, see below")
        ->check(CLI::ExistingFile)
        ->option_text("FILE");
    app.add_option("--variant", options.machine.variant, "the generation of fan control")
        ->transform(CLI::CheckedTransformer(variants).description("t2|legacy"))
        ->option_text("t2|legacy");
    app.add_option("--fans", options.machine.fanCount, "the number of fans, 0 to 3")
        ->check(CLI::Range(0, 3))
        ->option_text("N");
    app.add_option("COMMAND", options.command, "the command to run, after --");

    std::vector<std::string> controlWords;
    auto* control = app.add_subcommand("control", "")->group("");
    control->prefix_command();

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_SUCCESS : wrongUsage;
    }
    if (control->parsed()) {
        return controlMachine(control->remaining());
    }
    if (!root.empty()) {
        options.root = root;
    }
    if (!faultFile.empty()) {
        options.faults = readFile(faultFile);
    }
    return runSimulator(options);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "VentaroSimulator: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
