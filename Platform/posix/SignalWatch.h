#pragma once

#include "SystemCalls.h"

#include <csignal>
#include <map>
#include <optional>
#include <vector>

namespace ventaro {

/// Takes signals as something to be read. One at a time in a process; any thread may be interrupted
/// by them, none is ended.
class SignalWatch {
public:
    struct Arrival {
        int signal;
        bool isFromKernel; ///< such as Ctrl-C at the terminal: no process has sent it
    };

    /// Leaves those of `signals` alone that whoever started this program has it ignore. Throws
    /// std::system_error if the process is out of descriptors.
    explicit SignalWatch(const std::vector<int>& signals);
    /// What the signals did before, they do again.
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    /// Can be read once a signal has come.
    int descriptor() const { return pipe_.reading.get(); }
    /// The next one that has come; no value if there is none.
    std::optional<Arrival> take() const;
    /// Whether one has come, taken or not. Any thread.
    static bool hasArrival();

private:
    const Pipe pipe_;
    std::map<int, struct sigaction> before_;
};

/// The signals that end a program: SIGINT, SIGTERM, SIGHUP, SIGQUIT.
class StopSignals : public SignalWatch {
public:
    StopSignals() : SignalWatch({SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {}
    /// Takes all that have come; whether Ctrl-C was among them.
    bool takeInterrupt() const;
};

} // namespace ventaro
