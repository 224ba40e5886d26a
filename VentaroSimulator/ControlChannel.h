#pragma once

#include "EventLoop.h"
#include "FileDescriptor.h"
#include "MachineControl.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace ventaro {

/// The socket over which a running machine takes commands, one per connection. One thread.
class ControlChannel {
public:
    /// No value: the command is answered later, by `answerWaiting`.
    using Handler = std::function<std::optional<MachineCommandResult>(const MachineCommand&)>;

    /// The loop must outlive the channel. Throws std::system_error if the socket cannot be made.
    ControlChannel(EventLoop& loop, const MachineRoot& root, Handler handler);
    ~ControlChannel();
    ControlChannel(const ControlChannel&) = delete;
    ControlChannel& operator=(const ControlChannel&) = delete;

    /// Answers every command that waits.
    void answerWaiting(const MachineCommandResult& result);

private:
    void accept();
    void receive(int socket);
    void carryOut(int socket, const std::string& words);
    void answer(int socket, const MachineCommandResult& result);
    void disconnect(int socket);

    EventLoop& loop_;
    const std::string path_;
    const Handler handler_;
    FileDescriptor listener_;
    struct Connection {
        FileDescriptor socket;
        std::string received;
    };
    std::map<int, Connection> connections_;
    std::set<int> waiting_; ///< whose commands are answered later
};

} // namespace ventaro
