#pragma once

#include "AdministratorScripts.h"
#include "Clock.h"
#include "DefaultsStore.h"
#include "HostInformation.h"
#include "RunningApplications.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace ventaro {

/// Where the running application lies.
struct Bundle {
    std::optional<std::filesystem::path> executable; ///< the main executable
    std::optional<std::filesystem::path> resources;  ///< the folder of resources
};

/// How a program is started when the user logs in.
enum class LoginMechanism {
    launchAgent,  ///< a property list in the user's Library, macOS
    xdgAutostart, ///< a desktop entry in the user's configuration folder, Linux desktops
};

/// The file whose presence starts the application at login.
struct LoginItemPlace {
    LoginMechanism mechanism = LoginMechanism::launchAgent;
    std::filesystem::path file;
};

/// What the platform gives to a program that works for the logged-in user, beyond the machine.
struct UserSession {
    Bundle bundle;
    LoginItemPlace loginItem;
    /// Where the size of the application's window is kept.
    std::filesystem::path windowSizeFile;
    std::unique_ptr<Clock> clock;
    std::unique_ptr<DefaultsStore> defaults;
    std::unique_ptr<AdministratorScripts> administratorScripts;
    std::unique_ptr<RunningApplications> runningApplications;
    std::unique_ptr<HostInformation> hostInformation;
};

} // namespace ventaro
