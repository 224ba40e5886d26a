#pragma once

#include "ChangeLog.h"
#include "FanControllerViewModel.h"
#include "FanSupervisor.h"

namespace ventaro {

/// Stands in for the user of a controller without a window: carries out what a `FanSupervisor`
/// decides. Main thread only.
class ProfileKeeper {
public:
    /// Both must outlive the keeper.
    ProfileKeeper(FanControllerViewModel& controller, ControlProfile profile, const ChangeLog& log);

private:
    void onReadout();
    void onTick();
    void carryOut(FanSupervisor::Decision decision);

    FanControllerViewModel& controller_;
    FanSupervisor supervisor_;
    const ChangeLog& log_;
    QObject context_;
};

} // namespace ventaro
