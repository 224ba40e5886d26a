#include "HostPlatform.h"

#include "LinuxPlatform.h"
#include "MachineRootChoice.h"
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

} // namespace ventaro
