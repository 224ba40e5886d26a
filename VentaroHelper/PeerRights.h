#pragma once

#include "Platform.h"

#include <filesystem>
#include <optional>

namespace ventaro {

/// What the process at the other end of a connection may have done.
enum class PeerAccess {
    nothing,
    handBack, ///< pings, and fans back to automatic
    everything,
};

/// Decides who may steer the fans: root and the user at the machine's screen. Whoever forced them
/// last may still hand them back when somebody else sits there. One thread.
class PeerRights {
public:
    /// `console` must outlive this object. `memory`: a file that outlives the helper and keeps who
    /// forced the fans last.
    PeerRights(const ConsoleUser& console, std::filesystem::path memory);

    /// No value: a process that cannot be known. The console is asked only if the peer is not root.
    PeerAccess of(std::optional<uid_t> peer) const;
    /// This user has forced a fan.
    void rememberForcing(std::optional<uid_t> user);

private:
    const ConsoleUser& console_;
    const std::filesystem::path memory_;
    std::optional<uid_t> lastForcing_;
};

} // namespace ventaro
