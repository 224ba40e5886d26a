#include "FanSupervisor.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ventaro {

namespace {

constexpr int patience = 2;                // readouts; a write takes a moment to show
constexpr int quickTries = 5;              // before it is told, and tried more slowly
constexpr std::int64_t slowPace = 5;       // ticks: 10 s
constexpr std::int64_t guardMemory = 1800; // ticks: an hour

bool isFollowed(const FanReadBack& fan, double target) {
    constexpr double tolerance = 1; // RPM; older SMCs count in quarters
    switch (fan.hold) {
    case FanHold::automatic:
        return false;
    case FanHold::unread:
        return true; // which nobody can tell
    case FanHold::forced:
    case FanHold::untold:
        return !fan.targetRPM || std::abs(*fan.targetRPM - fan.range.limited(target)) <= tolerance;
    }
    return false;
}

} // namespace

void FanSupervisor::pursue(Goal goal) {
    goal_ = goal;
    astray_ = 0;
    isAstray_ = false;
    inVain_ = 0;
    isUnderWay_ = goal != Goal::none;
}

void FanSupervisor::wish(Wish wish, const std::optional<FanTargets>& targets) {
    wish_ = wish;
    targets_ = targets.value_or(FanTargets());
    curve_ = Curve::waiting;
    guardedAt_.reset();
    isToldUnfollowed_ = false;
    pursue(targets ? Goal::targets : wish == Wish::automatic ? Goal::automatic : Goal::none);
}

void FanSupervisor::wishCurve(bool isSourceKnown) {
    wish(Wish::curve, std::nullopt);
    curve_ = isSourceKnown ? Curve::steering : Curve::waiting;
}

void FanSupervisor::steer(const FanTargets& targets) {
    wish_ = Wish::curve;
    curve_ = Curve::steering;
    targets_ = targets;
    goal_ = Goal::targets;
    astray_ = 0;
    isUnderWay_ = true;
}

bool FanSupervisor::isInForce() const {
    return !isAstray_ && (wish_ != Wish::curve || curve_ == Curve::steering);
}

FanSupervisor::Step FanSupervisor::onOutcome(Outcome outcome, std::int64_t tick,
                                             std::uint64_t begunReadouts) {
    isUnderWay_ = false;
    judgedAfter_ = begunReadouts;
    return outcome == Outcome::refusedByGuard && goal_ == Goal::targets ? onGuard(tick) : Step();
}

FanSupervisor::Step FanSupervisor::onGuard(std::int64_t tick) {
    pursue(Goal::none);
    targets_.clear();
    if (wish_ != Wish::curve) {
        wish_ = Wish::none;
        return {Action::nothing, Notice::guardEndsSpeed};
    }
    const auto previous = std::exchange(guardedAt_, tick);
    const bool isSecond = previous && tick - *previous < guardMemory;
    curve_ = isSecond ? Curve::ended : Curve::paused;
    return {Action::nothing, isSecond ? Notice::guardEndsCurve : Notice::guardPausesCurve};
}

FanSupervisor::Step FanSupervisor::onReadout(const Readout& readout) {
    if (const auto step = onSource(readout)) {
        return *step;
    }
    if (goal_ == Goal::none || isUnderWay_ || readout.number <= judgedAfter_) {
        return {};
    }
    return doFansFollow(readout.fans) ? onFollowed() : onAstray(readout);
}

std::optional<FanSupervisor::Step> FanSupervisor::onSource(const Readout& readout) {
    if (wish_ != Wish::curve || curve_ == Curve::ended) {
        return std::nullopt;
    }
    using State = TemperatureTrust::State;
    const bool isLost = readout.source == State::lost;
    if (isLost && curve_ != Curve::blind && curve_ != Curve::paused) {
        curve_ = Curve::blind;
        targets_.clear();
        pursue(Goal::automatic);
        return Step{Action::sendReset, Notice::blind};
    }
    const bool isReady = readout.source == State::known && curve_ != Curve::steering &&
                         !(curve_ == Curve::paused && readout.isGuardUp);
    if (!isReady) {
        return std::nullopt;
    }
    const bool wasBlind = std::exchange(curve_, Curve::steering) == Curve::blind;
    return Step{Action::stepCurve, wasBlind ? Notice::seeing : Notice::none};
}

bool FanSupervisor::doFansFollow(std::span<const FanReadBack> fans) const {
    return std::all_of(fans.begin(), fans.end(), [this](const FanReadBack& fan) {
        if (goal_ == Goal::automatic) {
            return fan.hold == FanHold::automatic || fan.hold == FanHold::untold;
        }
        const auto target = targets_.find(fan.fan);
        return target == targets_.end() || isFollowed(fan, target->second);
    });
}

FanSupervisor::Step FanSupervisor::onFollowed() {
    astray_ = 0;
    isAstray_ = false;
    inVain_ = 0;
    if (goal_ == Goal::automatic) {
        goal_ = Goal::none;
        if (wish_ == Wish::automatic) {
            wish_ = Wish::none;
        }
    }
    return {Action::nothing,
            std::exchange(isToldUnfollowed_, false) ? Notice::followed : Notice::none};
}

FanSupervisor::Step FanSupervisor::onAstray(const Readout& readout) {
    if (++astray_ < patience) {
        return {};
    }
    isAstray_ = true;
    if (!readout.isHelperThere) {
        return {};
    }
    const bool isTired = inVain_ >= quickTries;
    const auto notice =
        isTired && !std::exchange(isToldUnfollowed_, true) ? Notice::unfollowed : Notice::none;
    if (isTired && readout.tick - lastTry_ < slowPace) {
        return {Action::nothing, notice};
    }
    ++inVain_;
    lastTry_ = readout.tick;
    astray_ = 0;
    isUnderWay_ = true;
    return {goal_ == Goal::automatic ? Action::sendReset : Action::sendTargets, notice};
}

} // namespace ventaro
