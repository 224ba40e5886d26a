#include "SimulatedClock.h"

#include "ClockWire.h"
#include "SystemCalls.h"
#include "UnixSocket.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace ventaro {

namespace {

class MachineTicker final : public Ticker {
public:
    MachineTicker(std::filesystem::path socketPath, std::chrono::milliseconds interval, Clock& host)
        : socketPath_(std::move(socketPath)), interval_(interval), host_(host) {
        // Whoever waits on the descriptor keeps its number, whatever stands behind it.
        followHost();
        followMachine();
    }

    int descriptor() const override { return source_.get(); }

    void acknowledge() override {
        if (hostTicker_) {
            hostTicker_->acknowledge();
            followMachine();
            return;
        }
        std::array<char, 64> bytes;
        ssize_t count = 0;
        do {
            count = ::read(source_.get(), bytes.data(), bytes.size());
        } while (count > 0);
        if (count == 0) {
            followHost(); // the machine has been switched off
        }
    }

private:
    void followMachine() {
        constexpr std::chrono::seconds patience(1);
        const FileDescriptor socket = connectToUnixSocket(socketPath_, patience);
        const auto interval = static_cast<ClockWire::Interval>(interval_.count());
        if (socket && ::send(socket.get(), &interval, sizeof interval, MSG_NOSIGNAL) > 0) {
            ::fcntl(socket.get(), F_SETFL, O_NONBLOCK);
            duplicateOnto(socket.get(), source_.get());
            hostTicker_.reset();
        }
    }

    void followHost() {
        hostTicker_ = host_.ticker(interval_);
        if (!source_) {
            source_ = makePipe(Blocking::no).reading;
        }
        if (!source_) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        duplicateOnto(hostTicker_->descriptor(), source_.get());
    }

    const std::filesystem::path socketPath_;
    const std::chrono::milliseconds interval_;
    Clock& host_;
    std::unique_ptr<Ticker> hostTicker_; ///< null while the machine tells the time
    FileDescriptor source_;
};

} // namespace

std::chrono::system_clock::time_point SimulatedClock::now() const { return host_->now(); }

std::unique_ptr<Ticker> SimulatedClock::ticker(std::chrono::milliseconds interval) {
    return std::make_unique<MachineTicker>(root_.resolve(ClockWire::socketPath), interval, *host_);
}

} // namespace ventaro
