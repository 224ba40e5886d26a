#include "LinuxSession.h"

#include "FileDefaults.h"
#include "LinuxClock.h"
#include "LinuxHostInformation.h"
#include "ProcessTable.h"
#include "SystemCalls.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace ventaro {

namespace {

namespace fs = std::filesystem;

class NoAdministratorScripts final : public AdministratorScripts {
public:
    std::optional<std::string> unavailableBecause() const override {
        return "Auf diesem Rechner lässt sich der Hintergrund-Helper nicht installieren: Er "
               "steuert die Lüfter eines MacBook Pro und braucht macOS.";
    }
    std::unique_ptr<AdministratorScript> compile(const std::string& /*source*/) override {
        return nullptr;
    }
};

std::optional<fs::path> absoluteFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? std::optional<fs::path>(value) : std::nullopt;
}

fs::path homeFolder() {
    if (const auto home = absoluteFromEnvironment("HOME")) {
        return *home;
    }
    const passwd* user = ::getpwuid(::getuid());
    return user != nullptr ? user->pw_dir : "/";
}

/// As the XDG base directory rules say: a relative value is ignored.
fs::path configurationFolder() {
    return absoluteFromEnvironment("XDG_CONFIG_HOME").value_or(homeFolder() / ".config");
}

} // namespace

UserSession makeLinuxSession() {
    const fs::path configuration = configurationFolder();
    UserSession session;
    session.bundle.executable = executablePath();
    session.loginItem = {LoginMechanism::xdgAutostart,
                         configuration / "autostart/com.ventaro.app.desktop"};
    session.windowSizeFile = configuration / "ventaro/window-size";
    session.clock = std::make_unique<LinuxClock>();
    session.defaults = std::make_unique<FileDefaults>(configuration / "ventaro/settings.cbor");
    session.administratorScripts = std::make_unique<NoAdministratorScripts>();
    session.hostInformation = std::make_unique<LinuxHostInformation>();
    session.runningApplications = std::make_unique<ProcessTable>();
    return session;
}

} // namespace ventaro
