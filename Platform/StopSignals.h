#pragma once

#include "FileDescriptor.h"

namespace ventaro {

/// Takes the signals that end a program (SIGINT, SIGTERM, SIGHUP, SIGQUIT) as something to be read,
/// but for those that whoever started it has it ignore.
/// To be made before any thread is started; the process keeps them blocked.
class StopSignals {
public:
    /// Throws std::system_error if the process is out of descriptors.
    StopSignals();
    /// Can be read once a signal has come.
    int descriptor() const { return descriptor_.get(); }
    /// Reads what has come; whether Ctrl-C was among it.
    bool takeInterrupt() const;

private:
    FileDescriptor descriptor_;
};

} // namespace ventaro
