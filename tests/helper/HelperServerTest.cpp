#include "HelperServer.h"

#include "TestSupport.h"
#include "UnixSocket.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace ventaro {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::ThrowsMessage;

/// A server in a thread of its own, whose handler counts and answers with the action's name.
class RunningServer {
public:
    explicit RunningServer(
        const std::filesystem::path& folder, milliseconds requestTimeout = milliseconds(500),
        HelperServer::PeerCheck mayConnect = [](int) { return true; })
        : logPath_(folder / "log"),
          socketPath_(folder / "helper.sock"),
          logFile_(::open(logPath_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600)),
          log_(logFile_.get(), logFile_.get()) {
        int ends[2];
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        stopRead_.reset(ends[0]);
        stopWrite_.reset(ends[1]);
        server_ = std::make_unique<HelperServer>(
            HelperServerOptions{.socketPath = socketPath_, .requestTimeout = requestTimeout},
            [this](const HelperRequest& request, HelperServer::Clock::time_point waitingSince) {
                ++handled;
                if (request.action == HelperAction::resetAllAuto) { // stands for a slow SMC
                    std::this_thread::sleep_for(milliseconds(80));
                    const auto waited = HelperServer::Clock::now() - waitingSince;
                    return HelperResponse{true, std::to_string(waited / milliseconds(1)), 1};
                }
                return HelperResponse{true, std::string(rawValue(request.action)), 1};
            },
            std::move(mayConnect), log_);
        thread_ = std::thread([this] { server_->run(stopRead_.get()); });
    }
    ~RunningServer() { stop(); }
    void stop() {
        if (thread_.joinable()) {
            stopWrite_.reset();
            thread_.join();
            server_.reset();
        }
    }
    FileDescriptor connect() const {
        FileDescriptor client = connectToUnixSocket(socketPath_, milliseconds(60000));
        setSocketTimeout(client.get(), SO_RCVTIMEO, milliseconds(60000));
        return client;
    }
    std::string log() const { return readFile(logPath_); }
    const std::filesystem::path& socketPath() const { return socketPath_; }

    std::atomic<int> handled{0};

private:
    std::filesystem::path logPath_;
    std::filesystem::path socketPath_;
    FileDescriptor logFile_;
    HelperLog log_;
    FileDescriptor stopRead_;
    FileDescriptor stopWrite_;
    std::unique_ptr<HelperServer> server_;
    std::thread thread_;
};

void send(const FileDescriptor& client, std::string_view text) {
    ::send(client.get(), text.data(), text.size(), MSG_NOSIGNAL);
}

/// The answer up to the end of the connection.
std::string answerOf(const FileDescriptor& client) {
    std::string text;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::recv(client.get(), buffer, sizeof buffer, 0)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
}

std::string answerTo(std::string_view request, const RunningServer& server) {
    const FileDescriptor client = server.connect();
    send(client, request);
    return answerOf(client);
}

constexpr const char* pingRequest = R"({"action":"ping"})";
constexpr const char* pingAnswer = R"({"success":true,"message":"ping","version":1})";

class FixedConsoleUser final : public ConsoleUser {
public:
    explicit FixedConsoleUser(std::optional<uid_t> user) : user_(user) {}
    std::optional<uid_t> current() const override { return user_; }

private:
    std::optional<uid_t> user_;
};

class Serving : public testing::Test {
protected:
    TemporaryFolder folder_;
};

