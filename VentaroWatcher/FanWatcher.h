#pragma once

#include <chrono>
#include <filesystem>

namespace ventaro {

/// Blocks until the other end of `link` is closed, however that comes; whether it has said that all
/// is well.
bool endsWell(int link);

/// Hands the fans back through the helper at `socket`, again and again until the helper confirms
/// it, for `patience`. Gives up as soon as another process holds the lock at `controlLock`: the
/// fans are its. Blocks; false if they have not been handed back by this process.
bool handFansBack(const std::filesystem::path& socket, const std::filesystem::path& controlLock,
                  std::chrono::milliseconds patience);

} // namespace ventaro
