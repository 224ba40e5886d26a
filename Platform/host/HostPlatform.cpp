#include "HostPlatform.h"

#include "LinuxClock.h"
#include "LinuxPlatform.h"
#include "MachineRootChoice.h"
#include "SimulatedClock.h"
#include "SimulatedPlatform.h"

#include <cstdlib>

namespace ventaro {

HostPlatform makeHostPlatform(bool privileged) {
    auto choice = chooseMachineRoot(std::getenv(MachineRoot::environmentVariable), privileged);
    HostPlatform host;
    host.machineRootIgnoredBecause = std::move(choice.ignoredBecause);
    host.platform = choice.simulated ? makeSimulatedPlatform(std::move(*choice.simulated))
                                     : makeLinuxPlatform();
    return host;
}

std::unique_ptr<Clock> makeHostClock(const Platform& platform) {
    auto host = std::make_unique<LinuxClock>();
    if (platform.machineKind != MachineKind::simulated) {
        return host;
    }
    return std::make_unique<SimulatedClock>(platform.machineRoot, std::move(host));
}

} // namespace ventaro
