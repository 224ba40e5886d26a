#include "HelperServer.h"

#include "FileLock.h"
#include "JsonObject.h"
#include "SystemCalls.h"
#include "UnixSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace ventaro {

namespace {

/// How long a client waits for its answer.
constexpr auto clientPatience = std::chrono::seconds(2);
constexpr mode_t socketMode = 0666; // peer credentials decide, not the file's mode

/// Holds a lock on a file beside the socket for the whole life of an instance, so that of two that
/// start at the same time only one replaces the socket file.
FileDescriptor lockInstance(const HelperServerOptions& options) {
    constexpr std::chrono::milliseconds pause(10);
    const auto end = std::chrono::steady_clock::now() + options.takeOverPatience;
    const std::filesystem::path path = HelperServer::lockPath(options.socketPath);
    FileDescriptor lock;
    while (!(lock = tryLockFile(path))) {
        if (std::chrono::steady_clock::now() >= end || options.isStopRequested()) {
            throw std::runtime_error("another instance of the helper is running (it holds " +
                                     path.string() + ")");
        }
        std::this_thread::sleep_for(pause);
    }
    return lock;
}

FileDescriptor replaceStaleSocket(const std::filesystem::path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0) {
        if (!S_ISSOCK(status.st_mode)) {
            throw std::runtime_error(path.string() + " exists and is not a socket");
        }
        if (::unlink(path.c_str()) != 0) {
            throw std::system_error(errno, std::generic_category(), path.string());
        }
    }
    return listenOnUnixSocket(path, socketMode);
}

bool isOutOfResources(int error) {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

} // namespace

std::filesystem::path HelperServer::lockPath(std::filesystem::path socketPath) {
    return socketPath.replace_extension(".lock");
}

HelperServer::HelperServer(EventLoop& loop, HelperServerOptions options, Handler handler,
                           PeerCheck accessOf, const HelperLog& log, HelperServerWork work)
    : loop_(loop),
      options_(std::move(options)),
      handler_(std::move(handler)),
      accessOf_(std::move(accessOf)),
      log_(log),
      work_(std::move(work)),
      instanceLock_(lockInstance(options_)),
      listener_(replaceStaleSocket(options_.socketPath)) {}

HelperServer::~HelperServer() { ::unlink(options_.socketPath.c_str()); }

void HelperServer::run(int stopDescriptor) {
    loop_.watch(stopDescriptor, [this] {
        loop_.endTurn();
        loop_.stop();
    });
    listen();
    while (!loop_.isStopped()) {
        if (isTurnLong()) {
            lag_ = {waitingSince(), Clock::now() + clientPatience};
        }
        isSomebodyWaiting_ = false;
        const bool hasCome = loop_.turn(patience());
        if (lag_ && (!hasCome || loop_.turnBegan() >= lag_->until)) {
            lag_.reset(); // everybody who had to wait is served, or has given up
        }
        closeOverdue();
        if (!isTurnLong() && (isSomebodyWaiting_ || acceptAgainAt_)) {
            acceptConnection();
        }
        workIfDue(!hasCome);
    }
    connections_.clear();
}

void HelperServer::workIfDue(bool isQuiet) {
    // Requests come first, but nobody who keeps asking may hold the work up.
    constexpr auto longestDelay = std::chrono::milliseconds(500);
    const auto due = work_.due();
    if (due && !loop_.isStopped() &&
        Clock::now() >= *due + (isQuiet ? std::chrono::milliseconds(0) : longestDelay)) {
        work_.step();
    }
}

void HelperServer::listen() {
    acceptAgainAt_.reset();
    loop_.watch(listener_.get(), [this] { isSomebodyWaiting_ = true; });
}

bool HelperServer::isTurnLong() const {
    constexpr auto longTurn = std::chrono::milliseconds(50);
    return Clock::now() - loop_.turnBegan() > longTurn;
}

HelperServer::Clock::time_point HelperServer::waitingSince() const {
    return lag_ ? lag_->since : loop_.turnBegan();
}

std::optional<std::chrono::milliseconds> HelperServer::patience() const {
    if (lag_) {
        return std::chrono::milliseconds(0);
    }
    // Every connection has the same time, so the oldest is due first.
    std::optional<Clock::time_point> next = acceptAgainAt_;
    const auto orAt = [&](Clock::time_point time) {
        next = std::min(next.value_or(Clock::time_point::max()), time);
    };
    if (!connections_.empty()) {
        orAt(connections_.front().deadline);
    }
    if (const auto due = work_.due()) {
        orAt(*due);
    }
    return next ? std::optional(std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now()))
                : std::nullopt;
}

void HelperServer::acceptConnection() {
    if (acceptAgainAt_ && Clock::now() < *acceptAgainAt_) {
        return;
    }
    FileDescriptor socket = ventaro::acceptConnection(listener_.get());
    if (!socket && isOutOfResources(errno)) {
        waitForResources(errno);
        return;
    }
    listen();
    if (!socket) {
        return; // the client has gone again
    }
    const auto user = peerUser(socket.get());
    const PeerAccess access = accessOf_(user);
    if (!isRoomFor(access)) {
        return;
    }
    if (connections_.size() >= options_.maximumConnections) {
        makeRoom();
    }
    const int descriptor = socket.get();
    connections_.push_back(
        {std::move(socket), user, access, Clock::now() + options_.requestTimeout, {}});
    loop_.watch(descriptor, [this, descriptor] { serveReady(descriptor); });
    serve(connections_.back()); // the request is mostly there already
    forgetClosed();
}

