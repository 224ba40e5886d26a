#include "SimulatedClock.h"

#include "LinuxClock.h"
#include "UnixSocket.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

namespace ventaro {

namespace {

class MachineTicker final : public Ticker {
public:
    MachineTicker(std::filesystem::path socketPath, std::chrono::milliseconds interval)
        : socketPath_(std::move(socketPath)), interval_(interval) {
        if (!followMachine()) {
            followHost();
        }
    }

    int descriptor() const override { return source_.get(); }

    void acknowledge() override {
        std::array<char, 64> bytes;
        ssize_t count = 0;
        do {
            count = ::read(source_.get(), bytes.data(), bytes.size());
        } while (count > 0 && followsMachine_);
        if (followsMachine_ && count == 0) {
            followHost(); // the machine has been switched off
        } else if (!followsMachine_) {
            followMachine();
        }
    }

private:
    bool followMachine() {
        constexpr std::chrono::seconds patience(1);
        FileDescriptor socket = connectToUnixSocket(socketPath_, SOCK_SEQPACKET, patience);
        const auto interval = static_cast<ClockWire::Interval>(interval_.count());
        if (!socket || ::send(socket.get(), &interval, sizeof interval, MSG_NOSIGNAL) < 0) {
            return false;
        }
        ::fcntl(socket.get(), F_SETFL, O_NONBLOCK);
        replaceSource(std::move(socket));
        followsMachine_ = true;
        return true;
    }

    void followHost() {
        replaceSource(makeTimerDescriptor(interval_));
        followsMachine_ = false;
    }

    /// Whoever waits on the descriptor keeps its number.
    void replaceSource(FileDescriptor source) {
        if (source_) {
            ::dup3(source.get(), source_.get(), O_CLOEXEC);
        } else {
            source_ = std::move(source);
        }
    }

    const std::filesystem::path socketPath_;
    const std::chrono::milliseconds interval_;
    FileDescriptor source_;
    bool followsMachine_ = false;
};

} // namespace

std::chrono::system_clock::time_point SimulatedClock::now() const {
    return std::chrono::system_clock::now();
}

std::unique_ptr<Ticker> SimulatedClock::ticker(std::chrono::milliseconds interval) {
    return std::make_unique<MachineTicker>(root_.resolve(ClockWire::socketPath), interval);
}

} // namespace ventaro
