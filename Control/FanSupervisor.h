#pragma once

#include "ControlProfile.h"

namespace ventaro {

/// Decides, step by step, when a profile that somebody has asked for is to be applied: once the
/// temperatures are known, again when the fans do not do what they were asked to, and not while a
/// curve has no temperature to go by. A plain value; it waits for nothing and asks nobody.
class FanSupervisor {
public:
    enum class Decision {
        nothing,
        apply,      ///< the profile
        leaveAlone, ///< to the automatic control: the curve's temperature is not known
    };

    explicit FanSupervisor(ControlProfile profile) : profile_(profile) {}

    ControlProfile profile() const { return profile_; }
    /// After each readout. `celsius`: the temperature of the curve's source; 0 and what is not a
    /// number stand for a sensor that does not answer.
    Decision onReadout(double celsius);
    /// After each tick. `doFansFollow`: what was read back last; `isHelperThere`: somebody would
    /// carry a request out.
    Decision onTick(bool doFansFollow, bool isHelperThere);

private:
    enum class State { starting, applied, blind };

    ControlProfile profile_;
    State state_ = State::starting;
    int ticksAstray_ = 0; ///< in a row
};

} // namespace ventaro
