#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace ventaro {

/// How a child process is to be started.
struct ChildProcess {
    std::vector<std::string> arguments;   ///< the first is the program; looked up in PATH if bare
    std::vector<std::string> environment; ///< "NAME=value", added to or replacing this process's
    std::string standardOutPath;          ///< appended to; empty: inherited
    std::string standardErrorPath;
    bool ownSession = false; ///< detached from the terminal
};

/// Starts a child that ends when this process does, however it ends. Throws std::system_error if
/// the program cannot be run.
pid_t startChild(const ChildProcess& child);

} // namespace ventaro
