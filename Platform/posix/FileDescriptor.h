#pragma once

namespace ventaro {

/// Owns one file descriptor and closes it. Not for sharing between threads.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

    /// Gives the descriptor up without closing it.
    int release() {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        return descriptor;
    }
    /// Closes the descriptor and owns `descriptor` from now on; keeps errno.
    void reset(int descriptor = -1);

private:
    int descriptor_ = -1;
};

/// Whether a write to the descriptor does not wait; a pipe has room for a line then, or nobody
/// reads it any more.
bool canWrite(int descriptor);
/// Whether the other end of the descriptor's pipe is gone.
bool isReaderGone(int descriptor);

/// One that is good for nothing, to be closed where another one is needed and there may be none.
FileDescriptor spareDescriptor();

/// Opens /dev/null for each standard descriptor that the process was started without, so that no
/// socket takes its number and receives what is printed.
void occupyStandardDescriptors();

} // namespace ventaro
