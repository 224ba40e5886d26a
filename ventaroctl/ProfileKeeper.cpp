#include "ProfileKeeper.h"

#include "FanRange.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

ProfileKeeper::ProfileKeeper(FanControllerViewModel& controller, ControlProfile profile,
                             const ChangeLog& log)
    : controller_(controller), profile_(profile), log_(log) {
    QObject::connect(&controller_, &FanControllerViewModel::historyChanged, &context_,
                     [this] { onTelemetry(); });
    QObject::connect(&controller_, &FanControllerViewModel::tickCountChanged, &context_,
                     [this] { onTick(); });
}

void ProfileKeeper::onTelemetry() {
    if (isBlind()) {
        if (std::exchange(state_, State::blind) != State::blind) {
            log_.line(JsonObjectWriter().string("event", "blind"),
                      "The curve's temperature cannot be read; the fans are left to the automatic "
                      "control until it can.");
            controller_.selectProfile(ControlProfile::systemAuto);
        }
    } else if (std::exchange(state_, State::applied) != State::applied) {
        controller_.selectProfile(profile_);
    }
}

void ProfileKeeper::onTick() {
    constexpr int patience = 3; // a request takes a moment to show
    ticksAstray_ = state_ == State::applied && !doFansFollow() ? ticksAstray_ + 1 : 0;
    if (ticksAstray_ >= patience && controller_.isHelperInstalled()) {
        ticksAstray_ = 0;
        controller_.selectProfile(profile_);
    }
}

bool ProfileKeeper::isBlind() const {
    const TelemetrySample& sample = controller_.history().back();
    // 0 stands for a sensor that does not answer.
    return profile_ == ControlProfile::smartCurve &&
           !(temperatureOf(controller_.curveSensorSource(), sample.cpuTemp, sample.gpuTemp) > 0);
}

bool ProfileKeeper::doFansFollow() const {
    constexpr double tolerance = 1; // RPM; older SMCs count in quarters
    const auto& targets = controller_.lastAppliedRPMs();
    return std::all_of(targets.begin(), targets.end(), [&](const auto& target) {
        const FanReading* fan = findFan(controller_.fans(), target.first);
        const double wanted =
            fan != nullptr ? std::min(fan->maxRPM, std::max(fan->minRPM, target.second)) : 0;
        return fan == nullptr ||
               (fan->mode == FanMode::forced && std::abs(fan->targetRPM - wanted) <= tolerance);
    });
}

} // namespace ventaro
