#include "SimulatedSession.h"

#include "FileDefaults.h"
#include "LinuxSession.h"
#include "ProcessTable.h"
#include "SimulatedAdministratorScripts.h"
#include "SimulatedClock.h"
#include "SimulatedHostInformation.h"

namespace ventaro {

UserSession makeSimulatedSession(const MachineRoot& root) {
    const std::filesystem::path home = root.resolve("/Users/ventaro");
    UserSession session;
    session.bundle = currentBundle();
    session.loginItem = {LoginMechanism::launchAgent,
                         home / "Library/LaunchAgents/com.ventaro.app.plist"};
    session.windowSizeFile = home / "Library/Preferences/com.ventaro.app.window-size";
    session.clock = std::make_unique<SimulatedClock>(root);
    session.defaults = std::make_unique<FileDefaults>(
        home / "Library/Preferences/com.ventaro.app.cbor", logToStandardError);
    session.administratorScripts = std::make_unique<SimulatedAdministratorScripts>(root);
    session.hostInformation = std::make_unique<SimulatedHostInformation>(root);
    session.runningApplications = std::make_unique<ProcessTable>(root);
    return session;
}

} // namespace ventaro
