#pragma once

#include "EventLoop.h"
#include "FileDescriptor.h"
#include "MachineRoot.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ventaro {

/// A command to a running machine: a few words.
using Command = std::vector<std::string>;

struct CommandResult {
    int exitCode = 0;
    std::string text; ///< for standard output, or for standard error if the exit code is not 0
};

/// The socket over which a running machine takes commands, each a packet of words that end in a
/// zero byte. One thread.
class ControlChannel {
public:
    using Handler = std::function<CommandResult(const Command&)>;

    /// The loop must outlive the channel. Throws std::system_error if the socket cannot be made.
    ControlChannel(EventLoop& loop, const MachineRoot& root, Handler handler);
    ~ControlChannel();
    ControlChannel(const ControlChannel&) = delete;
    ControlChannel& operator=(const ControlChannel&) = delete;

private:
    void accept();
    void answer(int socket);

    EventLoop& loop_;
    const std::string path_;
    const Handler handler_;
    FileDescriptor listener_;
    std::map<int, FileDescriptor> connections_;
};

/// Sends one command to the machine with this root and waits for its result. Throws
/// std::runtime_error if no machine answers there.
CommandResult sendCommand(const MachineRoot& root, const Command& command);

} // namespace ventaro
