#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ventaro {

/// The folder below which the machine's absolute paths live: "/" on a real machine, a folder of its
/// own for each simulated MacBook. Immutable.
class MachineRoot {
public:
    /// The environment variable that names the folder.
    static constexpr const char* environmentVariable = "VENTARO_MACHINE_ROOT";

    /// The real machine's root, "/".
    MachineRoot();
    /// `folder` must be an absolute path to an existing folder; throws std::invalid_argument, with
    /// an English sentence, if not.
    explicit MachineRoot(const std::filesystem::path& folder);

    /// Where `absolutePath`, a path of the machine ("/var/run/..."), really lies. Throws
    /// std::invalid_argument for a path that is not absolute or that contains "..".
    std::filesystem::path resolve(std::string_view absolutePath) const;

    /// `text`, which may contain resolved paths, with these as the machine knows them.
    std::string withoutFolder(std::string text) const;

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

/// The outcome of reading the environment variable.
struct MachineRootChoice {
    /// The simulated machine's root; no value on a real machine.
    std::optional<MachineRoot> simulated;
    /// Why a folder that was named is not used; empty if there is nothing to say.
    std::string ignoredBecause;
};

/// Whether a process of `effectiveUser` may be steered by a folder of this owner and mode. A
/// process that runs as root follows only a folder that nobody but root can change.
constexpr bool mayTrustMachineRoot(uid_t effectiveUser, uid_t folderOwner, mode_t folderMode) {
    constexpr mode_t writableByOthers = 0022;
    return effectiveUser != 0 || (folderOwner == 0 && (folderMode & writableByOthers) == 0);
}

/// Reads the environment variable. With `privileged` a folder that the process may not trust is
/// ignored; throws std::invalid_argument for a value that names no folder.
MachineRootChoice chooseMachineRoot(const char* environmentValue, bool privileged);

} // namespace ventaro
