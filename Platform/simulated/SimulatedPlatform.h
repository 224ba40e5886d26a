#pragma once

#include "Platform.h"

namespace ventaro {

/// The platform of a process on the simulated MacBook whose root is `root`. Its console user is the
/// owner of the root folder; it writes fan keys if its environment hands it the root socket.
Platform makeSimulatedPlatform(MachineRoot root);

} // namespace ventaro
