#include "BudgetedIOKit.h"

namespace ventaro {

void BudgetedIOKit::restart(Clock::time_point end) {
    start_ = Clock::now();
    end_ = end;
}

bool BudgetedIOKit::isUsedUp() const {
    // Work that is under way takes a millisecond; only what hangs is worth giving up half done.
    constexpr auto patienceWhenStopping = std::chrono::milliseconds(100);
    const auto now = Clock::now();
    return now >= end_ || (now - start_ > patienceWhenStopping && isStopping_());
}

IOServiceMatch BudgetedIOKit::serviceMatching(std::string_view className) {
    return inner_.serviceMatching(className);
}

IOObject BudgetedIOKit::serviceGetMatchingService(const IOServiceMatch& matching) {
    return isUsedUp() ? 0 : inner_.serviceGetMatchingService(matching);
}

KernelReturn BudgetedIOKit::serviceOpen(IOObject service, std::uint32_t type,
                                        IOConnection& connection) {
    return isUsedUp() ? KernelCode::timeout : inner_.serviceOpen(service, type, connection);
}

KernelReturn BudgetedIOKit::objectRelease(IOObject object) { return inner_.objectRelease(object); }

KernelReturn BudgetedIOKit::serviceClose(IOConnection connection) {
    return inner_.serviceClose(connection);
}

KernelReturn BudgetedIOKit::connectCallStructMethod(IOConnection connection, std::uint32_t selector,
                                                    const void* input, std::size_t inputSize,
                                                    void* output, std::size_t& outputSize) {
    return isUsedUp() ? KernelCode::timeout
                      : inner_.connectCallStructMethod(connection, selector, input, inputSize,
                                                       output, outputSize);
}

} // namespace ventaro
