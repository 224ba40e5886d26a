#include "HelperServer.h"

#include "ScriptedServer.h"
#include "TestSupport.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <future>
#include <random>
#include <thread>
#include <vector>

namespace ventaro {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr const char* pingRequest = R"({"action":"ping"})";
constexpr const char* pingAnswer = R"({"success":true,"message":"ping","version":1})";

void send(const FileDescriptor& client, std::string_view text) { sendText(client.get(), text); }

/// The answer up to the end of the connection.
std::string answerOf(const FileDescriptor& client) {
    std::string text;
    for (std::string piece; !(piece = receiveText(client.get())).empty();) {
        text += piece;
    }
    return text;
}

std::string messageOf(const FileDescriptor& client) {
    return decodeHelperResponse(answerOf(client)).message;
}

/// A server in a thread of its own, whose handler counts and answers with the action's name, or
/// like a slow SMC with how long the request has waited.
struct RunningServer {
    explicit RunningServer(milliseconds requestTimeout = minutes(1),
                           PeerAccess access = PeerAccess::everything) {
        server.emplace(
            loop, HelperServerOptions{.socketPath = path, .requestTimeout = requestTimeout},
            [this](const HelperRequest& request, const HelperServer::Origin& origin) {
                ++handled;
                if (request.action != HelperAction::resetAllAuto) {
                    return HelperResponse{true, std::string(rawValue(request.action)), 1};
                }
                std::this_thread::sleep_for(milliseconds(80));
                const auto waited = HelperServer::Clock::now() - origin.waitingSince;
                return HelperResponse{true, std::to_string(waited / milliseconds(1)), 1};
            },
            [access](auto) { return access; }, helperLog,
            HelperServerWork{.due = [this]() -> std::optional<HelperServer::Clock::time_point> {
                                 return hasWork ? std::optional(began) : std::nullopt;
                             },
                             .step =
                                 [this] {
                                     std::this_thread::sleep_for(milliseconds(60));
                                     ++steps;
                                 }});
        thread = std::thread([this] { server->run(stopEvent.get()); });
    }
    ~RunningServer() { stop(); }
    void stop() {
        ::eventfd_write(stopEvent.get(), 1);
        if (thread.joinable()) {
            thread.join();
        }
        server.reset();
    }
    /// A client that has sent `text`.
    FileDescriptor connect(std::string_view text = {}) const {
        FileDescriptor client = connectToUnixSocket(path, minutes(1));
        setSocketTimeout(client.get(), SO_RCVTIMEO, minutes(1));
        send(client, text);
        return client;
    }
    bool answersPing() const { return answerOf(connect(pingRequest)) == pingAnswer; }
    std::string log() const { return readFile(logPath); }

    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "helper.sock";
    const std::filesystem::path logPath = folder.path() / "log";
    const FileDescriptor logFile{
        ::open(logPath.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600)};
    const HelperLog helperLog{logFile.get(), logFile.get()};
    const FileDescriptor stopEvent{::eventfd(0, EFD_CLOEXEC)};
    std::atomic<int> handled{0};
    std::atomic<bool> hasWork{false}; ///< on a slow SMC, without an end
    std::atomic<int> steps{0};
    const HelperServer::Clock::time_point began = HelperServer::Clock::now();
    EventLoop loop;
    std::optional<HelperServer> server;
    std::thread thread;
};

TEST(Serving, AnswersARequestHoweverItArrives) {
    const RunningServer server;
    const std::string_view request = pingRequest;
    for (std::size_t cut = 0; cut <= request.size(); ++cut) {
        const FileDescriptor client = server.connect(request.substr(0, cut));
        send(client, request.substr(cut));
        EXPECT_EQ(answerOf(client), pingAnswer);
    }
    std::vector<FileDescriptor> clients;
    for (int client = 0; client < 100; ++client) { // more than there are places
        clients.push_back(server.connect(pingRequest));
    }
    for (const FileDescriptor& client : clients) {
        EXPECT_EQ(answerOf(client), pingAnswer) << "served before room was made";
    }
    EXPECT_EQ(server.log(), "") << "pings are not logged";
    EXPECT_EQ(std::filesystem::status(server.path).permissions(), std::filesystem::perms(0666));
}

TEST(Serving, BadRequestsGetAReasonAndAreNotCarriedOut) {
    const RunningServer server;
    answerOf(server.connect("{\"a\n\x1b[31m\\\xc3\xbc" + std::string(3000, 'x') + "\"}"));
    const std::string log = server.log();
    EXPECT_THAT(log, HasSubstr(R"({"a\x0a\x1b[31m\x5c\xc3\xbcxxx)")) << "foreign text is escaped";
    EXPECT_EQ(log.find('\n'), log.size() - 1);
    EXPECT_LT(log.size(), 300U) << "and cut";
    const std::pair<std::string, std::string> rows[] = {
        {"[]", "ist kein JSON-Objekt."},
        {"{[[[[[[[[[[[[", "ist zu tief verschachtelt."},
        {"{" + std::string(5000, ' '), "ist länger als 4096 Bytes."},
        {"{}", "ist nicht lesbar: Das Feld „action“ fehlt."},
        {R"({"action":"Ping"})", "ist nicht lesbar: Das Feld „action“ hat einen unbekannten Wert."},
        {R"({"action":"setFanRPM","fanIndex":0,"rpm":1e999})",
         "ist nicht lesbar: Das Feld „rpm“ liegt außerhalb des Wertebereichs."},
        {"{\"a\":\"\xff\"}", "ist nicht lesbar: Der Text ist kein gültiges JSON-Objekt."},
    };
    for (const auto& [request, reason] : rows) {
        EXPECT_EQ(answerOf(server.connect(request)),
                  encodeJson(HelperResponse{false, "Die Anfrage " + reason, 1}))
            << request;
    }
    const FileDescriptor cutOff = server.connect(R"({"action":)");
    ::shutdown(cutOff.get(), SHUT_WR);
    EXPECT_EQ(messageOf(cutOff), "Die Anfrage endet vor dem Ende des JSON-Objekts.");
    EXPECT_EQ(server.handled, 0);
}

TEST(Serving, WhoIsSilentSlowOrGoneHoldsNobodyUpAndTheOldestMakeRoom) {
    const RunningServer server;
    std::vector<FileDescriptor> idle;
    idle.push_back(server.connect());
    idle.push_back(server.connect("{"));
    for (int round = 0; round < 200; ++round) {
        server.connect(round % 2 == 0 ? pingRequest : "{"); // closed without reading: no SIGPIPE
    }
    EXPECT_TRUE(server.answersPing());
    while (idle.size() < 34) { // two more than there is room for
        idle.push_back(server.connect());
    }
    EXPECT_EQ(messageOf(idle[0]), "Der Helper hat zu viele Verbindungen.");
    EXPECT_EQ(messageOf(idle[1]), "Der Helper hat zu viele Verbindungen.");
    send(idle[2], pingRequest);
    EXPECT_EQ(answerOf(idle[2]), pingAnswer) << "the others are still served";
}

TEST(Serving, ASlowClientIsClosedAfterHalfASecond) {
    const RunningServer server(milliseconds(500));
    const auto start = std::chrono::steady_clock::now();
    const FileDescriptor silent = server.connect();
    const FileDescriptor dripping = server.connect("{");
    EXPECT_TRUE(waitUntil([&] { // progress does not buy more time
        return ::send(dripping.get(), " ", 1, MSG_NOSIGNAL) < 0;
    }));
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_GE(took, milliseconds(500));
    EXPECT_LT(took, milliseconds(2000)) << "before the client itself gives up";
    EXPECT_EQ(messageOf(silent), "Die Anfrage war nicht rechtzeitig vollständig.");
    EXPECT_EQ(messageOf(dripping), "Die Anfrage war nicht rechtzeitig vollständig.");
}

TEST(Serving, RequestsBehindSlowOnesCountTheirWaiting) {
    const RunningServer server;
    std::vector<FileDescriptor> clients;
    for (int client = 0; client < 5; ++client) {
        // A quick request in between does not wipe out how long the others have waited.
        clients.push_back(
            server.connect(client % 2 == 0 ? R"({"action":"resetAllAuto"})" : pingRequest));
    }
    int longest = 0;
    for (std::size_t slow = 0; slow < clients.size(); slow += 2) {
        longest = std::max(longest, std::stoi(messageOf(clients[slow])));
    }
    EXPECT_GE(longest, 3 * 80) << "the last one has waited for those before it";
}

TEST(Serving, RequestsComeBetweenThePiecesOfOtherWorkAndCannotHoldItUp) {
    RunningServer server;
    EXPECT_TRUE(server.answersPing());
    EXPECT_EQ(server.steps, 0);
    server.hasWork = true;
    for (int round = 0; round < 10; ++round) {
        const int before = server.steps;
        EXPECT_TRUE(server.answersPing());
        EXPECT_LE(server.steps - before, 3) << "at most the piece under way, however it is met";
    }
    const auto flood = std::async(std::launch::async, [&] {
        while (server.steps < 20) {
            server.connect(pingRequest);
        }
    });
    flood.wait();
}

struct FixedConsoleUser final : ConsoleUser {
    explicit FixedConsoleUser(std::optional<uid_t> fixed) : user(fixed) {}
    std::optional<uid_t> current() const override { return user; }
    std::optional<uid_t> user;
};

TEST(Serving, OthersGetToKnowThatTheyMayNot) {
    constexpr const char* setRequest = R"({"action":"setFanRPM","fanIndex":0,"rpm":4000})";
    const std::tuple<PeerAccess, const char*, const char*> rows[] = {
        {PeerAccess::nothing, pingRequest,
         "Die Lüfter steuert nur, wer am Bildschirm angemeldet ist, oder root."},
        {PeerAccess::handBack, pingRequest, "ping"},
        {PeerAccess::handBack, R"({"action":"resetFanAuto"})", "resetFanAuto"},
        {PeerAccess::handBack, setRequest,
         "Feste Drehzahlen setzt nur, wer am Bildschirm angemeldet ist. Zurück auf macOS-Automatik "
         "geht weiterhin."},
        {PeerAccess::everything, setRequest, "setFanRPM"}};
    for (const auto& [access, request, sentence] : rows) {
        const RunningServer server(minutes(1), access);
        EXPECT_EQ(messageOf(server.connect(request)), sentence);
        const bool isCarriedOut = std::string_view(request).find(sentence) != std::string::npos;
        EXPECT_EQ(server.handled, isCarriedOut ? 1 : 0);
        EXPECT_EQ(server.log().find("refused for user " + std::to_string(::getuid()) + "\n") ==
                      std::string::npos,
                  isCarriedOut);
    }
    const RunningServer server(minutes(1), PeerAccess::nothing);
    std::vector<FileDescriptor> strangers;
    for (int client = 0; client < 5; ++client) {
        strangers.push_back(server.connect());
    }
    EXPECT_EQ(answerOf(strangers.back()), "") << "no room for many of them";
}

TEST(Serving, RightsBelongToTheUserAtTheScreenAndTheWayBackToTheLastOneToForce) {
    const TemporaryFolder folder;
    const auto memory = folder.path() / "lock";
    writeFile(memory, "nonsense");
    FixedConsoleUser console(501);
    {
        PeerRights rights(console, memory);
        const std::pair<std::optional<uid_t>, PeerAccess> rows[] = {{0, PeerAccess::everything},
                                                                    {501, PeerAccess::everything},
                                                                    {502, PeerAccess::nothing},
                                                                    {{}, PeerAccess::nothing}};
        for (const auto& [peer, access] : rows) {
            EXPECT_EQ(rights.of(peer), access);
        }
        rights.rememberForcing(501);
    }
    console.user = 502;
    PeerRights rights(console, memory); // of a helper that has been started anew
    EXPECT_EQ(rights.of(501), PeerAccess::handBack);
    EXPECT_EQ(rights.of(502), PeerAccess::everything);
    rights.rememberForcing(502);
    console.user.reset();
    EXPECT_EQ(rights.of(501), PeerAccess::nothing);
    EXPECT_EQ(rights.of({}), PeerAccess::nothing);
    EXPECT_EQ(PeerRights(console, memory).of(502), PeerAccess::handBack);
}

TEST(Serving, ASecondInstanceIsRefusedAndAStaleFileReplaced) {
    RunningServer first;
    const auto another = [&](
                             const std::filesystem::path& path, milliseconds patience = {},
                             const std::function<bool()>& isStopRequested = [] { return false; }) {
        EventLoop loop;
        HelperServer(
            loop,
            {.socketPath = path, .takeOverPatience = patience, .isStopRequested = isStopRequested},
            {}, {}, first.helperLog);
    };
    EXPECT_THAT([&] { another(first.path); },
                ThrowsMessage<std::runtime_error>(HasSubstr("another instance")));
    EXPECT_THROW(another(first.path, minutes(10), [] { return true; }), std::runtime_error)
        << "it has been asked to end";
    EXPECT_TRUE(first.answersPing()) << "unharmed";
    bool hasAsked = false;
    EXPECT_NO_THROW(another(first.path, minutes(1), [&] {
        if (!std::exchange(hasAsked, true)) {
            first.stop();
        }
        return false;
    })) << "it waits for the one that is on its way out";
    EXPECT_TRUE(hasAsked);
    EXPECT_FALSE(std::filesystem::exists(first.path)) << "the socket is removed at the end";

    listenOnUnixSocket(first.path, 0600); // a stale file
    EXPECT_NO_THROW(another(first.path));
    writeFile(first.path, "precious");
    EXPECT_THROW(another(first.path), std::runtime_error) << "a file that is no socket is kept";
    EXPECT_EQ(readFile(first.path), "precious");
    EXPECT_THAT([&] { another(first.folder.path() / "missing" / "helper.sock"); },
                ThrowsMessage<std::exception>(HasSubstr("missing")));
}

/// Takes every descriptor that the process may have.
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

private:
    struct rlimit kept_ {};
    std::vector<FileDescriptor> taken_;
};

TEST(Serving, SurvivesWithoutDescriptors) {
    for (const std::size_t connections : {3U, 0U}) {
        const RunningServer server;
        std::vector<FileDescriptor> idle(connections);
        for (FileDescriptor& client : idle) {
            client = server.connect();
        }
        EXPECT_TRUE(server.answersPing()) << "its thread runs, and has accepted those before";
        const FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const sockaddr_un address = unixSocketAddress(server.path.string());
        DescriptorFamine famine;
        const auto* end = reinterpret_cast<const sockaddr*>(&address);
        ASSERT_EQ(::connect(client.get(), end, sizeof address), 0);
        send(client, pingRequest);
        if (connections == 0) { // to give up for the new one
            char line[200];
            EXPECT_TRUE(
                waitUntil([&] { return ::pread(server.logFile.get(), line, sizeof line, 0) > 0; }));
            famine.end();
        }
        EXPECT_EQ(answerOf(client), pingAnswer);
        famine.end();
        EXPECT_TRUE(server.answersPing());
        const std::string log = server.log();
        EXPECT_THAT(log, HasSubstr(connections > 0 ? "dropped, too many connections"
                                                   : "cannot accept connections: Too many open"));
        EXPECT_EQ(log.find('\n'), log.size() - 1) << "one line, not one per attempt";
    }
}

TEST(Serving, GeneratedBadRequestsDoNoHarm) {
    const RunningServer server;
    std::mt19937 random(7);
    int refused = 0;
    const std::string request = R"("action":"setFanRPM","fanIndex":null,"rpm":2500,"x":[{}]})";
    for (int round = 0; round < VENTARO_BAD_REQUESTS; ++round) {
        const std::string noise(round % 50 == 0 ? random() % 6000 : 0, '{');
        const FileDescriptor client = server.connect("{" + noise + damaged(request, random));
        ::shutdown(client.get(), SHUT_WR);
        refused += decodeHelperResponse(answerOf(client)).success ? 0 : 1;
    }
    EXPECT_EQ(refused + server.handled, VENTARO_BAD_REQUESTS);
    EXPECT_GT(refused, VENTARO_BAD_REQUESTS * 9 / 10);
    EXPECT_TRUE(server.answersPing());
}

} // namespace
} // namespace ventaro
