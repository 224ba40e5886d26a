#include "HelperClient.h"
#include "MachineRoot.h"
#include "UnixSocket.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

// The helper of the simulated machine that this runs on, beside a bare echo server.

namespace ventaro {
namespace {

std::filesystem::path helperSocket() {
    const char* root = std::getenv(MachineRoot::environmentVariable);
    return MachineRoot(root != nullptr ? root : "/").resolve(HelperConstants::socketPath);
}

void BM_Ping(benchmark::State& state) {
    const HelperClient client(helperSocket());
    for (auto _ : state) {
        if (!client.isDaemonActive()) {
            state.SkipWithError("the helper does not answer");
        }
    }
}
BENCHMARK(BM_Ping)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Ping)->UseRealTime()->Unit(benchmark::kMicrosecond)->Threads(8)->Iterations(12500);

void BM_BareEcho(benchmark::State& state) {
    const std::filesystem::path path = helperSocket().parent_path() / "echo.sock";
    const FileDescriptor listener = listenOnUnixSocket(path, 0600);
    ::fcntl(listener.get(), F_SETFL, 0); // blocking, as a bare server is
    std::array<char, maximumHelperMessageSize> buffer;
    const auto receive = [&buffer](const FileDescriptor& socket) {
        const ssize_t count = ::recv(socket.get(), buffer.data(), buffer.size(), 0);
        return std::string_view(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    };
    const auto send = [](const FileDescriptor& socket, std::string_view text) {
        ::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL);
    };
    const pid_t server = ::fork(); // a process of its own, as the helper is one
    while (server == 0) {
        const FileDescriptor client(::accept(listener.get(), nullptr, nullptr));
        send(client, receive(client));
    }
    for (auto _ : state) {
        const FileDescriptor socket = connectToUnixSocket(path, std::chrono::seconds(2));
        send(socket, R"({"action":"ping"})");
        if (receive(socket).empty()) {
            state.SkipWithError("no echo");
        }
    }
    ::kill(server, SIGKILL);
    ::waitpid(server, nullptr, 0);
    ::unlink(path.c_str());
}
BENCHMARK(BM_BareEcho)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace ventaro
