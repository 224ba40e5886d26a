#include "FileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace ventaro {

void FileDescriptor::reset(int descriptor) {
    if (descriptor_ >= 0) {
        const int kept = errno;
        ::close(descriptor_);
        errno = kept;
    }
    descriptor_ = descriptor;
}

namespace {

int stateOf(int descriptor) {
    pollfd entry{descriptor, POLLOUT, 0};
    return ::poll(&entry, 1, 0) >= 0 ? entry.revents : 0;
}

} // namespace

bool canWrite(int descriptor) { return stateOf(descriptor) != 0; }

bool isReaderGone(int descriptor) { return (stateOf(descriptor) & (POLLERR | POLLNVAL)) != 0; }

FileDescriptor spareDescriptor() {
    return FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

void occupyStandardDescriptors() {
    FileDescriptor next;
    do {
        next.release(); // the number of a standard descriptor, kept for the process's life
        next.reset(::open("/dev/null", O_RDWR));
    } while (next && next.get() <= STDERR_FILENO);
}

} // namespace ventaro