TEST_F(Serving, AnswersARequestHoweverItArrives) {
    const RunningServer server(folder_.path());
    const std::string request = pingRequest;
    for (std::size_t cut = 0; cut <= request.size(); ++cut) {
        const FileDescriptor client = server.connect();
        send(client, std::string_view(request).substr(0, cut));
        send(client, std::string_view(request).substr(cut));
        EXPECT_EQ(answerOf(client), pingAnswer);
    }
    EXPECT_EQ(server.log(), "") << "pings are not logged";
    struct stat status {};
    ASSERT_EQ(::stat(server.socketPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0666U);
}

TEST_F(Serving, BadRequestsGetAReasonAndAreNotCarriedOut) {
    const RunningServer server(folder_.path());
    const std::pair<std::string, const char*> rows[] = {
        {"[]", "Die Anfrage ist kein JSON-Objekt."},
        {"{[[[[[[[[[[[[", "Die Anfrage ist zu tief verschachtelt."},
        {"{" + std::string(5000, ' '), "Die Anfrage ist länger als 4096 Bytes."},
        {"{}", "Die Anfrage ist nicht lesbar: Das Feld „action“ fehlt."},
        {R"({"action":"Ping"})",
         "Die Anfrage ist nicht lesbar: Das Feld „action“ hat einen unbekannten Wert."},
        {R"({"action":"setFanRPM","fanIndex":0,"rpm":1e999})",
         "Die Anfrage ist nicht lesbar: Das Feld „rpm“ liegt außerhalb des Wertebereichs."},
        {"{\"a\":\"\xff\"}",
         "Die Anfrage ist nicht lesbar: Der Text ist kein gültiges JSON-Objekt."},
    };
    for (const auto& [request, sentence] : rows) {
        EXPECT_EQ(answerTo(request, server), encodeJson(HelperResponse{false, sentence, 1}))
            << request;
    }
    EXPECT_EQ(server.handled, 0);
}

TEST_F(Serving, ClientsThatStopOrVanishCostNothing) {
    const RunningServer server(folder_.path());
    const FileDescriptor cutOff = server.connect();
    send(cutOff, R"({"action":)");
    ::shutdown(cutOff.get(), SHUT_WR);
    EXPECT_EQ(decodeHelperResponse(answerOf(cutOff)).message,
              "Die Anfrage endet vor dem Ende des JSON-Objekts.");
    for (int round = 0; round < 200; ++round) {
        FileDescriptor client = server.connect();
        send(client, round % 2 == 0 ? pingRequest : "{");
    } // closed without reading: no SIGPIPE, no hang
    EXPECT_EQ(answerTo(pingRequest, server), pingAnswer);
}

TEST_F(Serving, ASlowClientDelaysNobody) {
    const RunningServer server(folder_.path(), milliseconds(60000));
    const FileDescriptor silent = server.connect();
    const FileDescriptor slow = server.connect();
    send(slow, "{");
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(answerTo(pingRequest, server), pingAnswer);
    }
}

TEST_F(Serving, ASlowClientIsClosedAfterHalfASecond) {
    const RunningServer server(folder_.path());
    const auto start = steady_clock::now();
    const FileDescriptor silent = server.connect();
    const FileDescriptor dripping = server.connect();
    send(dripping, "{");
    EXPECT_TRUE(waitUntil([&] { // progress does not buy more time
        return ::send(dripping.get(), " ", 1, MSG_NOSIGNAL) < 0;
    }));
    const auto took = steady_clock::now() - start;
    EXPECT_GE(took, milliseconds(500));
    EXPECT_LT(took, milliseconds(2000)) << "before the client itself gives up";
    for (const FileDescriptor* client : {&silent, &dripping}) {
        EXPECT_EQ(decodeHelperResponse(answerOf(*client)).message,
                  "Die Anfrage war nicht rechtzeitig vollständig.");
    }
}

TEST_F(Serving, RequestsBehindSlowOnesCountTheirWaiting) {
    const RunningServer server(folder_.path(), milliseconds(60000));
    std::vector<FileDescriptor> clients;
    for (int client = 0; client < 5; ++client) {
        clients.push_back(server.connect());
        // A quick request in between does not wipe out how long the others have waited.
        send(clients.back(), client % 2 == 0 ? R"({"action":"resetAllAuto"})" : pingRequest);
    }
    int longest = 0;
    for (std::size_t slow = 0; slow < clients.size(); slow += 2) {
        const HelperResponse response = decodeHelperResponse(answerOf(clients[slow]));
        longest = std::max(longest, std::stoi(response.message));
    }
    EXPECT_GE(longest, 3 * 80) << "the last one has waited for those before it";
}

TEST_F(Serving, TheOldestMakesRoomForTheThirtyThird) {
    const RunningServer server(folder_.path(), milliseconds(60000));
    std::vector<FileDescriptor> idle;
    for (int client = 0; client < 34; ++client) {
        idle.push_back(server.connect());
    }
    for (int oldest = 0; oldest < 2; ++oldest) {
        EXPECT_EQ(decodeHelperResponse(answerOf(idle[static_cast<std::size_t>(oldest)])).message,
                  "Der Helper hat zu viele Verbindungen.");
    }
    send(idle[2], pingRequest);
    EXPECT_EQ(answerOf(idle[2]), pingAnswer) << "the others are still served";
}

