#include "SignalWatch.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace ventaro {

namespace {

volatile sig_atomic_t hasCome = 0;
volatile sig_atomic_t writingEnd = -1;

void onSignal(int signal, siginfo_t* info, void* /*context*/) {
    const int kept = errno;
    hasCome = 1;
    // What the kernel sends by itself comes from no process. A full pipe tells all there is to say.
    const std::array<char, 2> arrival{static_cast<char>(signal), info->si_pid == 0 ? '1' : '0'};
    [[maybe_unused]] const ssize_t written = ::write(writingEnd, arrival.data(), arrival.size());
    errno = kept;
}

} // namespace

SignalWatch::SignalWatch(const std::vector<int>& signals) : pipe_(makePipe(Blocking::no)) {
    if (!pipe_.reading) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    hasCome = 0;
    writingEnd = pipe_.writing.get();
    struct sigaction action {};
    action.sa_sigaction = onSignal;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    for (const int signal : signals) {
        struct sigaction present {};
        ::sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
            before_.emplace(signal, present);
        }
    }
}

SignalWatch::~SignalWatch() {
    for (const auto& [signal, action] : before_) {
        ::sigaction(signal, &action, nullptr);
    }
    writingEnd = -1;
}

std::optional<SignalWatch::Arrival> SignalWatch::take() const {
    std::array<char, 2> arrival{};
    if (::read(pipe_.reading.get(), arrival.data(), arrival.size()) !=
        static_cast<ssize_t>(arrival.size())) {
        return std::nullopt;
    }
    return Arrival{arrival[0], arrival[1] == '1'};
}

bool SignalWatch::hasArrival() { return hasCome != 0; }

bool StopSignals::takeInterrupt() const {
    bool isInterrupt = false;
    while (const auto arrival = take()) {
        isInterrupt = isInterrupt || arrival->signal == SIGINT;
    }
    return isInterrupt;
}

} // namespace ventaro
