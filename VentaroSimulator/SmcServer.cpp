#include "SmcServer.h"

#include "SmcWire.h"
#include "UnixSocket.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace ventaro {

SmcServer::SmcServer(EventLoop& loop, SimulatedSmc& smc, const MachineRoot& root,
                     std::function<void()> bringUpToDate)
    : loop_(loop),
      smc_(smc),
      bringUpToDate_(std::move(bringUpToDate)),
      user_{root.resolve(SmcWire::userSocketPath), 0666, false, {}},
      root_{root.resolve(SmcWire::rootSocketPath), 0600, true, {}} {
    applyServiceFault();
}

SmcServer::~SmcServer() { disappear(); }

void SmcServer::applyServiceFault() {
    const bool isThere = static_cast<bool>(user_.socket);
    if (smc_.faults().isServiceGone() && isThere) {
        disappear();
    } else if (!smc_.faults().isServiceGone() && !isThere) {
        appear();
    }
}

void SmcServer::appear() {
    for (Listener* listener : {&user_, &root_}) {
        listener->socket = listenOnUnixSocket(listener->path, SOCK_SEQPACKET, listener->mode);
        loop_.watch(listener->socket.get(), [this, listener] { acceptFrom(*listener); });
    }
}

void SmcServer::disappear() {
    for (Listener* listener : {&user_, &root_}) {
        if (listener->socket) {
            loop_.unwatch(listener->socket.get());
            listener->socket.reset();
            ::unlink(listener->path.c_str());
        }
    }
    while (!connections_.empty()) {
        disconnect(connections_.begin()->first);
    }
}

void SmcServer::acceptFrom(const Listener& listener) {
    auto socket = std::make_shared<FileDescriptor>(
        ::accept4(listener.socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!*socket) {
        return;
    }
    const bool privileged = listener.privileged;
    connections_[socket->get()] = socket;
    loop_.watch(socket->get(), [this, socket = std::weak_ptr(socket), privileged] {
        if (const auto open = socket.lock()) {
            exchange(open, privileged);
        }
    });
}

void SmcServer::disconnect(int socket) {
    loop_.unwatch(socket);
    connections_.erase(socket);
}

void SmcServer::exchange(const std::shared_ptr<FileDescriptor>& socket, bool privileged) {
    std::array<std::byte, sizeof(SmcWire::RequestHeader) + SmcWire::maximumBlockSize> packet;
    const ssize_t received = ::recv(socket->get(), packet.data(), packet.size(), 0);
    if (received < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    SmcWire::RequestHeader request{};
    SMCKeyData_t block{};
    if (received < static_cast<ssize_t>(sizeof request)) {
        disconnect(socket->get());
        return;
    }
    std::memcpy(&request, packet.data(), sizeof request);

    SimulatedSmc::Answer answer;
    if (received == static_cast<ssize_t>(sizeof request + sizeof block) &&
        request.outputRoom == sizeof block) {
        std::memcpy(&block, packet.data() + sizeof request, sizeof block);
        bringUpToDate_();
        answer = smc_.answer(request.selector, block, privileged);
    } else {
        answer.kernelReturn = kIOReturnBadArgument;
    }
    const SmcWire::AnswerHeader header{answer.kernelReturn, 0};
    std::array<std::byte, sizeof header + sizeof answer.output> reply;
    std::memcpy(reply.data(), &header, sizeof header);
    std::memcpy(reply.data() + sizeof header, &answer.output, sizeof answer.output);
    const auto send = [socket = std::weak_ptr(socket), reply] {
        if (const auto open = socket.lock()) {
            ::send(open->get(), reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        }
    };
    if (answer.late > std::chrono::milliseconds::zero()) {
        loop_.after(answer.late, send);
    } else {
        send();
    }
}

} // namespace ventaro
