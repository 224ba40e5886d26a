#include "FanRelease.h"

#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

std::chrono::seconds pauseAfter(int vainTries) {
    constexpr std::chrono::seconds longest(10);
    return vainTries < 4 ? std::chrono::seconds(1U << static_cast<unsigned>(vainTries)) : longest;
}

} // namespace

std::vector<FanRelease::Fan> FanRelease::fans(int count) {
    std::vector<Fan> fans;
    for (int index = 0; index < count; ++index) {
        fans.push_back({index, SMCService::fanName(index, count)});
    }
    return fans;
}

std::optional<std::string> FanRelease::release(std::span<const Fan> fans) {
    std::vector<Pending> asked;
    for (const Fan& fan : fans) {
        forget(fan.index);
        write(asked.emplace_back(Pending{fan}));
    }
    std::optional<std::string> failure;
    for (Pending& each : asked) {
        const bool wasWritten = each.isWritten;
        const bool isAutomatic = confirm(each);
        if (!isAutomatic) {
            log_.error("fan " + std::to_string(each.fan.index) +
                       " is not known to be automatic; going on");
            failure = each.failure;
            pending_.push_back(std::move(each));
        } else if (!wasWritten) {
            failure = each.failure;
        }
    }
    return failure;
}

bool FanRelease::releaseLater(std::span<const Fan> fans) {
    const std::size_t before = pending_.size();
    for (const Fan& fan : fans) {
        if (std::none_of(pending_.begin(), pending_.end(),
                         [&](const Pending& each) { return each.fan.index == fan.index; })) {
            pending_.push_back({fan});
        }
    }
    return pending_.size() > before;
}

void FanRelease::forget(int fan) {
    std::erase_if(pending_, [fan](const Pending& pending) { return pending.fan.index == fan; });
}

std::vector<FanRelease::Pending>::const_iterator FanRelease::next() const {
    return std::min_element(pending_.begin(), pending_.end(),
                            [](const auto& one, const auto& other) { return one.due < other.due; });
}

std::optional<FanRelease::Clock::time_point> FanRelease::due() const {
    return pending_.empty() ? std::nullopt : std::optional(next()->due);
}

void FanRelease::step() {
    if (pending_.empty()) {
        return;
    }
    Pending& pending = pending_[static_cast<std::size_t>(next() - pending_.cbegin())];
    if (!pending.isWritten) {
        write(pending);
    } else if (confirm(pending)) {
        log_.change("fan " + std::to_string(pending.fan.index) + " back to automatic after all");
        forget(pending.fan.index);
        return;
    }
    pending.due = Clock::now();
    if (!pending.isWritten) {
        pending.due += pauseAfter(pending.vainTries++);
    }
}

void FanRelease::write(Pending& pending) const {
    try {
        smc_.resetFanToAutomatic(pending.fan.index);
        pending.isWritten = true;
    } catch (const SMCError& error) {
        pending.failure = error.errorDescription();
    }
}

bool FanRelease::confirm(Pending& pending) const {
    const bool wasWritten = std::exchange(pending.isWritten, false);
    const auto isForced = smc_.readFanForced(pending.fan.index);
    if (wasWritten && isForced) {
        pending.failure = pending.fan.name + " ist weiterhin auf eine feste Drehzahl gestellt.";
    } else if (wasWritten) {
        pending.failure =
            "Ob " + pending.fan.name + " auf macOS-Automatik ist, kann nicht gelesen werden.";
    }
    return isForced == false;
}

} // namespace ventaro
