#include "FanWatcher.h"

#include "FileLock.h"
#include "HelperClient.h"
#include "WatcherLink.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace ventaro {

namespace {

/// Whether somebody else steers the fans.
bool isHeld(const std::filesystem::path& lock) {
    try {
        return staysLocked(lock);
    } catch (const std::system_error&) {
        return false; // by nobody that could be asked
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
        if (!helper.resetAllFans()) {
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
