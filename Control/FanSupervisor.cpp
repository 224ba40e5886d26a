#include "FanSupervisor.h"

#include <utility>

namespace ventaro {

FanSupervisor::Decision FanSupervisor::onReadout(double celsius) {
    if (profile_ == ControlProfile::smartCurve && !(celsius > 0)) {
        return std::exchange(state_, State::blind) == State::blind ? Decision::nothing
                                                                   : Decision::leaveAlone;
    }
    return std::exchange(state_, State::applied) == State::applied ? Decision::nothing
                                                                   : Decision::apply;
}

FanSupervisor::Decision FanSupervisor::onTick(bool doFansFollow, bool isHelperThere) {
    constexpr int patience = 3; // a request takes a moment to show
    ticksAstray_ = state_ == State::applied && !doFansFollow ? ticksAstray_ + 1 : 0;
    if (ticksAstray_ < patience || !isHelperThere) {
        return Decision::nothing;
    }
    ticksAstray_ = 0;
    return Decision::apply;
}

} // namespace ventaro
