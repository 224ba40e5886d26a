#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace ventaro {

/// A loop around `poll` with callbacks for descriptors and for times. One thread.
class EventLoop {
public:
    using Callback = std::function<void()>;

    /// Calls `readable` whenever `descriptor` can be read or its other end is gone, until
    /// `unwatch`.
    void watch(int descriptor, Callback readable);
    void unwatch(int descriptor);
    /// Calls `callback` once, after `delay` of the host's time.
    void after(std::chrono::milliseconds delay, Callback callback);

    /// Runs until `stop`, not at all if that came first.
    void run();
    void stop() { stopped_ = true; }

private:
    using Clock = std::chrono::steady_clock;

    void callDueTimers();
    int millisecondsToNextTimer() const;

    std::map<int, std::shared_ptr<Callback>> watches_;
    std::multimap<Clock::time_point, Callback> timers_;
    bool stopped_ = false;
};

} // namespace ventaro
