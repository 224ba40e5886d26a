#pragma once

#include "MachineRoot.h"
#include "UserSession.h"

namespace ventaro {

/// The session of the one user of the simulated MacBook whose root is `root`. Its running
/// applications are the host's processes that run on this machine.
UserSession makeSimulatedSession(const MachineRoot& root);

} // namespace ventaro
