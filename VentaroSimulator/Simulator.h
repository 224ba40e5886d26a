#pragma once

#include "SimulatedSmc.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventaro {

/// How the machine's administrator answers when a program asks for his password.
enum class AdministratorConsent { granted, refused, waiting };

std::optional<AdministratorConsent> consentFromName(std::string_view name);

struct SimulatorOptions {
    SimulatedSmcOptions machine;
    double timeScale = 1;
    bool stepped = false;
    bool helperInstalled = true;
    AdministratorConsent consent = AdministratorConsent::granted;
    std::optional<std::filesystem::path> root; ///< no value: a temporary folder
    std::string faults;                        ///< the text of a fault file
    std::vector<std::string> command;          ///< empty: run until a signal
};

/// Brings a simulated MacBook up, runs the command on it (or waits for a signal), takes everything
/// down and returns the command's exit code, 128 and the signal's number if a signal ended it.
/// Blocks the signals of the process that it handles. Throws std::exception with an English
/// sentence.
int runSimulator(const SimulatorOptions& options);

/// Performs a command of `controlHelp` on the running machine of the environment, prints its answer
/// and returns its exit code.
int controlMachine(const std::vector<std::string>& command);

/// The machine's launchctl: bootstrap, bootout, load, unload and list, for the machine's root.
int launchctl(const std::vector<std::string>& arguments);

/// The machine's chown. Giving files to "root:wheel", which only the machine's root may do, changes
/// nothing, for the files of a simulated machine belong to whoever runs it; all else is the host's.
int chown(const std::vector<std::string>& arguments);

extern const char* const controlHelp;

} // namespace ventaro
