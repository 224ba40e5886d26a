#include "ControlChannel.h"

#include "UnixSocket.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace ventaro {

namespace {

constexpr const char* socketPath = "/var/run/ventaro-simulator/control.sock";
constexpr std::size_t largestPacket = 65536;
constexpr mode_t ownerOnly = 0600;

} // namespace

ControlChannel::ControlChannel(EventLoop& loop, const MachineRoot& root, Handler handler)
    : loop_(loop),
      path_(root.resolve(socketPath)),
      handler_(std::move(handler)),
      listener_(listenOnUnixSocket(path_, SOCK_SEQPACKET, ownerOnly)) {
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
    FileDescriptor socket(
        ::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (socket) {
        const int descriptor = socket.get();
        connections_[descriptor] = std::move(socket);
        loop_.watch(descriptor, [this, descriptor] { answer(descriptor); });
    }
}

void ControlChannel::answer(int socket) {
    std::string packet(largestPacket, '\0');
    const ssize_t received = ::recv(socket, packet.data(), packet.size(), 0);
    if (received < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (received > 0) {
        packet.resize(static_cast<std::size_t>(received));
        Command command;
        for (std::size_t begin = 0; begin < packet.size();) {
            command.emplace_back(packet.c_str() + begin);
            begin += command.back().size() + 1;
        }
        const CommandResult result = handler_(command);
        const std::string reply = std::string(1, static_cast<char>(result.exitCode)) + result.text;
        ::send(socket, reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }
    loop_.unwatch(socket);
    connections_.erase(socket);
}

CommandResult sendCommand(const MachineRoot& root, const Command& command) {
    // A long stepped time takes the machine a moment to live through.
    constexpr auto patience = std::chrono::minutes(2);
    const FileDescriptor socket =
        connectToUnixSocket(root.resolve(socketPath), SOCK_SEQPACKET, patience);
    std::string packet;
    for (const std::string& word : command) {
        packet += word + '\0';
    }
    std::string reply(largestPacket, '\0');
    ssize_t received = -1;
    if (socket && packet.size() <= largestPacket &&
        ::send(socket.get(), packet.data(), packet.size(), MSG_NOSIGNAL) > 0) {
        setSocketTimeout(socket.get(), SO_RCVTIMEO, patience);
        received = ::recv(socket.get(), reply.data(), reply.size(), 0);
    }
    if (received <= 0) {
        throw std::runtime_error("no simulated machine answers at " + root.folder().string());
    }
    return {static_cast<int>(reply[0]), reply.substr(1, static_cast<std::size_t>(received) - 1)};
}

} // namespace ventaro
