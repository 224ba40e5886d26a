#include "StopSignals.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace ventaro {

StopSignals::StopSignals() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction present {};
        ::sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN) {
            ::sigaddset(&signals, signal);
        }
    }
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_.reset(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!descriptor_) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
}

bool StopSignals::takeInterrupt() const {
    bool isInterrupt = false;
    signalfd_siginfo info{};
    while (::read(descriptor_.get(), &info, sizeof info) == sizeof info) {
        isInterrupt = isInterrupt || info.ssi_signo == SIGINT;
    }
    return isInterrupt;
}

} // namespace ventaro
