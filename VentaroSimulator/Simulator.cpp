#include "Simulator.h"

#include "ChildProcess.h"
#include "ClockServer.h"
#include "ControlChannel.h"
#include "EmbeddedFiles.h"
#include "EventLoop.h"
#include "HelperIPC.h"
#include "KernelValues.h"
#include "Launchd.h"
#include "MachineClock.h"
#include "MachineFolder.h"
#include "MachineRootChoice.h"
#include "NumberFormat.h"
#include "NumberParse.h"
#include "SignalWatch.h"
#include "SmcServer.h"
#include "SmcWire.h"
#include "SystemCalls.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace ventaro {

namespace {

std::filesystem::path bundledHelper() {
    auto helper = executablePath().value_or("").parent_path() / "VentaroHelper";
    if (!std::filesystem::exists(helper)) {
        throw std::runtime_error("the helper is missing: " + helper.string());
    }
    return helper;
}

/// A simulated MacBook while it is switched on.
class RunningMachine {
public:
    explicit RunningMachine(const SimulatorOptions& options);

    int run();

private:
    static constexpr std::chrono::milliseconds tickInterval{100};
    static constexpr std::chrono::seconds helperPatience{5};
    static constexpr std::chrono::seconds commandPatience{5};
    static constexpr int killedBase = 128; // plus the signal's number, as a shell counts

    void tick();
    void bringUpToDate();
    void startCommandOnceHelperServes(std::chrono::milliseconds waited);
    void startCommand();
    void handleSignal();
    void reapChildren();
    void endCommand(int signal);
    static void endAllProcesses();
    std::optional<MachineCommandResult> perform(const MachineCommand& command);
    MachineCommandResult performLaunchctl(const MachineCommand& command);
    void step(const std::string& seconds);
    void setConsent(const MachineCommand& command);
    std::optional<MachineCommandResult> consentAnswer() const;
    std::string status() const;

