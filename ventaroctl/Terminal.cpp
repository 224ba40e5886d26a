#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace ventaro {

namespace {

constexpr std::string_view enterScreen = "\x1b[?1049h\x1b[?25l";
constexpr std::string_view leaveScreen = "\x1b[?25h\x1b[?1049l";

void writeToTerminal(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return; // a terminal that is gone ends the program with a signal
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
}

std::string styled(std::string_view text, const char* code, const TerminalStyle& style) {
    return style.color ? "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m"
                       : std::string(text);
}

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

} // namespace

bool isTerminal() { return ::isatty(STDOUT_FILENO) == 1; }

TerminalStyle terminalStyle() {
    TerminalStyle style;
    const char* noColor = std::getenv("NO_COLOR");
    style.color = isTerminal() && (noColor == nullptr || *noColor == '\0');
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0) {
        style.columns = size.ws_col;
        style.rows = size.ws_row;
    }
    return style;
}

std::string colored(std::string_view text, TemperatureBand band, const TerminalStyle& style) {
    switch (band) {
    case TemperatureBand::red:
        return styled(text, "31", style);
    case TemperatureBand::orange:
        return styled(text, "38;5;208", style);
    case TemperatureBand::yellow:
        return styled(text, "33", style);
    case TemperatureBand::green:
        return styled(text, "32", style);
    }
    return std::string(text);
}

std::string bold(std::string_view text, const TerminalStyle& style) {
    return styled(text, "1", style);
}

std::string dimmed(std::string_view text, const TerminalStyle& style) {
    return styled(text, "2", style);
}

int displayWidth(std::string_view text) {
    int width = 0;
    for (const char byte : text) {
        width += isContinuation(byte) ? 0 : 1;
    }
    return width;
}

std::string fitted(std::string_view text, int width) {
    const int missing = width - displayWidth(text);
    if (missing >= 0) {
        return std::string(text) + std::string(static_cast<std::size_t>(missing), ' ');
    }
    std::size_t end = 0;
    for (int kept = 0; kept < width && end < text.size(); ++kept) {
        do {
            ++end;
        } while (end < text.size() && isContinuation(text[end]));
        if (kept == width - 2) {
            break; // the last column is the ellipsis'
        }
    }
    return width < 2 ? std::string(text.substr(0, width < 1 ? 0 : end))
                     : std::string(text.substr(0, end)) + "…";
}

std::string rightAligned(std::string_view text, int width) {
    const int missing = width - displayWidth(text);
    return std::string(missing > 0 ? static_cast<std::size_t>(missing) : 0, ' ') +
           std::string(text);
}

std::string timeOfDay() {
    std::array<char, 16> text{};
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::localtime_r(&now, &parts);
    std::strftime(text.data(), text.size(), "%H:%M:%S", &parts);
    return text.data();
}

LiveScreen::LiveScreen(bool takeScreen)
    : signals_(takeScreen ? std::vector{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGWINCH}
                          : std::vector{SIGINT, SIGTERM, SIGHUP, SIGQUIT}),
      hasScreen_(takeScreen) {
    loop_.watch(signals_.descriptor(), [this] { takeSignals(); });
    if (hasScreen_) {
        writeToTerminal(enterScreen);
    }
}

LiveScreen::~LiveScreen() {
    if (hasScreen_) {
        writeToTerminal(leaveScreen);
    }
}

void LiveScreen::show(std::string_view frame) {
    // Each line clears what the last frame left behind it, so that nothing flickers.
    std::string text = "\x1b[H";
    for (const char character : frame) {
        text += character == '\n' ? std::string("\x1b[K\n") : std::string(1, character);
    }
    writeToTerminal(text + "\x1b[K\x1b[J");
}

bool LiveScreen::wait(std::chrono::milliseconds time) {
    loop_.turn(time);
    return !loop_.isStopped();
}

void LiveScreen::takeSignals() {
    while (const auto arrival = signals_.take()) {
        if (arrival->signal == SIGTSTP) {
            writeToTerminal(leaveScreen);
            ::raise(SIGSTOP); // goes on here once the user wants the program back
            writeToTerminal(enterScreen);
        } else if (arrival->signal != SIGWINCH) {
            loop_.stop();
        }
    }
}

} // namespace ventaro
