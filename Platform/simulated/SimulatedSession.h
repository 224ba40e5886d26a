#pragma once

#include "MachineRoot.h"
#include "UserSession.h"

namespace ventaro {

/// The session of the one user of the simulated MacBook whose root is `root`. `hostClock` tells the
/// time while the machine is off; `runningApplications` are those that run on this machine.
UserSession makeSimulatedSession(const MachineRoot& root, std::unique_ptr<Clock> hostClock,
                                 std::unique_ptr<RunningApplications> runningApplications);

} // namespace ventaro
