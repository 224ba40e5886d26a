#include "HostSession.h"

#include "LinuxSession.h"
#include "SimulatedSession.h"

namespace ventaro {

std::unique_ptr<UserSession> makeHostSession(const Platform& platform) {
    return std::make_unique<UserSession>(platform.machineKind == MachineKind::simulated
                                             ? makeSimulatedSession(platform.machineRoot)
                                             : makeLinuxSession());
}

} // namespace ventaro
