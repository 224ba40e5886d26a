#pragma once

#include "IOKit.h"
#include "SimulatedSmc.h"

#include <functional>
#include <mutex>

namespace ventaro {

/// IOKit on a simulated SMC in the same process, for tests. Thread-safe; late answers are not held
/// back.
class InProcessIOKit final : public IOKit {
public:
    /// `smc` must outlive this object. Only a `privileged` process may write.
    InProcessIOKit(SimulatedSmc& smc, bool privileged) : smc_(smc), privileged_(privileged) {}

    /// Called with every parameter block before it is answered; may change the SMC's faults.
    std::function<void(const SMCKeyData_t&)> onExchange;
    /// What opening the user client answers.
    KernelReturn openResult = KernelCode::success;

    IOServiceMatch serviceMatching(std::string_view className) override { return {className}; }
    IOObject serviceGetMatchingService(const IOServiceMatch& matching) override;
    KernelReturn serviceOpen(IOObject service, std::uint32_t type,
                             IOConnection& connection) override;
    KernelReturn objectRelease(IOObject object) override;
    KernelReturn serviceClose(IOConnection connection) override;
    KernelReturn connectCallStructMethod(IOConnection connection, std::uint32_t selector,
                                         const void* input, std::size_t inputSize, void* output,
                                         std::size_t& outputSize) override;

    /// Service objects got and not yet released, and user clients opened and not yet closed.
    int unreleasedObjects() const { return unreleasedObjects_; }
    int openConnections() const { return openConnections_; }

private:
    SimulatedSmc& smc_;
    const bool privileged_;
    std::mutex lock_;
    int unreleasedObjects_ = 0;
    int openConnections_ = 0;
};

} // namespace ventaro