bool HelperServer::isRoomFor(PeerAccess access) const {
    constexpr std::ptrdiff_t mostStrangers = 4; // they only get to know that they may not
    return access != PeerAccess::nothing ||
           std::count_if(connections_.begin(), connections_.end(), [](const Connection& each) {
               return each.access == PeerAccess::nothing;
           }) < mostStrangers;
}

void HelperServer::serveReady(int descriptor) {
    const auto found = std::find_if(
        connections_.begin(), connections_.end(),
        [descriptor](const Connection& each) { return each.socket.get() == descriptor; });
    serve(*found);
    forgetClosed();
    if (isTurnLong()) {
        loop_.endTurn(); // a request to stop comes first
    }
}

void HelperServer::waitForResources(int error) {
    constexpr auto pause = std::chrono::milliseconds(100);
    if (!connections_.empty()) {
        makeRoom();
        return;
    }
    if (!acceptAgainAt_) {
        log_.error("cannot accept connections: " + std::generic_category().message(error));
    }
    loop_.unwatch(listener_.get());
    acceptAgainAt_ = Clock::now() + pause;
}

void HelperServer::makeRoom() {
    Connection& oldest = connections_.front();
    serve(oldest); // its request may just have arrived
    if (oldest.socket) {
        refuse(oldest, "dropped, too many connections", "Der Helper hat zu viele Verbindungen.");
    }
    forgetClosed();
}

void HelperServer::closeOverdue() {
    const auto now = Clock::now();
    for (Connection& connection : connections_) {
        if (connection.deadline > now) {
            break;
        }
        if (connection.socket) {
            serve(connection); // it may have arrived while another request was carried out
        }
        if (connection.socket) {
            refuse(connection, "request not complete in time",
                   "Die Anfrage war nicht rechtzeitig vollständig.");
        }
    }
    forgetClosed();
}

void HelperServer::serve(Connection& connection) {
    std::array<char, maximumHelperMessageSize> buffer;
    // A second read finds what arrived meanwhile; more would let an endless sender hold the loop.
    for (int round = 0; round < 2 && connection.socket; ++round) {
        const ssize_t count = ::recv(connection.socket.get(), buffer.data(), buffer.size(), 0);
        if (count < 0) {
            if (errno != EAGAIN && errno != EINTR) {
                close(connection);
            }
            return;
        }
        if (count == 0) {
            if (connection.reader.text().empty()) {
                close(connection); // a client that only looked whether anyone listens
            } else {
                refuse(connection, "request cut off",
                       "Die Anfrage endet vor dem Ende des JSON-Objekts.");
            }
            return;
        }
        switch (connection.reader.feed({buffer.data(), static_cast<std::size_t>(count)})) {
        case RequestReader::State::incomplete:
            break;
        case RequestReader::State::complete:
            carryOut(connection);
            break;
        case RequestReader::State::notAnObject:
            refuse(connection, "request is no JSON object", "Die Anfrage ist kein JSON-Objekt.");
            break;
        case RequestReader::State::tooLong:
            refuse(connection, "request too long",
                   "Die Anfrage ist länger als " + std::to_string(maximumHelperMessageSize) +
                       " Bytes.");
            break;
        case RequestReader::State::tooDeep:
            refuse(connection, "request nested too deeply",
                   "Die Anfrage ist zu tief verschachtelt.");
            break;
        }
    }
}

void HelperServer::carryOut(Connection& connection) {
    if (connection.access == PeerAccess::nothing) {
        turnAway(connection,
                 "Die Lüfter steuert nur, wer am Bildschirm angemeldet ist, oder root.");
        return;
    }
    try {
        const HelperRequest request = decodeHelperRequest(connection.reader.text());
        if (connection.access == PeerAccess::handBack &&
            request.action == HelperAction::setFanRPM) {
            turnAway(connection, "Feste Drehzahlen setzt nur, wer am Bildschirm angemeldet ist. "
                                 "Zurück auf macOS-Automatik geht weiterhin.");
            return;
        }
        answer(connection, handler_(request, {waitingSince(), connection.user}));
    } catch (const DecodingError& error) {
        refuse(connection, "request not understood",
               std::string("Die Anfrage ist nicht lesbar: ") + error.what());
    }
}

void HelperServer::turnAway(Connection& connection, const std::string& sentence) {
    log_.error("request refused for user " +
               (connection.user ? std::to_string(*connection.user) : std::string("unknown")));
    answer(connection, {false, sentence, HelperConstants::protocolVersion});
}

void HelperServer::refuse(Connection& connection, const std::string& why,
                          const std::string& sentence) {
    log_.error(why + ": " + escapedForLog(connection.reader.text()));
    answer(connection, {false, sentence, HelperConstants::protocolVersion});
}

void HelperServer::answer(Connection& connection, const HelperResponse& response) {
    const std::string json = encodeJson(response);
    // Nothing was sent before, so the socket has room. A client that is gone misses its answer.
    ::send(connection.socket.get(), json.data(), json.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    close(connection);
}

void HelperServer::close(Connection& connection) {
    loop_.unwatch(connection.socket.get());
    connection.socket.reset();
}

void HelperServer::forgetClosed() {
    std::erase_if(connections_, [](const Connection& connection) { return !connection.socket; });
}

} // namespace ventaro
