#pragma once

#include "EventLoop.h"
#include "FileDescriptor.h"
#include "HelperIPC.h"
#include "HelperLog.h"
#include "PeerRights.h"
#include "RequestReader.h"

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace ventaro {

struct HelperServerOptions {
    std::filesystem::path socketPath;
    /// How long after its acceptance a connection may take to send its whole request.
    std::chrono::milliseconds requestTimeout{500};
    /// When all are taken, the oldest without a complete request is dropped.
    std::size_t maximumConnections = 32;
    /// How long a new instance waits for the one before it, which may still be on its way out.
    std::chrono::milliseconds takeOverPatience{3000};
    /// Asked again and again while it waits for that.
    std::function<bool()> isStopRequested = [] { return false; };
};

/// What there is to do beside the requests, in pieces of one exchange with the SMC at most.
struct HelperServerWork {
    using Clock = EventLoop::Clock;
    /// When there is something to be done; no value as long as there is not.
    std::function<std::optional<Clock::time_point>()> due = [] {
        return std::optional<Clock::time_point>();
    };
    std::function<void()> step = [] {};
};

/// Serves the helper's socket: one request and one response per connection. One thread in an event
/// loop: a client that is slow or silent delays nobody, and without clients nothing wakes up.
class HelperServer {
public:
    using Clock = EventLoop::Clock;
    struct Origin {
        /// The earliest time at which the client may have sent the request.
        Clock::time_point waitingSince;
        std::optional<uid_t> user;
    };
    using Handler = std::function<HelperResponse(const HelperRequest&, const Origin&)>;
    /// Tells what a user's processes may ask for; no value: one that cannot be known.
    using PeerCheck = std::function<PeerAccess(std::optional<uid_t> user)>;

    /// The file beside the socket that an instance locks for as long as it lives. It is never
    /// removed.
    static std::filesystem::path lockPath(std::filesystem::path socketPath);

    /// Replaces a stale socket file and listens. Throws std::runtime_error, with an English
    /// sentence, if another instance serves the path or the socket cannot be made. `loop` must
    /// outlive the server.
    HelperServer(EventLoop& loop, HelperServerOptions options, Handler handler, PeerCheck accessOf,
                 const HelperLog& log, HelperServerWork work = {});
    /// Removes the socket file.
    ~HelperServer();
    HelperServer(const HelperServer&) = delete;
    HelperServer& operator=(const HelperServer&) = delete;

    /// Serves until `stopDescriptor` is readable. Requests under way are finished, connections
    /// without a complete request are closed.
    void run(int stopDescriptor);

private:
    struct Connection {
        FileDescriptor socket;
        std::optional<uid_t> user;
        PeerAccess access;
        Clock::time_point deadline;
        RequestReader reader;
    };

    /// Whether the current turn of the loop has kept other clients waiting.
    bool isTurnLong() const;
    /// Clients that are found now may have been waiting since then.
    Clock::time_point waitingSince() const;
    /// No value: for as long as nothing comes.
    std::optional<std::chrono::milliseconds> patience() const;
    void listen();
    /// `isQuiet`: no client has come in this turn.
    void workIfDue(bool isQuiet);
    void acceptConnection();
    void serveReady(int descriptor);
    void waitForResources(int error);
    void makeRoom();
    void closeOverdue();
    /// Reads what is there; answers and closes (empties `socket`) once the request is decided.
    void serve(Connection& connection);
    /// Whether there is room for a user's connection, who may ask for that much.
    bool isRoomFor(PeerAccess access) const;
    void carryOut(Connection& connection);
    void turnAway(Connection& connection, const std::string& sentence);
    void refuse(Connection& connection, const std::string& why, const std::string& sentence);
    void answer(Connection& connection, const HelperResponse& response);
    void close(Connection& connection);
    void forgetClosed();

    EventLoop& loop_;
    const HelperServerOptions options_;
    const Handler handler_;
    const PeerCheck accessOf_;
    const HelperLog& log_;
    const HelperServerWork work_;
    FileDescriptor instanceLock_;
    FileDescriptor listener_;
    std::vector<Connection> connections_;            ///< in order of acceptance
    bool isSomebodyWaiting_ = false;                 ///< to be accepted
    std::optional<Clock::time_point> acceptAgainAt_; ///< set while descriptors are exhausted
    /// A long turn that others may have had to wait for, until nobody is left who did.
    struct Lag {
        Clock::time_point since;
        Clock::time_point until;
    };
    std::optional<Lag> lag_;
};

} // namespace ventaro
