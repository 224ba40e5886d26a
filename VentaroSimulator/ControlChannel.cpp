#include "ControlChannel.h"

#include "SystemCalls.h"
#include "UnixSocket.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace ventaro {

namespace {

constexpr mode_t ownerOnly = 0600;

} // namespace

ControlChannel::ControlChannel(EventLoop& loop, const MachineRoot& root, Handler handler)
    : loop_(loop),
      path_(root.resolve(machineControlSocketPath)),
      handler_(std::move(handler)),
      listener_(listenOnUnixSocket(path_, ownerOnly)) {
    loop_.watch(listener_.get(), [this] { accept(); });
}

ControlChannel::~ControlChannel() {
    for (const auto& [descriptor, socket] : connections_) {
        loop_.unwatch(descriptor);
    }
    loop_.unwatch(listener_.get());
    ::unlink(path_.c_str());
}

void ControlChannel::accept() {
    FileDescriptor socket = acceptConnection(listener_.get());
    if (socket) {
        const int descriptor = socket.get();
        connections_[descriptor] = {std::move(socket), {}};
        loop_.watch(descriptor, [this, descriptor] { receive(descriptor); });
    }
}

void ControlChannel::receive(int socket) {
    std::string& received = connections_.at(socket).received;
    std::string bytes(largestControlMessage, '\0');
    const ssize_t count = ::recv(socket, bytes.data(), bytes.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    received.append(bytes, 0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count < 0 || received.size() > largestControlMessage || (count == 0 && received.empty())) {
        disconnect(socket);
    } else if (count == 0) {
        carryOut(socket, received);
    }
}

void ControlChannel::carryOut(int socket, const std::string& words) {
    loop_.unwatch(socket); // its stream is at its end, which could be read for ever
    MachineCommand command;
    for (std::size_t begin = 0; begin < words.size();) {
        command.emplace_back(words.c_str() + begin);
        begin += command.back().size() + 1;
    }
    if (const auto result = handler_(command)) {
        answer(socket, *result);
    } else {
        waiting_.insert(socket);
    }
}

void ControlChannel::answerWaiting(const MachineCommandResult& result) {
    for (const int socket : std::set<int>(waiting_)) {
        answer(socket, result);
    }
}

void ControlChannel::answer(int socket, const MachineCommandResult& result) {
    const std::string reply = std::string(1, static_cast<char>(result.exitCode)) + result.text;
    ::send(socket, reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    disconnect(socket);
}

void ControlChannel::disconnect(int socket) {
    loop_.unwatch(socket);
    waiting_.erase(socket);
    connections_.erase(socket);
}

} // namespace ventaro
