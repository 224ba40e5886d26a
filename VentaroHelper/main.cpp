#include "BudgetedIOKit.h"
#include "HelperServer.h"
#include "HostPlatform.h"
#include "RequestHandler.h"
#include "SignalWatch.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace {

using namespace ventaro;

constexpr const char* usage =
    "Usage: VentaroHelper [--reset-all]\n"
    "The privileged helper of Ventaro. launchd starts it without arguments; it then serves\n"
    "/var/run/com.ventaro.helper.sock and sets fan speeds for the application.\n"
    "\n"
    "  --reset-all  return all fans to automatic control and exit\n"
    "  --help       show this help and exit\n"
    "  --version    show the version and exit\n";

/// An answer must be there 2 s after its request. The last exchange may begin just before this
/// budget ends and then take a second of its own; requests behind it are refused at once.
constexpr auto requestBudget = std::chrono::milliseconds(900);

Platform hostPlatform(const HelperLog& log) {
    HostPlatform host = makeHostPlatform(true);
    if (!host.machineRootIgnoredBecause.empty()) {
        log.error("machine root ignored: " + host.machineRootIgnoredBecause);
    }
    return std::move(host.platform);
}

int resetAll(const HelperLog& log) {
    constexpr auto patience = std::chrono::seconds(5);
    const auto end = FanRelease::Clock::now() + patience;
    const Platform platform = hostPlatform(log);
    SMCService smc(*platform.ioKit);
    const HelperLog silent(-1, -1);
    FanRelease release(smc, silent);
    auto failure = release.release(FanRelease::fans(smc.steerableFanCount()));
    for (auto due = release.due(); due && *due < end; due = release.due()) {
        std::this_thread::sleep_until(*due);
        release.step();
        if (!release.due()) {
            failure.reset();
        }
    }
    if (failure) {
        log.error("resetAllAuto refused: " + *failure);
        return EXIT_FAILURE;
    }
    std::puts("Alle Lüfter auf macOS-Automatik.");
    return EXIT_SUCCESS;
}

int serve(const HelperLog& log) {
    const StopSignals signals;
    std::signal(SIGPIPE, SIG_IGN);
    const Platform platform = hostPlatform(log);
    BudgetedIOKit ioKit(*platform.ioKit, SignalWatch::hasArrival);
    SMCService smc(ioKit);
    FanRelease release(smc, log);
    const std::unique_ptr<Clock> clock = makeHostClock(platform);
    EventLoop loop;
    FanWatch watch(smc, release, *clock, loop, log);
    RequestHandler handler(smc, release, watch, log);
    const std::filesystem::path socketPath =
        platform.machineRoot.resolve(HelperConstants::socketPath);
    PeerRights rights(*platform.consoleUser, HelperServer::lockPath(socketPath));
    const auto releaseComesFirst = [&] {
        return release.due() && (!watch.due() || *release.due() <= *watch.due());
    };
    HelperServer server(
        loop, {.socketPath = socketPath, .isStopRequested = SignalWatch::hasArrival},
        [&](const HelperRequest& request, const HelperServer::Origin& origin) {
            ioKit.restart(origin.waitingSince + requestBudget);
            HelperResponse response = handler.handle(request);
            if (request.action == HelperAction::setFanRPM && response.success) {
                rights.rememberForcing(origin.user);
            }
            return response;
        },
        [&](std::optional<uid_t> user) { return rights.of(user); }, log,
        {.due = [&] { return releaseComesFirst() ? release.due() : watch.due(); },
         .step =
             [&] {
                 ioKit.restart(HelperServer::Clock::now() + requestBudget);
                 releaseComesFirst() ? release.step() : watch.step();
             }});
    log.change("serving, version " VENTARO_VERSION);
    try {
        smc.open();
    } catch (const SMCError& error) {
        log.error("serving without an SMC for now: " + error.errorDescription());
    }
    watch.begin();
    server.run(signals.descriptor());
    log.change("stopped");
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    constexpr int wrongUsage = 2;
    const std::string_view argument = argc > 1 ? argv[1] : "";
    occupyStandardDescriptors();
    const HelperLog log(STDOUT_FILENO, STDERR_FILENO);
    try {
        if (argc == 1) {
            return serve(log);
        }
        if (argc == 2 && argument == "--reset-all") {
            return resetAll(log);
        }
        if (argc == 2 && argument == "--help") {
            std::fputs(usage, stdout);
            return EXIT_SUCCESS;
        }
        if (argc == 2 && argument == "--version") {
            std::puts("VentaroHelper " VENTARO_VERSION);
            return EXIT_SUCCESS;
        }
        std::fputs(usage, stderr);
        return wrongUsage;
    } catch (const std::exception& error) {
        log.error(error.what());
        return EXIT_FAILURE;
    }
}
