#include "SmcServer.h"

#include "SmcWire.h"
#include "SystemCalls.h"
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
        listener->socket = listenOnUnixSocket(listener->path, listener->mode);
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
    FileDescriptor socket = acceptConnection(listener.socket.get());
    if (!socket) {
        return;
    }
    const int descriptor = socket.get();
    const auto connection =
        std::make_shared<Connection>(Connection{std::move(socket), listener.privileged});
    connections_[descriptor] = connection;
    loop_.watch(descriptor, [this, connection = std::weak_ptr(connection)] {
        if (const auto open = connection.lock()) {
            receive(open);
        }
    });
}

void SmcServer::disconnect(int socket) {
    loop_.unwatch(socket);
    connections_.erase(socket);
}

void SmcServer::receive(const std::shared_ptr<Connection>& connection) {
    const int socket = connection->socket.get();
    std::array<std::byte, sizeof(SmcWire::RequestHeader) + SmcWire::maximumBlockSize> bytes;
    const ssize_t count = ::recv(socket, bytes.data(), bytes.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (count <= 0) {
        disconnect(socket);
        return;
    }
    auto& received = connection->received;
    received.insert(received.end(), bytes.begin(), bytes.begin() + count);
    SmcWire::RequestHeader request{};
    if (received.size() < sizeof request) {
        return;
    }
    std::memcpy(&request, received.data(), sizeof request);
    if (request.inputSize > SmcWire::maximumBlockSize) {
        disconnect(socket);
    } else if (received.size() >= sizeof request + request.inputSize) {
        exchange(connection);
        received.clear();
    }
}

void SmcServer::exchange(const std::shared_ptr<Connection>& connection) {
    const std::byte* received = connection->received.data();
    SmcWire::RequestHeader request{};
    SMCKeyData_t block{};
    std::memcpy(&request, received, sizeof request);
    SimulatedSmc::Answer answer;
    SmcWire::AnswerHeader header{KernelCode::badArgument, 0};
    if (request.inputSize == sizeof block && request.outputRoom == sizeof block) {
        std::memcpy(&block, received + sizeof request, sizeof block);
        bringUpToDate_();
        answer = smc_.answer(request.selector, block, connection->privileged);
        header = {answer.kernelReturn, sizeof answer.output};
    }
    std::vector<std::byte> reply(sizeof header + header.outputSize);
    std::memcpy(reply.data(), &header, sizeof header);
    std::memcpy(reply.data() + sizeof header, &answer.output, header.outputSize);
    const auto send = [connection = std::weak_ptr(connection), reply = std::move(reply)] {
        if (const auto open = connection.lock()) {
            ::send(open->socket.get(), reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        }
    };
    if (answer.late > std::chrono::milliseconds::zero()) {
        loop_.after(answer.late, send);
    } else {
        send();
    }
}

} // namespace ventaro
