#include "LinuxClock.h"

#include "FileDescriptor.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace ventaro {

namespace {

class TimerTicker final : public Ticker {
public:
    explicit TimerTicker(FileDescriptor timer) : timer_(std::move(timer)) {}
    int descriptor() const override { return timer_.get(); }
    void acknowledge() override {
        std::uint64_t expirations = 0;
        [[maybe_unused]] const ssize_t count =
            ::read(timer_.get(), &expirations, sizeof expirations);
    }

private:
    FileDescriptor timer_;
};

/// Can be read every `interval`, first one interval from now.
FileDescriptor makeTimerDescriptor(std::chrono::milliseconds interval) {
    FileDescriptor timer(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(interval);
    const std::chrono::nanoseconds rest = interval - seconds;
    itimerspec times{};
    times.it_interval.tv_sec = seconds.count();
    times.it_interval.tv_nsec = rest.count();
    times.it_value = times.it_interval;
    if (!timer || ::timerfd_settime(timer.get(), 0, &times, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "timerfd");
    }
    return timer;
}

} // namespace

std::chrono::system_clock::time_point LinuxClock::now() const {
    return std::chrono::system_clock::now();
}

std::unique_ptr<Ticker> LinuxClock::ticker(std::chrono::milliseconds interval) {
    return std::make_unique<TimerTicker>(makeTimerDescriptor(interval));
}

} // namespace ventaro
