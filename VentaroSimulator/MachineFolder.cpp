#include "MachineFolder.h"

#include "EmbeddedFiles.h"
#include "FileLock.h"
#include "HelperIPC.h"
#include "SmcWire.h"
#include "SystemCalls.h"
#include "UnixSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace ventaro {

namespace fs = std::filesystem;

namespace {

constexpr const char* runFolder = "/var/run/ventaro-simulator";

fs::path makeRoot(const std::optional<fs::path>& named) {
    if (named) {
        const fs::path folder = fs::absolute(*named).lexically_normal();
        if (folder == "/" || folder.string().find(':') != std::string::npos) {
            // The one would be the host itself, the other cannot stand in a search path.
            throw std::runtime_error("\"" + folder.string() + "\" cannot be a machine's root");
        }
        fs::create_directories(folder);
        struct stat status {};
        if (::stat(folder.c_str(), &status) != 0 || status.st_uid != ::geteuid()) {
            // Its helper would follow the folder's owner, or nobody.
            throw std::runtime_error("the machine root \"" + folder.string() +
                                     "\" belongs to another user");
        }
        return fs::canonical(folder);
    }
    std::string pattern = fs::temp_directory_path() / "ventaro-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    return pattern;
}

} // namespace

MachineFolder::MachineFolder(const std::optional<fs::path>& named)
    : isTemporary_(!named), root_(makeRoot(named)) {
    try {
        for (const char* path :
             {SmcWire::userSocketPath, SmcWire::rootSocketPath, HelperConstants::socketPath}) {
            if (!fitsUnixSocketAddress(root_.resolve(path).string())) {
                throw std::runtime_error("the machine root \"" + root_.folder().string() +
                                         "\" is too long for the paths of its sockets");
            }
        }
        fs::create_directories(root_.resolve(runFolder));
        lock();
        makeTree();
        removeSockets();
    } catch (...) {
        if (isTemporary_) {
            std::error_code ignored;
            fs::remove_all(root_.folder(), ignored);
        }
        throw;
    }
}

MachineFolder::~MachineFolder() {
    std::error_code ignored;
    if (isTemporary_) {
        fs::remove_all(root_.folder(), ignored);
    } else {
        removeSockets();
        fs::remove_all(root_.resolve(runFolder), ignored);
    }
}

void MachineFolder::makeTree() const {
    for (const char* folder : {"/var/log", "/tmp", "/usr/bin", "/usr/sbin",
                               "/Library/LaunchDaemons", "/Library/PrivilegedHelperTools"}) {
        fs::create_directories(root_.resolve(folder));
    }
    fs::create_directories(home());
    for (const char* command :
         {"/usr/bin/launchctl", "/usr/bin/chown", "/usr/sbin/system_profiler"}) {
        const fs::path link = root_.resolve(command);
        if (fs::exists(fs::symlink_status(link)) && !fs::is_symlink(link)) {
            throw std::runtime_error(link.string() + " is there already and no stand-in of ours");
        }
        fs::remove(link);
        fs::create_symlink(executablePath().value(), link);
    }
}

void MachineFolder::lock() {
    lock_ = tryLockFile(root_.resolve(runFolder) / "lock");
    if (!lock_) {
        throw std::runtime_error("another simulated machine runs in " + root_.folder().string());
    }
}

void MachineFolder::removeSockets() const {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(root_.resolve(runFolder), ignored)) {
        if (entry.is_socket(ignored)) {
            fs::remove(entry.path(), ignored);
        }
    }
    fs::path helperSocket = root_.resolve(HelperConstants::socketPath);
    fs::remove(helperSocket, ignored);
    fs::remove(helperSocket.replace_extension(".lock"), ignored);
}

fs::path MachineFolder::home() const { return root_.resolve("/Users/ventaro"); }

void MachineFolder::installHelper(const fs::path& executable) const {
    const fs::path installed = root_.resolve(HelperConstants::helperBinaryInstallPath);
    fs::copy_file(executable, installed, fs::copy_options::overwrite_existing);
    fs::permissions(installed, fs::perms(0755));
    std::ofstream list(root_.resolve(HelperConstants::launchDaemonPlistPath), std::ios::trunc);
    list << EmbeddedFiles::helperPropertyList;
    if (!list.flush()) {
        throw std::runtime_error("the helper's property list cannot be written");
    }
}

void MachineFolder::removeHelper() const {
    fs::remove(root_.resolve(HelperConstants::helperBinaryInstallPath));
    fs::remove(root_.resolve(HelperConstants::launchDaemonPlistPath));
}

} // namespace ventaro
