#pragma once

#include "Clock.h"
#include "Platform.h"

#include <memory>
#include <string>

namespace ventaro {

struct HostPlatform {
    Platform platform;
    /// Why a machine root named by the environment is not used; empty if there is nothing to say.
    std::string machineRootIgnoredBecause;
};

/// The platform of this process: the simulated MacBook that VENTARO_MACHINE_ROOT names, or else the
/// host itself. `privileged`: the process changes the machine as root, so that it follows only a
/// folder of root's. Throws std::invalid_argument if the variable names no folder.
HostPlatform makeHostPlatform(bool privileged);

/// The time of the machine of `platform`.
std::unique_ptr<Clock> makeHostClock(const Platform& platform);

} // namespace ventaro
