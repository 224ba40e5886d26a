#include "HelperClient.h"

#include "JsonObject.h"
#include "ScriptedServer.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <exception>
#include <functional>
#include <thread>
#include <vector>

namespace {

/// Called before this program sends on a socket, to put a helper's moves at a certain point.
std::function<void(int socket)> beforeSend;
/// The most bytes that one call sends.
std::size_t mostSent = SIZE_MAX;

} // namespace

extern "C" ssize_t send(int socket, const void* bytes, std::size_t size, int flags) {
    if (beforeSend) {
        beforeSend(socket);
    }
    return ::sendto(socket, bytes, std::min(size, mostSent), flags, nullptr, 0);
}

namespace ventaro {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const HelperRequest ping{HelperAction::ping, {}, {}};

void waitForEnd(int client) {
    while (!receiveText(client).empty()) {
    }
}

class HelperExchange : public testing::Test {
protected:
    /// What a client meets whose helper follows `script`: the error's code, 0 for a response, -1
    /// for a decoding error.
    int outcomeOf(std::function<void(int)> script, milliseconds timeout = milliseconds(2000)) {
        const ScriptedServer helper(path_, std::move(script));
        return outcomeAt(HelperClient(path_, timeout, timeout));
    }
    int outcomeAt(const HelperClient& client) {
        try {
            response_ = client.sendSocketRequest(ping);
            return 0;
        } catch (const HelperClientError& error) {
            description_ = error.description();
            return static_cast<int>(error.code());
        } catch (const DecodingError&) {
            return -1;
        }
    }

    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_.path() / "helper.sock";
    HelperResponse response_{};
    std::string description_;
};

TEST_F(HelperExchange, SendsTheRequestAloneAndReturnsTheResponse) {
    std::string request;
    EXPECT_EQ(outcomeOf([&](int client) {
                  request = receiveText(client);
                  pollfd more{client, POLLIN, 0};
                  EXPECT_EQ(::poll(&more, 1, 0), 0) << "nothing more, not even the end";
                  sendText(client, R"({"success":false,"message":"nein","version":1})");
              }),
              0);
    EXPECT_EQ(request, R"({"action":"ping"})");
    EXPECT_EQ(response_, (HelperResponse{false, "nein", 1})) << "the caller decides";
}

TEST_F(HelperExchange, WithoutAListenerTheConstantPathIsNamed) {
    const HelperClient client(path_);
    const char* sentence =
        "Hintergrund-Helper nicht erreichbar (/var/run/com.ventaro.helper.sock).";
    EXPECT_EQ(outcomeAt(client), 2);
    EXPECT_EQ(description_, sentence);
    listenOnUnixSocket(path_, 0600); // and closed at once: a stale file
    EXPECT_EQ(outcomeAt(client), 2);
    EXPECT_FALSE(client.isDaemonActive());
}

TEST_F(HelperExchange, NoAnswerComesAtTheEndOfTheConnectionOrAfterTwoSeconds) {
    EXPECT_EQ(outcomeOf([](int client) { receiveText(client); }), 3);
    EXPECT_EQ(description_, "Keine Antwort vom Helper erhalten.");
    const ScriptedServer helper(path_, waitForEnd);
    const auto start = steady_clock::now();
    EXPECT_EQ(outcomeAt(HelperClient(path_)), 3);
    const auto took = steady_clock::now() - start;
    EXPECT_GE(took, milliseconds(1990));
    EXPECT_LT(took, milliseconds(3000));
}

TEST_F(HelperExchange, OnlyOneReadIsDecoded) {
    const std::string whole = R"({"success":true,"message":"","version":1})";
    const auto padded = [&](std::size_t size) {
        return whole.substr(0, 27) + std::string(size - whole.size(), 'x') + whole.substr(27);
    };
    const auto answer = [&](const std::string& text) {
        return outcomeOf([text](int client) {
            receiveText(client);
            sendText(client, text);
            waitForEnd(client);
        });
    };
    EXPECT_EQ(answer(padded(4096)), 0);
    EXPECT_EQ(response_.message.size(), 4096 - whole.size());
    EXPECT_EQ(answer(padded(4097)), -1);
    EXPECT_EQ(answer(whole.substr(0, 20)), -1) << "the second piece is never waited for";
    EXPECT_EQ(answer(whole + whole), -1);
    EXPECT_EQ(answer("garbage"), -1);
}

TEST_F(HelperExchange, AHelperThatIsGoneBeforeTheRequestNeverKillsTheProcess) {
    beforeSend = [](int socket) {
        pollfd entry{socket, 0, 0};
        ::poll(&entry, 1, -1); // until the helper has closed its end
    };
    EXPECT_EQ(outcomeOf([](int) {}), 4);
    beforeSend = nullptr;
    EXPECT_EQ(description_, "Senden an Helper fehlgeschlagen.");
    mostSent = 5;
    EXPECT_EQ(outcomeOf(waitForEnd), 4) << "a short write is not continued";
    mostSent = SIZE_MAX;
}

TEST_F(HelperExchange, WithoutADescriptorThereIsNoSocket) {
    const HelperClient client(path_);
    std::exception_ptr failure;
    struct rlimit limit {};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t kept = limit.rlim_cur;
    limit.rlim_cur = 3; // standard descriptors only
    ::setrlimit(RLIMIT_NOFILE, &limit);
    try {
        client.sendSocketRequest(ping);
    } catch (...) {
        failure = std::current_exception(); // looked at later: sanitizers need descriptors, too
    }
    limit.rlim_cur = kept;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    try {
        std::rethrow_exception(failure);
    } catch (const HelperClientError& error) {
        EXPECT_EQ(error.code(), HelperClientError::Code::socketNotCreated);
        EXPECT_EQ(error.description(), "Socket konnte nicht erstellt werden.");
    }
}

TEST_F(HelperExchange, SignalsDoNotEndTheWaiting) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGUSR1, &action, nullptr);
    const pthread_t waiting = ::pthread_self();
    EXPECT_EQ(outcomeOf([waiting](int client) {
                  receiveText(client);
                  for (int round = 0; round < 20; ++round) {
                      ::pthread_kill(waiting, SIGUSR1);
                      std::this_thread::sleep_for(milliseconds(1));
                  }
                  sendText(client, R"({"success":true,"message":"","version":1})");
                  waitForEnd(client);
              }),
              0);
}

TEST_F(HelperExchange, NoPathLeaksADescriptor) {
    const std::size_t before = openDescriptors();
    for (int round = 0; round < 3; ++round) {
        outcomeAt(HelperClient(path_));
        outcomeOf([](int client) { receiveText(client); });
        outcomeOf([](int client) { sendText(client, "{"); });
        outcomeOf([](int client) { waitForEnd(client); }, milliseconds(5));
        const ScriptedServer helper(path_, waitForEnd);
        EXPECT_THROW(
            HelperClient(path_).sendSocketRequest({HelperAction::setFanRPM, 0, std::nan("")}),
            EncodingError);
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace ventaro
