#pragma once

#include "IOKit.h"

#include <chrono>
#include <functional>

namespace ventaro {

/// IOKit under a time budget: once the budget of the current piece of work is used up, exchanges
/// fail at once with KernelCode::timeout instead of each waiting for its own deadline. One thread.
class BudgetedIOKit final : public IOKit {
public:
    using Clock = std::chrono::steady_clock;

    /// `inner` must outlive this object. `isStopping` tells whether the process has been asked to
    /// end; then a piece of work that takes long is given up. No budget until the first `restart`.
    explicit BudgetedIOKit(
        IOKit& inner, std::function<bool()> isStopping = [] { return false; })
        : inner_(inner), isStopping_(std::move(isStopping)) {}

    /// A new piece of work begins now; it may begin exchanges until `end`.
    void restart(Clock::time_point end);

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
    const std::function<bool()> isStopping_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point end_ = Clock::time_point::max();
};

} // namespace ventaro
