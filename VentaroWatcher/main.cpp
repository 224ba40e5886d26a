#include "FanWatcher.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* usage =
    "Usage: VentaroWatcher LOCK SOCKET\n"
    "Hands the fans back to the automatic control when the program that steers them ends without\n"
    "having done so. That program starts it, with a pipe as its input; LOCK is the file that the\n"
    "one who steers keeps locked, SOCKET the helper's. It goes on in the background.\n"
    "\n"
    "  --help     show this help and exit\n"
    "  --version  show the version and exit\n";

/// Nothing that ends the one that is watched is to end this process, too: not its terminal, not its
/// session, not a signal to its group.
void standAlone() {
    ::setsid();
    [[maybe_unused]] const int ignored = ::chdir("/");
    // Whatever else it has open was left to this process by mistake, and may keep others waiting.
    constexpr int most = 1024;
    for (int descriptor = STDERR_FILENO + 1; descriptor < most; ++descriptor) {
        ::close(descriptor);
    }
}

} // namespace

int main(int argc, char** argv) {
    constexpr int wrongUsage = 2;
    const std::string_view argument = argc > 1 ? argv[1] : "";
    if (argc == 2 && argument == "--help") {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    if (argc == 2 && argument == "--version") {
        std::puts("VentaroWatcher " VENTARO_VERSION);
        return EXIT_SUCCESS;
    }
    if (argc != 3) {
        std::fputs(usage, stderr);
        return wrongUsage;
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        std::signal(signal, SIG_IGN); // from the first moment on
    }
    const pid_t background = ::fork();
    if (background != 0) {
        return background > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    standAlone();
    if (ventaro::endsWell(STDIN_FILENO)) {
        return EXIT_SUCCESS;
    }
    for (const int signal : {SIGINT, SIGTERM}) {
        std::signal(signal, SIG_DFL);
    }
    constexpr std::chrono::seconds patience(30);
    return ventaro::handFansBack(argv[2], argv[1], patience) ? EXIT_SUCCESS : EXIT_FAILURE;
}
