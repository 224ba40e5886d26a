#pragma once

#include "FileDescriptor.h"

#include <filesystem>

namespace ventaro {

/// Locks the file at `path`, which is made where it is missing and never removed, for as long as
/// the descriptor lives: the kernel frees it however the process ends. Empty if another descriptor
/// holds the lock. Throws std::system_error if there can be none, also if `path` is a link.
FileDescriptor tryLockFile(const std::filesystem::path& path);

/// Whether another descriptor holds the lock, and goes on holding it for half a second: that of a
/// process that was killed is freed a moment after its other files are closed. Throws as above.
bool staysLocked(const std::filesystem::path& path);

} // namespace ventaro
