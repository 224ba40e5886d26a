#pragma once

#include "HelperIPC.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <string>

namespace ventaro {

/// A failure of the helper channel. `description()` is the German sentence that the user reads.
class HelperClientError : public std::exception {
public:
    static constexpr const char* domain = "HelperClient";

    enum class Code {
        socketNotCreated = 1,
        notReachable = 2,
        noAnswer = 3,
        sendFailed = 4,
    };

    explicit HelperClientError(Code code);

    Code code() const { return code_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

private:
    Code code_;
    std::string description_;
};

/// The application's side of the helper channel. Without mutable state: any thread may call any
/// operation, each exchange has its own connection.
class HelperClient {
public:
    /// The process-wide instance, on the installed platform. Lives to the end of the process.
    static HelperClient& shared();

    /// `socketPath`: where HelperConstants::socketPath really lies. The time-outs bound the sending
    /// and the waiting for the answer.
    explicit HelperClient(std::filesystem::path socketPath,
                          std::chrono::milliseconds receiveTimeout = std::chrono::seconds(2),
                          std::chrono::milliseconds sendTimeout = std::chrono::seconds(2));

    /// One exchange; blocks until the answer, a failure or a time-out. A response with `success`
    /// false is returned like any other. Throws HelperClientError, EncodingError, DecodingError.
    HelperResponse sendSocketRequest(const HelperRequest& request) const;

    /// Whether a helper that this program can use answers a ping. Blocks like an exchange.
    bool isDaemonActive() const;

private:
    const std::filesystem::path socketPath_;
    const std::chrono::milliseconds receiveTimeout_;
    const std::chrono::milliseconds sendTimeout_;
};

} // namespace ventaro
