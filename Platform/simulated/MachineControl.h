#pragma once

#include "MachineRoot.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

/// Where the simulator of a machine takes commands: a stream of words that end in a zero byte,
/// closed behind the last one, and answered by an exit code in one byte and a text.
constexpr const char* machineControlSocketPath = "/var/run/ventaro-simulator/control.sock";
/// The longest command and the longest answer, in bytes.
constexpr std::size_t largestControlMessage = 65536;

/// A command to a running machine: a few words.
using MachineCommand = std::vector<std::string>;

struct MachineCommandResult {
    int exitCode = 0;
    std::string text; ///< for standard output, or for standard error if the exit code is not 0
};

/// Sends one command to the machine with this root and waits for its result, without `patience`
/// for as long as the machine is there. Throws std::runtime_error if none answers.
MachineCommandResult sendMachineCommand(const MachineRoot& root, const MachineCommand& command,
                                        std::optional<std::chrono::milliseconds> patience);

/// The environment entries of a process of the machine: its root, the access to its SMC
/// (`SmcWire::accessVariable`), and its commands first in the search path.
std::vector<std::string> simulatedProcessEnvironment(const MachineRoot& root, const char* access);

} // namespace ventaro
