#include "FileDescriptor.h"

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

} // namespace ventaro
