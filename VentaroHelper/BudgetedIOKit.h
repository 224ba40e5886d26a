#pragma once

#include "IOKit.h"

#include <chrono>

namespace ventaro {

/// IOKit under a time budget: once the budget of the current piece of work is used up, exchanges
/// fail at once with kIOReturnTimeout instead of each waiting for its own deadline. One thread.
class BudgetedIOKit final : public IOKit {
public:
    /// `inner` must outlive this object. No budget until the first `restart`.
    explicit BudgetedIOKit(IOKit& inner) : inner_(inner) {}

    /// A new piece of work begins now; it may begin exchanges for `budget`.
    void restart(std::chrono::milliseconds budget);

    IOServiceMatch serviceMatching(std::string_view className) override;
    IOObject serviceGetMatchingService(const IOServiceMatch& matching) override;
    KernelReturn serviceOpen(IOObject service, std::uint32_t type,
                             IOConnection& connection) override;
    KernelReturn objectRelease(IOObject object) override;
    KernelReturn serviceClose(IOConnection connection) override;
    KernelReturn connectCallStructMethod(IOConnection connection, std::uint32_t selector,
                                         const void* input, std::size_t inputSize, void* output,
                                         std::size_t& outputSize) override;

private:
    bool isUsedUp() const;

    IOKit& inner_;
    std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::time_point::max();
};

} // namespace ventaro
