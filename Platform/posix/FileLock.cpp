#include "FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

namespace ventaro {

FileDescriptor tryLockFile(const std::filesystem::path& path) {
    FileDescriptor file(
        ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
        return file;
    }
    if (file && errno == EWOULDBLOCK) {
        return {};
    }
    throw std::system_error(errno, std::generic_category(), path.string());
}

bool staysLocked(const std::filesystem::path& path) {
    constexpr int looks = 10;
    constexpr std::chrono::milliseconds pause(50);
    for (int look = 0; look < looks; ++look) {
        if (tryLockFile(path)) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace ventaro
