#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace ventaro {

/// A loop around `poll` with callbacks for descriptors and for times; while there is nothing to do
/// nothing wakes it up. One thread.
class EventLoop {
public:
    using Clock = std::chrono::steady_clock;
    using Callback = std::function<void()>;

    /// Calls `readable` whenever `descriptor` can be read or its other end is gone, until
    /// `unwatch`. In each turn the descriptors come in the order in which they were first watched.
    void watch(int descriptor, Callback readable);
    void unwatch(int descriptor);
    /// Calls `callback` once, after `delay` of the host's time.
    void after(std::chrono::milliseconds delay, Callback callback);

    /// Runs until `stop`, not at all if that came first.
    void run();
    void stop() { isStopped_ = true; }
    bool isStopped() const { return isStopped_; }

    /// Waits once, for at most `patience` (no value: without a limit), and calls back for what has
    /// come. Whether a descriptor was among it. Throws std::system_error if it cannot wait.
    bool turn(std::optional<std::chrono::milliseconds> patience = {});
    /// When the last wait was over.
    Clock::time_point turnBegan() const { return turnBegan_; }
    /// Leaves what the current turn has not come to for the next one.
    void endTurn() { isTurnOver_ = true; }

private:
    struct Watch {
        int descriptor;
        std::shared_ptr<Callback> readable;
    };

    void callDueTimers();
    int millisecondsToWait(std::optional<std::chrono::milliseconds> patience) const;

    std::vector<Watch> watches_;
    std::multimap<Clock::time_point, Callback> timers_;
    Clock::time_point turnBegan_ = Clock::now();
    bool isTurnOver_ = false;
    bool isStopped_ = false;
};

} // namespace ventaro