    const SimulatorOptions options_;
    const SignalWatch signals_{{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGCHLD}};
    MachineFolder folder_;
    MachineClock clock_;
    SimulatedSmc smc_;
    const KernelValues kernelValues_{EmbeddedFiles::kernelValues};
    EventLoop loop_;
    SmcServer server_;
    Launchd launchd_;
    ClockServer clocks_;
    ControlChannel control_;
    AdministratorConsent consent_;
    std::string refusal_; ///< the text with which the administrator refuses
    pid_t command_ = 0;
    int exitCode_ = EXIT_SUCCESS;
};

RunningMachine::RunningMachine(const SimulatorOptions& options)
    : options_(options),
      folder_(options.root),
      clock_(options.stepped ? MachineClock::stepped() : MachineClock::scaled(options.timeScale)),
      smc_(options.machine),
      server_(loop_, smc_, folder_.root(), [this] { bringUpToDate(); }),
      launchd_(loop_, clock_, folder_.root(),
               simulatedProcessEnvironment(folder_.root(), SmcWire::rootAccess)),
      clocks_(loop_, clock_, folder_.root()),
      control_(loop_, folder_.root(),
               [this](const MachineCommand& command) { return perform(command); }),
      consent_(options.consent) {
    smc_.faults().addAll(options.faults);
    server_.applyServiceFault();
    if (options.helperInstalled) {
        folder_.installHelper(bundledHelper());
    } else {
        folder_.removeHelper();
    }
}

int RunningMachine::run() {
    adoptOrphans();
    loop_.watch(signals_.descriptor(), [this] { handleSignal(); });
    launchd_.loadInstalledDaemons();
    tick();
    if (options_.command.empty()) {
        std::printf("The simulated MacBook is on. To use it from another terminal:\n"
                    "  export %s=%s\nCtrl-C switches it off.\n",
                    MachineRoot::environmentVariable, folder_.root().folder().c_str());
        std::fflush(stdout);
    } else {
        startCommandOnceHelperServes(std::chrono::milliseconds(0));
    }
    loop_.run();
    endAllProcesses();
    return exitCode_;
}

void RunningMachine::tick() {
    bringUpToDate();
    launchd_.startDueJobs();
    loop_.after(tickInterval, [this] { tick(); });
}

void RunningMachine::bringUpToDate() { smc_.advanceTo(clock_.now()); }

void RunningMachine::startCommandOnceHelperServes(std::chrono::milliseconds waited) {
    constexpr std::chrono::milliseconds pause(10);
    const auto socket = folder_.root().resolve(HelperConstants::socketPath);
    const bool serves = std::filesystem::exists(socket);
    if (!serves && options_.helperInstalled && waited >= helperPatience) {
        std::fprintf(stderr, "VentaroSimulator: the helper does not serve; see %s\n",
                     folder_.root().resolve("/var/log/com.ventaro.helper.err").c_str());
    }
    if (serves || !options_.helperInstalled || waited >= helperPatience) {
        startCommand();
        return;
    }
    loop_.after(pause, [this, waited, pause] { startCommandOnceHelperServes(waited + pause); });
}

void RunningMachine::startCommand() {
    ChildProcess child;
    child.arguments = options_.command;
    child.environment = simulatedProcessEnvironment(folder_.root(), "user");
    child.environment.push_back("HOME=" + folder_.home().string());
    try {
        command_ = startChild(child);
    } catch (const std::system_error& error) {
        std::fprintf(stderr, "VentaroSimulator: %s\n", error.what());
        constexpr int commandNotFound = 127; // as a shell would say
        exitCode_ = commandNotFound;
        loop_.stop();
    }
}

void RunningMachine::handleSignal() {
    while (const auto arrival = signals_.take()) {
        const int signal = arrival->signal;
        if (signal == SIGCHLD) {
            reapChildren();
        } else if (command_ == 0) {
            exitCode_ = options_.command.empty() ? EXIT_SUCCESS : killedBase + signal;
            loop_.stop();
        } else if (signal == SIGINT || signal == SIGQUIT) {
            // From the terminal it has reached the command, too, whose affair it is.
            if (!arrival->isFromKernel) {
                ::kill(command_, signal);
            }
        } else {
            endCommand(SIGTERM);
        }
    }
}

void RunningMachine::endCommand(int signal) {
    ::kill(command_, signal);
    loop_.after(commandPatience, [this] {
        if (command_ != 0) {
            endCommand(SIGKILL);
        }
    });
}

void RunningMachine::reapChildren() {
    int waitStatus = 0;
    for (pid_t pid = 0; (pid = ::waitpid(-1, &waitStatus, WNOHANG)) > 0;) {
        if (pid == command_) {
            command_ = 0;
            exitCode_ = WIFSIGNALED(waitStatus) ? killedBase + WTERMSIG(waitStatus)
                                                : WEXITSTATUS(waitStatus);
            loop_.stop();
        } else {
            launchd_.childEnded(pid, waitStatus);
        }
    }
}

void RunningMachine::endAllProcesses() {
    constexpr int rounds = 200;
    constexpr useconds_t pause = 10000; // µs
    for (int round = 0; round < rounds; ++round) {
        pid_t reaped = 0;
        while ((reaped = ::waitpid(-1, nullptr, WNOHANG)) > 0) {
        }
        if (reaped < 0) {
            return; // there are none, neither living nor to be reaped
        }
        const bool isLate = round > rounds / 2;
        for (const pid_t child : livingChildren()) {
            if (round == 0 || isLate) {
                ::kill(child, isLate ? SIGKILL : SIGTERM);
            }
        }
        ::usleep(pause);
    }
}

std::string RunningMachine::status() const {
    std::string text = "time " + formatFixed(std::chrono::duration<double>(smc_.now()).count(), 2) +
                       " s\ncpu " + formatFixed(smc_.model().temperature(ThermalNode::cpuDie), 2) +
                       " °C\ngpu " + formatFixed(smc_.model().temperature(ThermalNode::gpuDie), 2) +
                       " °C\npower " + formatFixed(smc_.model().drawn().total(), 2) +
                       " W\nthrottling " + (smc_.model().isThrottling() ? "yes" : "no") + '\n';
    for (const SimulatedFan& fan : smc_.fans()) {
        text += "fan " + formatFixed(fan.speed, 1) + " RPM, target " + formatFixed(fan.target, 1) +
                " RPM, " + (fan.forced ? "forced" : "automatic") + '\n';
    }
    return text;
}

std::optional<MachineCommandResult> RunningMachine::perform(const MachineCommand& command) try {
    const std::string& verb = command.at(0);
    if (verb == "launchctl") {
        return performLaunchctl(command);
    }
    if (verb == "status" && command.size() == 1) {
        bringUpToDate();
        return MachineCommandResult{EXIT_SUCCESS, status()};
    }
    if (verb == "step" && command.size() == 2) {
        step(command[1]);
        return MachineCommandResult{};
    }
    if (verb == "workload" && command.size() == 2) {
        const auto workload = workloadFromName(command[1]);
        if (!workload) {
            throw std::invalid_argument("\"" + command[1] + "\" is no workload");
        }
        bringUpToDate();
        smc_.setWorkload(*workload);
        return MachineCommandResult{};
    }
    if (verb == "fault" && command.size() > 1) {
        std::string line;
        for (std::size_t word = 1; word < command.size(); ++word) {
            line += "\"" + command[word] + "\" ";
        }
        smc_.faults().add(line);
        server_.applyServiceFault();
        return MachineCommandResult{};
    }
    if (verb == "clear" && command.size() == 1) {
        smc_.faults().clear();
        server_.applyServiceFault();
        return MachineCommandResult{};
    }
    if (verb == "consent" && command.size() > 1) {
        setConsent(command);
        return MachineCommandResult{};
    }
    if (verb == "kernel-value" && command.size() == 2) {
        const auto value = kernelValues_.find(command[1]);
        return value ? MachineCommandResult{EXIT_SUCCESS, *value}
                     : MachineCommandResult{EXIT_FAILURE, "no such kernel value\n"};
    }
    if (verb == "administrator-consent" && command.size() == 1) {
        return consentAnswer();
    }
    throw std::invalid_argument("no such command");
} catch (const std::exception& error) {
    return MachineCommandResult{EXIT_FAILURE, std::string(error.what()) + '\n'};
}

void RunningMachine::step(const std::string& text) {
    constexpr double longest = 86400; // s
    const auto seconds = parseNumber<double>(text, 0, longest);
    if (!seconds) {
        throw std::invalid_argument("step takes 0 to 86400 seconds");
    }
    if (!clock_.isStepped()) {
        throw std::invalid_argument("the clock of this machine runs by itself");
    }
    clock_.step(std::chrono::milliseconds(std::llround(*seconds * 1000)));
    bringUpToDate();
    launchd_.startDueJobs();
    clocks_.sendDueTicks();
}

void RunningMachine::setConsent(const MachineCommand& command) {
    const auto consent = consentFromName(command[1]);
    const std::size_t mostWords = consent == AdministratorConsent::refused ? 3 : 2;
    if (!consent || command.size() > mostWords) {
        throw std::invalid_argument("consent is granted, refused (with a text or without) or "
                                    "waiting");
    }
    consent_ = *consent;
    refusal_ = command.size() > 2 ? command[2] : "";
    if (const auto answer = consentAnswer()) {
        control_.answerWaiting(*answer);
    }
}

std::optional<MachineCommandResult> RunningMachine::consentAnswer() const {
    switch (consent_) {
    case AdministratorConsent::granted:
        return MachineCommandResult{};
    case AdministratorConsent::refused:
        return MachineCommandResult{EXIT_FAILURE, refusal_};
    case AdministratorConsent::waiting:
        break;
    }
    return std::nullopt; // the dialog stays open
}

MachineCommandResult RunningMachine::performLaunchctl(const MachineCommand& command) {
    if (command.size() == 2 && command[1] == "list") {
        return {EXIT_SUCCESS, launchd_.list()};
    }
    std::string verb; // everything but the file
    for (std::size_t word = 1; word + 1 < command.size(); ++word) {
        verb += (word == 1 ? "" : " ") + command[word];
    }
    if (verb == "bootstrap system" || verb == "load" || verb == "load -w") {
        launchd_.bootstrap(command.back());
        return {};
    }
    if (verb == "bootout system" || verb == "unload" || verb == "unload -w") {
        launchd_.bootout(command.back());
        return {};
    }
    throw std::invalid_argument("launchctl: unrecognised subcommand or wrong arguments");
}

MachineRoot machineOfEnvironment() {
    auto choice = chooseMachineRoot(std::getenv(MachineRoot::environmentVariable), false);
    if (!choice.simulated) {
        throw std::runtime_error(std::string(MachineRoot::environmentVariable) +
                                 " names no simulated machine");
    }
    return std::move(*choice.simulated);
}

/// Whether this process is the machine's root; says so if it is not.
bool isMachineRoot(const char* command) {
    const char* access = std::getenv(SmcWire::accessVariable);
    const bool isRoot = access != nullptr && std::string_view(access) == SmcWire::rootAccess;
    if (!isRoot) {
        std::fprintf(stderr, "%s: operation not permitted, root is required\n", command);
    }
    return isRoot;
}

/// Becomes the program; returns only if that is not possible.
int runHostProgram(const char* path, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), path);
    std::vector<char*> words;
    for (std::string& argument : arguments) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    ::execv(path, words.data());
    std::perror(path);
    return EXIT_FAILURE;
}