TEST_F(Serving, RequestsThatHaveArrivedAreServedBeforeRoomIsMade) {
    // More clients than places, all with complete requests: nobody may be dropped.
    const RunningServer server(folder_.path(), milliseconds(60000));
    std::vector<FileDescriptor> clients;
    for (int client = 0; client < 100; ++client) {
        clients.push_back(server.connect());
        send(clients.back(), pingRequest);
    }
    for (const FileDescriptor& client : clients) {
        EXPECT_EQ(answerOf(client), pingAnswer);
    }
}

TEST_F(Serving, OthersAreTurnedAwayWithoutAnAnswer) {
    struct Row {
        std::optional<uid_t> peer, console;
        bool allowed;
    };
    const Row rows[] = {{0, {}, true},    {0, 501, true},   {501, 501, true}, {502, 501, false},
                        {501, {}, false}, {{}, 501, false}, {{}, {}, false}};
    for (const Row& row : rows) {
        EXPECT_EQ(isPeerAllowed(row.peer, FixedConsoleUser(row.console)), row.allowed);
    }

    const RunningServer server(folder_.path(), milliseconds(500), [](int) { return false; });
    EXPECT_EQ(answerTo(pingRequest, server), "");
    EXPECT_EQ(server.handled, 0);
    EXPECT_THAT(server.log(),
                HasSubstr("connection refused for user " + std::to_string(::getuid()) + "\n"));
}

