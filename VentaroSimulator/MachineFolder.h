#pragma once

#include "FileDescriptor.h"
#include "MachineRoot.h"

#include <filesystem>
#include <optional>
#include <string>

namespace ventaro {

/// The folder tree of a simulated machine. A folder of its own making is removed at the end; one
/// that was named stays, without the sockets, so that the machine can be switched on again.
class MachineFolder {
public:
    /// `named`: the root to use, made if it does not exist; no value for a new temporary one.
    /// Throws std::runtime_error if the path is too long for the machine's sockets, if another
    /// machine runs there, if it belongs to another user, or if the tree cannot be made.
    explicit MachineFolder(const std::optional<std::filesystem::path>& named);
    ~MachineFolder();
    MachineFolder(const MachineFolder&) = delete;
    MachineFolder& operator=(const MachineFolder&) = delete;

    const MachineRoot& root() const { return root_; }
    /// The logged-in user's home folder.
    std::filesystem::path home() const;

    /// Puts the helper at `executable` and its property list where an installation would.
    void installHelper(const std::filesystem::path& executable) const;
    /// Takes both away, if they are there.
    void removeHelper() const;

private:
    void makeTree() const;
    void lock();
    void removeSockets() const;

    bool isTemporary_;
    MachineRoot root_;
    FileDescriptor lock_;
};

} // namespace ventaro
