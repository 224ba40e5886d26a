#pragma once

#include "HelperIPC.h"
#include "NumberFormat.h"
#include "ScriptedServer.h"

#include <poll.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace ventaro {

/// A helper that keeps a record of its requests and answers as it is told.
class RecordingHelper {
public:
    /// Returns the response's bytes; empty closes the connection without one, `hang` keeps it until
    /// the client gives up.
    using Answer = std::function<std::string(const HelperRequest&)>;
    static constexpr const char* hang = "hang";

    explicit RecordingHelper(const std::filesystem::path& path)
        : server_(path, [this](int client) { exchange(client); }) {}

    static std::string accept(const std::string& message, std::int64_t version = 1) {
        return encodeJson(HelperResponse{true, message, version, {}, VENTARO_VERSION});
    }
    /// The answer to a ping from a helper that was started at `started`.
    static std::string acceptSince(std::int64_t started) {
        return encodeJson(HelperResponse{true, "gut", 1, {}, "1.0", started});
    }
    static std::string refuse(const std::string& message) {
        return encodeJson(HelperResponse{false, message, 1});
    }
    void setAnswer(Answer answer) {
        const std::lock_guard guard(lock_);
        answer_ = std::move(answer);
    }
    /// What was asked since the last call: "ping", "set 0 2370", "reset", with " meanwhile" if a
    /// client was still waiting for an answer that hangs.
    std::vector<std::string> taken() {
        const std::lock_guard guard(lock_);
        return std::exchange(requests_, {});
    }

private:
    static std::string describe(const HelperRequest& request) {
        switch (request.action) {
        case HelperAction::ping:
            return "ping";
        case HelperAction::setFanRPM:
            return "set " + std::to_string(*request.fanIndex) + " " + formatWhole(*request.rpm);
        case HelperAction::resetAllAuto:
            return "reset";
        case HelperAction::resetFanAuto:
            break;
        }
        return "?";
    }
    Answer record(std::string line) {
        const std::lock_guard guard(lock_);
        pollfd entry{hung_, POLLIN, 0};
        if (hung_ >= 0 && ::poll(&entry, 1, 0) == 0) {
            line += " meanwhile";
        }
        requests_.push_back(std::move(line));
        return answer_;
    }
    void exchange(int client) {
        const std::string text = receiveText(client);
        if (text.empty()) {
            return; // nothing was asked in the end
        }
        const HelperRequest request = decodeHelperRequest(text);
        const std::string response = record(describe(request))(request);
        if (response != hang) {
            sendText(client, response);
            return;
        }
        {
            const std::lock_guard guard(lock_);
            hung_ = client;
        }
        receiveText(client);
    }

    std::mutex lock_; ///< guards the three fields below
    Answer answer_ = [](const HelperRequest&) { return accept("gut"); };
    std::vector<std::string> requests_;
    int hung_ = -1; ///< the connection that hangs
    const ScriptedServer server_;
};

} // namespace ventaro
