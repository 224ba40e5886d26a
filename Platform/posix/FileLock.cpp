#include "FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

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

} // namespace ventaro