TEST_F(Serving, ForeignTextIsEscapedAndCutInTheLog) {
    const RunningServer server(folder_.path());
    answerTo("{\"a\n\x1b[31m\\\xc3\xbc" + std::string(3000, 'x') + "\"}", server);
    const std::string log = server.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1);
    EXPECT_NE(log.find(R"({"a\x0a\x1b[31m\x5c\xc3\xbcxxx)"), std::string::npos) << log;
    EXPECT_LT(log.size(), 300U);
}

TEST_F(Serving, ASecondInstanceIsRefusedAndAStaleFileReplaced) {
    const HelperLog log(-1, -1);
    const auto path = folder_.path() / "helper.sock";
    const auto another = [&](const std::filesystem::path& socketPath) {
        HelperServer({.socketPath = socketPath, .takeOverPatience = milliseconds(0)}, {}, {}, log);
    };
    RunningServer server(folder_.path());
    EXPECT_THAT([&] { another(path); },
                ThrowsMessage<std::runtime_error>(HasSubstr("another instance")));
    EXPECT_EQ(answerTo(pingRequest, server), pingAnswer) << "the first one is unharmed";
    bool hasAsked = false;
    const auto successor = [&] {
        return HelperServer({.socketPath = path,
                             .takeOverPatience = std::chrono::minutes(1),
                             .isStopRequested =
                                 [&] {
                                     if (!std::exchange(hasAsked, true)) {
                                         server.stop();
                                     }
                                     return false;
                                 }},
                            {}, {}, log);
    };
    EXPECT_NO_THROW(successor()) << "it waits for the one that is on its way out";
    EXPECT_TRUE(hasAsked);
    EXPECT_FALSE(std::filesystem::exists(path)) << "the socket is removed at the end";

    listenOnUnixSocket(path, 0600); // a stale file
    EXPECT_NO_THROW(another(path));

    writeFile(path, "precious");
    EXPECT_THROW(another(path), std::runtime_error) << "a file that is no socket is kept";
    EXPECT_EQ(readFile(path), "precious");
    EXPECT_THAT([&] { another(folder_.path() / "missing" / "helper.sock"); },
                ThrowsMessage<std::exception>(HasSubstr("missing")));
}

/// Takes every descriptor that the process may have, but for one client's.
class DescriptorFamine {
public:
    DescriptorFamine() {
        ::getrlimit(RLIMIT_NOFILE, &kept_);
        struct rlimit low = kept_;
        low.rlim_cur = 64;
        ::setrlimit(RLIMIT_NOFILE, &low);
        while (taken_.emplace_back(::dup(STDIN_FILENO))) {
        }
    }
    ~DescriptorFamine() { end(); }
    void end() {
        taken_.clear();
        ::setrlimit(RLIMIT_NOFILE, &kept_);
    }
    void ping(const RunningServer& server) const {
        const sockaddr_un address = unixSocketAddress(server.socketPath().string());
        EXPECT_EQ(
            ::connect(client_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
            0);
        send(client_, pingRequest);
    }
    const FileDescriptor& client() const { return client_; }

private:
    FileDescriptor client_{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    struct rlimit kept_ {};
    std::vector<FileDescriptor> taken_;
};

TEST_F(Serving, SurvivesWithoutDescriptors) {
    const RunningServer server(folder_.path(), milliseconds(60000));
    std::vector<FileDescriptor> clients;
    for (int client = 0; client < 3; ++client) {
        clients.push_back(server.connect());
    }
    // A served ping shows that the three before it are accepted.
    EXPECT_EQ(answerTo(pingRequest, server), pingAnswer);

    DescriptorFamine famine;
    famine.ping(server);
    EXPECT_EQ(answerOf(famine.client()), pingAnswer) << "an older connection gives way";
    famine.end();
    EXPECT_EQ(answerTo(pingRequest, server), pingAnswer);
}

TEST_F(Serving, WaitsForADescriptorWhenItHasNoConnectionToGiveUp) {
    const RunningServer server(folder_.path());
    EXPECT_EQ(answerTo(pingRequest, server), pingAnswer) << "its thread runs";
    const FileDescriptor log(::open((folder_.path() / "log").c_str(), O_RDONLY | O_CLOEXEC));
    DescriptorFamine famine;
    famine.ping(server);
    char line[200];
    EXPECT_TRUE(waitUntil([&] { return ::pread(log.get(), line, sizeof line, 0) > 0; }));
    famine.end();
    EXPECT_EQ(answerOf(famine.client()), pingAnswer);
    const std::string lines = server.log();
    EXPECT_THAT(lines, HasSubstr("cannot accept connections: Too many open files\n"));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1) << "one line, not one per attempt";
}

/// Requests that are nearly right: members dropped, doubled, of other types, cut, or noise.
std::string badRequest(std::mt19937& random) {
    const auto pick = [&random](std::initializer_list<const char*> choices) {
        return std::string(choices.begin()[random() % choices.size()]);
    };
    std::string text = "{";
    for (std::uint32_t members = random() % 4; members > 0; --members) {
        text += pick({"\"action\":", "\"fanIndex\":", "\"rpm\":", "\"x\":", "action:", "\"\\u00"});
        text += pick({"\"setFanRPM\"", "null", "1e999", "-1", "[[]]", "{\"a\":{}}", "true", "\"\\",
                      "12345678901234567890", "\"\xf0\x9f", "0x10", "\"Ping\""});
        text += pick({",", "", ",,", "}", "]"});
    }
    text += pick({"}", "", "}}", "]", "\x01"});
    if (random() % 8 == 0) {
        text[random() % text.size()] = static_cast<char>(random());
    }
    return random() % 50 == 0 ? std::string(1 + random() % 6000, '{') : text;
}

TEST_F(Serving, GeneratedBadRequestsDoNoHarm) {
    const RunningServer server(folder_.path(), milliseconds(60000));
    std::mt19937 random(7);
    int answered = 0;
    for (int round = 0; round < VENTARO_BAD_REQUESTS; ++round) {
        const FileDescriptor client = server.connect();
        send(client, badRequest(random));
        ::shutdown(client.get(), SHUT_WR);
        const std::string answer = answerOf(client);
        ASSERT_FALSE(answer.empty());
        if (!decodeHelperResponse(answer).success) {
            ++answered;
        }
    }
    EXPECT_EQ(answered + server.handled, VENTARO_BAD_REQUESTS);
    EXPECT_GT(answered, VENTARO_BAD_REQUESTS * 9 / 10);
    EXPECT_EQ(answerTo(pingRequest, server), pingAnswer);
}

} // namespace
} // namespace ventaro
