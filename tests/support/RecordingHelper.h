#pragma once

#include "FileDescriptor.h"
#include "HelperIPC.h"
#include "WakeUp.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ventaro {

/// A helper that keeps a record of its requests and answers as it is told, each on a thread.
class RecordingHelper {
public:
    /// Returns the response's bytes; empty closes the connection without one, `hang` keeps it until
    /// the client gives up.
    using Answer = std::function<std::string(const HelperRequest&)>;
    static constexpr const char* hang = "hang";

    explicit RecordingHelper(const std::filesystem::path& path);
    ~RecordingHelper();

    static std::string accept(const std::string& message, std::int64_t version = 1) {
        return encodeJson(HelperResponse{true, message, version});
    }
    static std::string refuse(const std::string& message) {
        return encodeJson(HelperResponse{false, message, 1});
    }
    void setAnswer(Answer answer);
    /// What was asked since the last call: "ping", "set 0 2370", "reset", with " meanwhile" if a
    /// client was still waiting for an answer that hangs.
    std::vector<std::string> taken();

private:
    Answer record(std::string line);
    void hangOn(int client);
    void serve();
    void exchange(const FileDescriptor& client);

    FileDescriptor listener_;
    WakeUp stop_;
    std::mutex lock_; ///< guards the three fields below
    Answer answer_ = [](const HelperRequest&) { return accept("gut"); };
    std::vector<std::string> requests_;
    FileDescriptor hung_;                ///< the connection that hangs
    std::vector<std::thread> exchanges_; ///< of `thread_` until that has ended
    std::thread thread_;
};

} // namespace ventaro
