#pragma once

#include "MachineRoot.h"

#include <sys/types.h>

#include <optional>
#include <string>

namespace ventaro {

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
/// ignored; throws std::invalid_argument, with an English sentence, for a value that names no
/// existing one.
MachineRootChoice chooseMachineRoot(const char* environmentValue, bool privileged);

} // namespace ventaro
