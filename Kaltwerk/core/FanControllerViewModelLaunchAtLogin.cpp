#include "AtomicFile.h"
#include "FanControllerViewModel.h"
#include "PropertyLists.h"

namespace ventaro {

void FanControllerViewModel::setLaunchAtLogin(bool enabled) {
    constexpr mode_t readableByAll = 0644;
    const std::filesystem::path& file = session_.loginItem.file;
    store(launchAtLogin_, enabled, &FanControllerViewModel::launchAtLoginChanged);
    if (!enabled) {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
        report("Autostart beim Anmelden deaktiviert.", false);
        return;
    }
    try {
        createFolders(file.parent_path());
        writeFileAtomically(file, loginItemText(), readableByAll);
    } catch (const FileError& error) {
        report(std::string("Autostart konnte nicht gespeichert werden: ") + error.what(), true);
        return;
    }
    report(startMinimized_ ? "Autostart aktiviert (startet minimiert in der Menüleiste)."
                           : "Autostart beim Anmelden in macOS aktiviert.",
           false);
}

void FanControllerViewModel::setStartMinimized(bool minimized) {
    store(startMinimized_, minimized, &FanControllerViewModel::startMinimizedChanged);
    saveSettings();
    if (launchAtLogin_) {
        setLaunchAtLogin(true);
    }
}

std::string FanControllerViewModel::loginItemText() const {
    const std::string installed = "/Applications/Ventaro.app/Contents/MacOS/Ventaro";
    std::error_code error;
    const bool isInstalled = std::filesystem::exists(machineRoot_.resolve(installed), error);
    const auto& executable = session_.bundle.executable;
    const std::string program = isInstalled || !executable ? installed : executable->string();
    return session_.loginItem.mechanism == LoginMechanism::launchAgent
               ? launchAgentPropertyList(program, startMinimized_)
               : autostartDesktopEntry(program, startMinimized_);
}

} // namespace ventaro
