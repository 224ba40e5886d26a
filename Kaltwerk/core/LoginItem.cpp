#include "LoginItem.h"

#include "AtomicFile.h"
#include "MachineRoot.h"
#include "PropertyLists.h"
#include "StoredField.h"
#include "UserSession.h"

namespace ventaro {

LoginItem::LoginItem(const UserSession& session, const MachineRoot& machineRoot)
    : session_(session), machineRoot_(machineRoot) {
    std::error_code error;
    isEnabled_ = std::filesystem::exists(session_.loginItem.file, error);
}

void LoginItem::setEnabled(bool enabled, bool minimized) {
    constexpr mode_t readableByAll = 0644;
    const std::filesystem::path& file = session_.loginItem.file;
    store(this, isEnabled_, enabled, &LoginItem::isEnabledChanged);
    if (!enabled) {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
        Q_EMIT reported("Autostart beim Anmelden deaktiviert.", false);
        return;
    }
    try {
        createFolders(file.parent_path());
        writeFileAtomically(file, text(minimized), readableByAll);
    } catch (const FileError& error) {
        Q_EMIT reported(std::string("Autostart konnte nicht gespeichert werden: ") + error.what(),
                        true);
        return;
    }
    Q_EMIT reported(minimized ? "Autostart aktiviert (startet minimiert in der Menüleiste)."
                              : "Autostart beim Anmelden in macOS aktiviert.",
                    false);
}

std::string LoginItem::text(bool minimized) const {
    const std::string installed = "/Applications/Ventaro.app/Contents/MacOS/Ventaro";
    std::error_code error;
    const bool isInstalled = std::filesystem::exists(machineRoot_.resolve(installed), error);
    const auto& executable = session_.bundle.executable;
    const std::string program = isInstalled || !executable ? installed : executable->string();
    return session_.loginItem.mechanism == LoginMechanism::launchAgent
               ? launchAgentPropertyList(program, minimized)
               : autostartDesktopEntry(program, minimized);
}

} // namespace ventaro
