#pragma once

#include "SystemCalls.h"

namespace ventaro {

/// Wakes a thread that waits on a descriptor. Carries no data: what there is to do stands
/// elsewhere, under a lock. Any thread may signal; one takes.
class WakeUp {
public:
    /// Throws std::system_error if the process is out of descriptors.
    WakeUp();
    /// Can be read from a `signal` until `take`.
    int descriptor() const { return pipe_.reading.get(); }
    void signal() const;
    /// Takes all signals so far as seen.
    void take() const;

private:
    const Pipe pipe_;
};

} // namespace ventaro
