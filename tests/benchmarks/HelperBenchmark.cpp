#include "HelperClient.h"
#include "MachineRoot.h"
#include "NumberFormat.h"
#include "UnixSocket.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

// Measures the helper of the simulated machine it runs on, beside a bare echo server.

namespace {

using namespace ventaro;
using Clock = std::chrono::steady_clock;

const HelperRequest ping{HelperAction::ping, {}, {}};

/// A process, as the helper is one, that accepts, reads once, writes the same back and closes.
pid_t startEchoServer(const FileDescriptor& listener) {
    const pid_t process = ::fork();
    if (process != 0) {
        return process;
    }
    std::array<char, maximumHelperMessageSize> buffer;
    for (;;) {
        const FileDescriptor client(::accept(listener.get(), nullptr, nullptr));
        const ssize_t count = ::recv(client.get(), buffer.data(), buffer.size(), 0);
        ::send(client.get(), buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0,
               MSG_NOSIGNAL);
    }
}

void exchangeEcho(const std::filesystem::path& path) {
    constexpr std::string_view request = R"({"action":"ping"})";
    std::array<char, maximumHelperMessageSize> buffer;
    const FileDescriptor socket = connectToUnixSocket(path, std::chrono::seconds(2));
    ::send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL);
    if (::recv(socket.get(), buffer.data(), buffer.size(), 0) <= 0) {
        std::abort();
    }
}

double microseconds(const std::function<void()>& action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double median(std::vector<double>& values) {
    std::nth_element(values.begin(),
                     values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Binds a process to one processor, or to all. Otherwise the scheduler's placing of the processes,
/// different at each start, outweighs what they do.
void bindProcess(int process, bool toOne) {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    for (long number = 0; number < (toOne ? 1 : ::sysconf(_SC_NPROCESSORS_ONLN)); ++number) {
        CPU_SET(static_cast<unsigned long>(number), &processors);
    }
    ::sched_setaffinity(process, sizeof processors, &processors);
}

void comparePing(const std::filesystem::path& helperPath, int helperProcess) {
    constexpr int turns = 200;
    constexpr int roundsPerTurn = 100;
    const std::filesystem::path echoPath = helperPath.parent_path() / "echo.sock";
    bindProcess(helperProcess, true);
    bindProcess(0, true);
    const FileDescriptor listener = listenOnUnixSocket(echoPath, 0600);
    ::fcntl(listener.get(), F_SETFL, 0); // blocking, as a bare server is
    const pid_t echoServer = startEchoServer(listener);
    const HelperClient client(helperPath);
    std::vector<double> helper;
    std::vector<double> echo;
    // In turns, so that both meet the same machine, but long enough not to meet each other's end.
    for (int turn = 0; turn < turns; ++turn) {
        for (int round = 0; round < roundsPerTurn; ++round) {
            helper.push_back(microseconds([&] { client.sendSocketRequest(ping); }));
        }
        for (int round = 0; round < roundsPerTurn; ++round) {
            echo.push_back(microseconds([&] { exchangeEcho(echoPath); }));
        }
    }
    ::kill(echoServer, SIGKILL);
    bindProcess(helperProcess, false);
    bindProcess(0, false);
    const double helperMedian = median(helper);
    const double echoMedian = median(echo);
    std::printf("ping, median              %s µs, all on one processor\n",
                formatFixed(helperMedian, 1).c_str());
    std::printf("bare echo server, median  %s µs (ratio %s)\n", formatFixed(echoMedian, 1).c_str(),
                formatFixed(helperMedian / echoMedian, 2).c_str());
}

void hammer(const std::filesystem::path& helperPath) {
    constexpr int clients = 8;
    constexpr int each = 12500;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    const double took = microseconds([&] {
        for (int client = 0; client < clients; ++client) {
            threads.emplace_back([&] {
                const HelperClient helper(helperPath);
                for (int round = 0; round < each; ++round) {
                    failures += helper.isDaemonActive() ? 0 : 1;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
    std::printf("pings by %d clients        %d, %d failures, %s a second\n", clients,
                clients * each, failures.load(),
                formatFixed(clients * each / took * 1e6, 0).c_str());
}

std::string statusLine(int process, const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return line.substr(name.size() + 1 +
                               line.substr(name.size() + 1).find_first_not_of(" \t"));
        }
    }
    return "?";
}

} // namespace

/// HelperBenchmark PID: the helper's process.
int main(int argc, char** argv) {
    const char* root = std::getenv(MachineRoot::environmentVariable);
    const int process = argc > 1 ? std::atoi(argv[1]) : 0;
    if (root == nullptr || process == 0) {
        std::fputs("scripts/benchmark runs this\n", stderr);
        return 2;
    }
    const auto socket = MachineRoot(root).resolve(HelperConstants::socketPath);
    std::printf("helper, resident, idle    %s\n", statusLine(process, "VmRSS").c_str());
    const std::string before = statusLine(process, "voluntary_ctxt_switches");
    std::this_thread::sleep_for(std::chrono::seconds(10));
    const std::string after = statusLine(process, "voluntary_ctxt_switches");
    std::printf("helper, wake-ups in 10 s  %d\n", std::stoi(after) - std::stoi(before));
    comparePing(socket, process);
    hammer(socket);
    std::printf("helper, resident, after   %s\n", statusLine(process, "VmRSS").c_str());
    return EXIT_SUCCESS;
}
