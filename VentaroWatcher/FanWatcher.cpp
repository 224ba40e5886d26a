#include "FanWatcher.h"

#include "FileLock.h"
#include "HelperClient.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace ventaro {

namespace {

/// Whether somebody else steers the fans. The lock of a process that was killed is freed a moment
/// after its other files are closed.
bool isHeld(const std::filesystem::path& lock) {
    constexpr int looks = 10;
    constexpr std::chrono::milliseconds pause(50);
    try {
        for (int look = 0; look < looks; ++look) {
            if (tryLockFile(lock)) {
                return false;
            }
            std::this_thread::sleep_for(pause);
        }
        return true;
    } catch (const std::system_error&) {
        return false; // nobody that could be asked
    }
}

bool isConfirmed(const HelperClient& helper) {
    try {
        return helper.isDaemonActive() &&
               helper.sendSocketRequest({HelperAction::resetAllAuto, std::nullopt, std::nullopt})
                   .success;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

bool endsWell(int link) {
    char last = 0;
    for (;;) {
        char word = 0;
        const ssize_t size = ::read(link, &word, 1);
        if (size > 0) {
            last = word;
        } else if (size == 0 || errno != EINTR) {
            return last == allIsWell;
        }
    }
}

bool handFansBack(const std::filesystem::path& socket, const std::filesystem::path& controlLock,
                  std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds pause(250);
    const HelperClient helper(socket);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!isHeld(controlLock)) {
        if (isConfirmed(helper)) {
            return true;
        }
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return false;
}

} // namespace ventaro
