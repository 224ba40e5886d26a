#include "EventLoop.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

namespace ventaro {

void EventLoop::watch(int descriptor, Callback readable) {
    watches_[descriptor] = std::make_shared<Callback>(std::move(readable));
}

void EventLoop::unwatch(int descriptor) { watches_.erase(descriptor); }

void EventLoop::after(std::chrono::milliseconds delay, Callback callback) {
    timers_.emplace(Clock::now() + delay, std::move(callback));
}

int EventLoop::millisecondsToNextTimer() const {
    if (timers_.empty()) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(timers_.begin()->first - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

void EventLoop::callDueTimers() {
    const auto now = Clock::now();
    while (!timers_.empty() && timers_.begin()->first <= now) {
        const Callback callback = std::move(timers_.begin()->second);
        timers_.erase(timers_.begin());
        callback();
    }
}

void EventLoop::run() {
    while (!stopped_) {
        std::vector<pollfd> pollSet;
        std::vector<std::weak_ptr<Callback>> callbacks;
        for (const auto& [descriptor, callback] : watches_) {
            pollSet.push_back({descriptor, POLLIN, 0});
            callbacks.emplace_back(callback);
        }
        const int ready =
            ::poll(pollSet.data(), static_cast<nfds_t>(pollSet.size()), millisecondsToNextTimer());
        if (ready < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "poll");
        }
        for (std::size_t index = 0; ready > 0 && index < pollSet.size(); ++index) {
            // A callback may have ended the watch of a descriptor further on.
            const auto callback = callbacks[index].lock();
            if (pollSet[index].revents != 0 && callback) {
                (*callback)();
            }
        }
        callDueTimers();
    }
}

} // namespace ventaro
