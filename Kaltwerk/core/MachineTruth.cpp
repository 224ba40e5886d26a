#include "MachineTruth.h"

#include "SensorCatalog.h"
#include "StoredField.h"
#include "TelemetryReadout.h"

#include <algorithm>

namespace ventaro {

void MachineTruth::onTick(std::int64_t tick) {
    constexpr std::int64_t secondsPerTick = 2;
    constexpr std::int64_t oldest = 6; // seconds
    const std::int64_t age = (tick - lastReadout_) * secondsPerTick;
    store(this, staleSeconds_, age > oldest ? static_cast<int>(age) : 0,
          &MachineTruth::staleSecondsChanged);
}

void MachineTruth::onReadout(const TelemetryReadout& readout, std::int64_t tick) {
    lastReadout_ = tick;
    onTick(tick);
    temperatures_.see(readout.cpuCelsius, readout.gpuCelsius, tick);
    // What reads again is shown at once; the fans follow it only when it can be trusted. And what
    // they follow meanwhile need not be the figure that is shown.
    store(this, isCpuKnown_,
          readout.cpuCelsius && isPlausibleTemperature(readout.summary.cpuTemperature),
          &MachineTruth::isCpuKnownChanged);
    store(this, isGpuKnown_,
          readout.gpuCelsius && isPlausibleTemperature(readout.summary.gpuTemperature),
          &MachineTruth::isGpuKnownChanged);
    store(this, isSmcLost_, !readout.hasSmcAnswered(), &MachineTruth::isSmcLostChanged);
    const bool isAnyForced =
        std::any_of(readout.readBacks.begin(), readout.readBacks.end(),
                    [](const FanReadBack& fan) { return fan.hold == FanHold::forced; });
    forcedReadouts_ = isAnyForced ? forcedReadouts_ + 1 : 0;
}

void MachineTruth::judge(ControlProfile activeProfile, const FanSupervisor& supervisor) {
    constexpr int enough = 2; // readouts: a hand-back takes a moment to show
    using Wish = FanSupervisor::Wish;
    const Wish wish = supervisor.wish();
    const bool isForeign = wish == Wish::none && forcedReadouts_ >= enough;
    const Wish expected = activeProfile == ControlProfile::systemAuto   ? Wish::automatic
                          : activeProfile == ControlProfile::smartCurve ? Wish::curve
                                                                        : Wish::speeds;
    const bool isConfirmedAutomatic = expected == Wish::automatic && wish == Wish::none;
    store(this, areFansForcedByOthers_, isForeign, &MachineTruth::areFansForcedByOthersChanged);
    store(this, isProfileInForce_,
          isConfirmedAutomatic ? !isForeign : wish == expected && supervisor.isInForce(),
          &MachineTruth::isProfileInForceChanged);
}

} // namespace ventaro
