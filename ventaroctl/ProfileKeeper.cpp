#include "ProfileKeeper.h"

#include "FanTargets.h"

namespace ventaro {

ProfileKeeper::ProfileKeeper(FanControllerViewModel& controller, ControlProfile profile,
                             const ChangeLog& log)
    : controller_(controller), supervisor_(profile), log_(log) {
    QObject::connect(&controller_, &FanControllerViewModel::historyChanged, &context_,
                     [this] { onReadout(); });
    QObject::connect(&controller_, &FanControllerViewModel::tickCountChanged, &context_,
                     [this] { onTick(); });
}

void ProfileKeeper::onReadout() {
    const TelemetrySample& sample = controller_.history().back();
    carryOut(supervisor_.onReadout(
        temperatureOf(controller_.curveSensorSource(), sample.cpuTemp, sample.gpuTemp)));
}

void ProfileKeeper::onTick() {
    carryOut(supervisor_.onTick(doFansFollow(controller_.fans(), controller_.lastAppliedRPMs()),
                                controller_.isHelperInstalled()));
}

void ProfileKeeper::carryOut(FanSupervisor::Decision decision) {
    switch (decision) {
    case FanSupervisor::Decision::nothing:
        return;
    case FanSupervisor::Decision::apply:
        controller_.selectProfile(supervisor_.profile());
        return;
    case FanSupervisor::Decision::leaveAlone:
        log_.line(JsonObjectWriter().string("event", "blind"),
                  "The curve's temperature cannot be read; the fans are left to the automatic "
                  "control until it can.");
        controller_.selectProfile(ControlProfile::systemAuto);
    }
}

} // namespace ventaro
