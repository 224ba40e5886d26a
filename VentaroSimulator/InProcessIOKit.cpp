#include "InProcessIOKit.h"

#include <cstring>

namespace ventaro {

namespace {

constexpr IOObject serviceObject = 1;
constexpr IOConnection connectionHandle = 7;

} // namespace

IOObject InProcessIOKit::serviceGetMatchingService(const IOServiceMatch& matching) {
    const std::lock_guard guard(lock_);
    if (matching.className != "AppleSMC" || smc_.faults().isServiceGone()) {
        return 0;
    }
    ++unreleasedObjects_;
    return serviceObject;
}

KernelReturn InProcessIOKit::serviceOpen(IOObject service, std::uint32_t /*type*/,
                                         IOConnection& connection) {
    const std::lock_guard guard(lock_);
    if (service != serviceObject || openResult != KernelCode::success) {
        return service == serviceObject ? openResult : KernelCode::badArgument;
    }
    ++openConnections_;
    connection = connectionHandle;
    return KernelCode::success;
}

KernelReturn InProcessIOKit::objectRelease(IOObject /*object*/) {
    const std::lock_guard guard(lock_);
    --unreleasedObjects_;
    return KernelCode::success;
}

KernelReturn InProcessIOKit::serviceClose(IOConnection /*connection*/) {
    const std::lock_guard guard(lock_);
    --openConnections_;
    return KernelCode::success;
}

KernelReturn InProcessIOKit::connectCallStructMethod(IOConnection connection,
                                                     std::uint32_t selector, const void* input,
                                                     std::size_t inputSize, void* output,
                                                     std::size_t& outputSize) {
    const std::lock_guard guard(lock_);
    if (connection != connectionHandle || openConnections_ == 0) {
        return KernelCode::notOpen;
    }
    if (inputSize != sizeof(SMCKeyData_t) || outputSize != sizeof(SMCKeyData_t)) {
        return KernelCode::badArgument;
    }
    if (smc_.faults().isServiceGone()) {
        return KernelCode::noDevice;
    }
    SMCKeyData_t block;
    std::memcpy(&block, input, sizeof block);
    if (onExchange) {
        onExchange(block);
    }
    const SimulatedSmc::Answer answer = smc_.answer(selector, block, privileged_);
    std::memcpy(output, &answer.output, sizeof answer.output);
    return answer.kernelReturn;
}

} // namespace ventaro
