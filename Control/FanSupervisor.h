#pragma once

#include "FanReadBack.h"
#include "FanTargets.h"
#include "SteeringTemperatures.h"

#include <cstdint>
#include <optional>
#include <span>

namespace ventaro {

/// Decides what is sent to the fans next: from what its process was asked for last, from what the
/// fans have been read to do since, and from whether the curve can see its temperature. A plain
/// value that is told of every request and of every readout; its time are the ticks of the loop,
/// two seconds each.
class FanSupervisor {
public:
    /// What this process was asked for. A start asks for nothing, and a hand-back that the fans
    /// have confirmed leaves nothing to be wished: whoever forces them then is let alone.
    enum class Wish { none, automatic, speeds, curve };

    enum class Action {
        nothing,
        sendTargets, ///< those of `targets`, without a word
        sendReset,   ///< of all fans, without a word
        stepCurve,   ///< have the curve's speeds set, whether or not they have moved
    };

    /// What the user is told.
    enum class Notice {
        none,
        blind,          ///< the curve's temperature is lost, the fans are given back until it reads
        seeing,         ///< it reads again
        unfollowed,     ///< the fans do not do what they were asked to, again and again
        followed,       ///< in the end they do
        guardEndsSpeed, ///< the helper's guard has freed the fans; a new choice is needed
        guardPausesCurve, ///< the same, and the curve goes on once the guard lets it
        guardEndsCurve,   ///< the same soon after it went on
    };

    struct Step {
        Action action = Action::nothing;
        Notice notice = Notice::none;

        bool operator==(const Step&) const = default;
    };

    struct Readout {
        std::uint64_t number = 0; ///< of its begin: readouts are counted from 1
        std::int64_t tick = 0;
        /// The temperature that the curve follows.
        TemperatureTrust::State source = TemperatureTrust::State::known;
        std::span<const FanReadBack> fans;
        bool isHelperThere = true;
        bool isGuardUp = false; ///< the helper's guard refuses low speeds
    };

    enum class Outcome {
        ended,          ///< well or not: the fans themselves tell
        refusedByGuard, ///< for the machine is too hot for what was asked
    };

    /// Asks for the automatic control; the request is on its way.
    void wishAutomatic() { wish(Wish::automatic, std::nullopt); }
    /// Asks for constant speeds, in RPM by fan index; the request is on its way.
    void wishSpeeds(const FanTargets& targets) { wish(Wish::speeds, targets); }
    /// Asks for the curve. Unless its temperature is known, its first speeds wait until it is.
    void wishCurve(bool isSourceKnown);
    /// Has the fans follow the curve to new targets; the request is on its way.
    void steer(const FanTargets& targets);

    Wish wish() const { return wish_; }
    /// Whether the curve may not steer at the moment.
    bool isCurveHeld() const { return wish_ == Wish::curve && curve_ != Curve::steering; }
    /// Whether the fans do what was wished, as far as that has been read; true with no wish.
    bool isInForce() const;
    /// What the fans have been asked for last; empty if that is the automatic control.
    const FanTargets& targets() const { return targets_; }

    /// How the newest request ended. Readouts count from now on, except those that have begun:
    /// `begunReadouts` is the number of the last.
    Step onOutcome(Outcome outcome, std::int64_t tick, std::uint64_t begunReadouts);
    Step onReadout(const Readout& readout);

private:
    enum class Curve {
        waiting,  ///< for its temperature to be known for the first time
        steering, ///< as told
        blind,
        paused, ///< by the guard
        ended,  ///< by the guard
    };
    enum class Goal { none, automatic, targets };

    void wish(Wish wish, const std::optional<FanTargets>& targets);
    void pursue(Goal goal);
    std::optional<Step> onSource(const Readout& readout);
    Step onGuard(std::int64_t tick);
    bool doFansFollow(std::span<const FanReadBack> fans) const;
    Step onFollowed();
    Step onAstray(const Readout& readout);

    Wish wish_ = Wish::none;
    Curve curve_ = Curve::waiting;
    Goal goal_ = Goal::none;
    FanTargets targets_;
    std::optional<std::int64_t> guardedAt_; ///< the tick of the guard's last intervention

    bool isUnderWay_ = false;
    std::uint64_t judgedAfter_ = 0; ///< readouts up to this one began before the answer
    int astray_ = 0;                ///< readouts in a row since the last request
    bool isAstray_ = false;         ///< the fans were last found not to follow
    int inVain_ = 0;                ///< requests in a row that did not help
    std::int64_t lastTry_ = 0;      ///< a tick
    bool isToldUnfollowed_ = false;
};

} // namespace ventaro
