#include "FileDescriptor.h"

#include <fcntl.h>
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

void occupyStandardDescriptors() {
    FileDescriptor next;
    do {
        next.release(); // the number of a standard descriptor, kept for the process's life
        next.reset(::open("/dev/null", O_RDWR));
    } while (next && next.get() <= STDERR_FILENO);
}

} // namespace ventaro
