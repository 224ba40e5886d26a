#include "HostSession.h"

#include "LinuxClock.h"
#include "LinuxSession.h"
#include "ProcessTable.h"
#include "SimulatedSession.h"

namespace ventaro {

std::shared_ptr<UserSession> makeHostSession(const Platform& platform) {
    const MachineRoot& root = platform.machineRoot;
    return std::make_shared<UserSession>(
        platform.machineKind == MachineKind::simulated
            ? makeSimulatedSession(root, std::make_unique<LinuxClock>(),
                                   std::make_unique<ProcessTable>(root))
            : makeLinuxSession());
}

} // namespace ventaro
