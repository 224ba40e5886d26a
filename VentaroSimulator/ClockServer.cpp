#include "ClockServer.h"

#include "ClockWire.h"
#include "SystemCalls.h"
#include "UnixSocket.h"

#include <unistd.h>

#include <cerrno>

namespace ventaro {

ClockServer::ClockServer(EventLoop& loop, const MachineClock& clock, const MachineRoot& root)
    : loop_(loop),
      clock_(clock),
      path_(root.resolve(ClockWire::socketPath)),
      socket_(listenOnUnixSocket(path_, 0600)) {
    loop_.watch(socket_.get(), [this] { accept(); });
}

ClockServer::~ClockServer() {
    for (const auto& [descriptor, listener] : listeners_) {
        loop_.unwatch(descriptor);
    }
    loop_.unwatch(socket_.get());
    ::unlink(path_.c_str());
}

void ClockServer::accept() {
    FileDescriptor socket = acceptConnection(socket_.get());
    if (socket) {
        const int descriptor = socket.get();
        listeners_[descriptor] = std::make_shared<Listener>(Listener{std::move(socket), {}, {}});
        loop_.watch(descriptor, [this, descriptor] { receive(descriptor); });
    }
}

void ClockServer::receive(int descriptor) {
    ClockWire::Interval interval = 0;
    const ssize_t received = ::recv(descriptor, &interval, sizeof interval, 0);
    if (received < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    const auto listener = listeners_.at(descriptor);
    const bool isFirst = listener->interval.count() == 0;
    if (received != sizeof interval || interval == 0 || !isFirst) {
        loop_.unwatch(descriptor);
        listeners_.erase(descriptor);
        return;
    }
    listener->interval = std::chrono::milliseconds(interval);
    listener->next = clock_.now() + listener->interval;
    await(listener);
}

void ClockServer::sendDueTicks() {
    for (const auto& [descriptor, listener] : listeners_) {
        sendIfDue(*listener);
    }
}

void ClockServer::sendIfDue(Listener& listener) {
    const auto now = clock_.now();
    if (listener.interval.count() == 0 || listener.next > now) {
        return;
    }
    // A program that does not look has its ticks in the socket already.
    ::send(listener.socket.get(), "", 1, MSG_NOSIGNAL | MSG_DONTWAIT);
    listener.next += ((now - listener.next) / listener.interval + 1) * listener.interval;
}

void ClockServer::await(const std::shared_ptr<Listener>& listener) {
    if (const auto delay = clock_.hostTimeUntil(listener->next)) {
        loop_.after(*delay, [this, awaited = std::weak_ptr(listener)] {
            if (const auto still = awaited.lock()) {
                sendIfDue(*still);
                await(still);
            }
        });
    }
}

} // namespace ventaro
