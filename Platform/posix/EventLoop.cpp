#include "EventLoop.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace ventaro {

void EventLoop::watch(int descriptor, Callback readable) {
    unwatch(descriptor);
    watches_.push_back({descriptor, std::make_shared<Callback>(std::move(readable))});
}

void EventLoop::unwatch(int descriptor) {
    std::erase_if(watches_,
                  [descriptor](const Watch& watch) { return watch.descriptor == descriptor; });
}

void EventLoop::after(std::chrono::milliseconds delay, Callback callback) {
    timers_.emplace(Clock::now() + delay, std::move(callback));
}

int EventLoop::millisecondsToWait(std::optional<std::chrono::milliseconds> patience) const {
    if (!timers_.empty()) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(timers_.begin()->first - Clock::now());
        patience = std::min(patience.value_or(left), left);
    }
    return patience
               ? static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, patience->count()))
               : -1;
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
    while (!isStopped_) {
        turn();
    }
}

bool EventLoop::turn(std::optional<std::chrono::milliseconds> patience) {
    std::vector<pollfd> pollSet;
    std::vector<std::weak_ptr<Callback>> callbacks;
    pollSet.reserve(watches_.size());
    callbacks.reserve(watches_.size());
    for (const Watch& watch : watches_) {
        pollSet.push_back({watch.descriptor, POLLIN, 0});
        callbacks.emplace_back(watch.readable);
    }
    const int ready =
        ::poll(pollSet.data(), static_cast<nfds_t>(pollSet.size()), millisecondsToWait(patience));
    if (ready < 0 && errno != EINTR) {
        throw std::system_error(errno, std::generic_category(), "poll");
    }
    turnBegan_ = Clock::now();
    isTurnOver_ = false;
    for (std::size_t index = 0; ready > 0 && index < pollSet.size() && !isTurnOver_; ++index) {
        // A callback may have ended the watch of a descriptor further on.
        const auto callback = callbacks[index].lock();
        if (pollSet[index].revents != 0 && callback) {
            (*callback)();
        }
    }
    callDueTimers();
    return ready > 0;
}

} // namespace ventaro
