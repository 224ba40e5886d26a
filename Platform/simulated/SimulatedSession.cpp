#include "SimulatedSession.h"

#include "FileDefaults.h"
#include "SimulatedAdministratorScripts.h"
#include "SimulatedClock.h"
#include "SimulatedHostInformation.h"
#include "SystemCalls.h"

namespace ventaro {

UserSession makeSimulatedSession(const MachineRoot& root, std::unique_ptr<Clock> hostClock,
                                 std::unique_ptr<RunningApplications> runningApplications) {
    const std::filesystem::path home = root.resolve("/Users/ventaro");
    UserSession session;
    session.bundle.executable = executablePath();
    session.loginItem = {LoginMechanism::launchAgent,
                         home / "Library/LaunchAgents/com.ventaro.app.plist"};
    session.windowSizeFile = home / "Library/Preferences/com.ventaro.app.window-size";
    session.clock = std::make_unique<SimulatedClock>(root, std::move(hostClock));
    session.defaults =
        std::make_unique<FileDefaults>(home / "Library/Preferences/com.ventaro.app.cbor");
    session.administratorScripts = std::make_unique<SimulatedAdministratorScripts>(root);
    session.hostInformation = std::make_unique<SimulatedHostInformation>(root);
    session.runningApplications = std::move(runningApplications);
    return session;
}

} // namespace ventaro