int printResult(const MachineCommandResult& result) {
    std::fputs(result.text.c_str(), result.exitCode == EXIT_SUCCESS ? stdout : stderr);
    return result.exitCode;
}

} // namespace

const char* const controlHelp = "  step SECONDS    move a stepped clock on\n"
                                "  workload NAME   change the workload\n"
                                "  fault FAULT     add a fault, one line of a fault file\n"
                                "  clear           take all faults away\n"
                                "  status          print the machine's state\n"
                                "  consent granted|refused [TEXT]|waiting\n"
                                "                  how the administrator answers from now on\n";

int runSimulator(const SimulatorOptions& options) { return RunningMachine(options).run(); }

std::optional<AdministratorConsent> consentFromName(std::string_view name) {
    if (name == "granted") {
        return AdministratorConsent::granted;
    }
    if (name == "refused") {
        return AdministratorConsent::refused;
    }
    return name == "waiting" ? std::optional(AdministratorConsent::waiting) : std::nullopt;
}

int controlMachine(const std::vector<std::string>& command) {
    // A long stepped time takes the machine a moment to live through.
    constexpr auto patience = std::chrono::minutes(2);
    return printResult(sendMachineCommand(machineOfEnvironment(), command, patience));
}

int launchctl(const std::vector<std::string>& arguments) {
    if (!isMachineRoot("launchctl")) {
        return EXIT_FAILURE;
    }
    MachineCommand command{"launchctl"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return controlMachine(command);
}

int chown(const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.front() != "root:wheel") {
        return runHostProgram("/bin/chown", arguments);
    }
    if (!isMachineRoot("chown")) {
        return EXIT_FAILURE;
    }
    for (auto file = arguments.begin() + 1; file != arguments.end(); ++file) {
        if (!std::filesystem::exists(*file)) {
            std::fprintf(stderr, "chown: %s: No such file or directory\n", file->c_str());
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS; // whoever runs the machine owns its files
}

} // namespace ventaro
