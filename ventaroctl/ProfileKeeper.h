#pragma once

#include "ChangeLog.h"
#include "FanControllerViewModel.h"

namespace ventaro {

/// Stands in for the user of a controller without a window: applies the profile once the
/// temperatures are known, again when the fans do not do what they were asked to, and lets the
/// automatic control take over while a curve has no temperature to go by. Main thread only.
class ProfileKeeper {
public:
    /// Both must outlive the keeper.
    ProfileKeeper(FanControllerViewModel& controller, ControlProfile profile, const ChangeLog& log);

private:
    void onTelemetry();
    void onTick();
    /// Whether a curve is to be followed whose temperature cannot be read.
    bool isBlind() const;
    bool doFansFollow() const;

    FanControllerViewModel& controller_;
    const ControlProfile profile_;
    const ChangeLog& log_;
    enum class State { starting, applied, blind } state_ = State::starting;
    int ticksAstray_ = 0; ///< in a row
    QObject context_;
};

} // namespace ventaro
