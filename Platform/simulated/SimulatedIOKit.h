#pragma once

#include "FileDescriptor.h"
#include "IOKit.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>

namespace ventaro {

/// IOKit of a simulated MacBook: each open user client is a connection to the SMC's socket. A
/// connection that broke, or whose answer was late, is made anew below the same handle at the next
/// exchange. Thread-safe; exchanges on different handles do not wait for each other.
class SimulatedIOKit final : public IOKit {
public:
    /// `socketPath`: which of the SMC's sockets this process was handed. `deadline`: the longest
    /// that one exchange may take, connecting included.
    explicit SimulatedIOKit(std::filesystem::path socketPath,
                            std::chrono::milliseconds deadline = std::chrono::seconds(1));

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
    struct UserClient {
        std::mutex lock;
        FileDescriptor socket;
    };

    FileDescriptor connect(std::chrono::steady_clock::time_point deadline) const;
    std::shared_ptr<UserClient> find(IOConnection connection);

    const std::filesystem::path socketPath_;
    const std::chrono::milliseconds deadline_;
    std::mutex lock_; ///< guards the two fields below
    std::map<IOConnection, std::shared_ptr<UserClient>> clients_;
    IOConnection lastHandle_ = 0;
};

} // namespace ventaro
