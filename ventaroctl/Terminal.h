#pragma once

#include "EventLoop.h"
#include "SignalWatch.h"
#include "TemperatureBand.h"

#include <chrono>
#include <string>
#include <string_view>

namespace ventaro {

/// How a text is to be shown.
struct TerminalStyle {
    bool color = false;
    int columns = 80;
    int rows = 24;
};

/// Whether standard output is a terminal, and what it can show. Colours yield to NO_COLOR.
bool isTerminal();
TerminalStyle terminalStyle();

/// `text` in the colour of a temperature band.
std::string colored(std::string_view text, TemperatureBand band, const TerminalStyle& style);
std::string bold(std::string_view text, const TerminalStyle& style);
std::string dimmed(std::string_view text, const TerminalStyle& style);

/// The number of characters of a UTF-8 text, each taken to be one column wide.
int displayWidth(std::string_view text);
/// `text` filled up with blanks to `width` columns, or cut to them with a final "…".
std::string fitted(std::string_view text, int width);
/// `text` right-aligned in `width` columns.
std::string rightAligned(std::string_view text, int width);

/// The time on the wall, "14:02:19".
std::string timeOfDay();

/// Holds the terminal's alternate screen for a view that redraws itself, and watches for the
/// signals that end it. One at a time; the destructor gives the screen back.
class LiveScreen {
public:
    /// `takeScreen`: false only watches the signals.
    explicit LiveScreen(bool takeScreen);
    ~LiveScreen();
    LiveScreen(const LiveScreen&) = delete;
    LiveScreen& operator=(const LiveScreen&) = delete;

    /// Puts `frame` in place of the last one.
    static void show(std::string_view frame);
    /// Waits until the time is over or the terminal's size changes; false if the user or the system
    /// ends the view.
    bool wait(std::chrono::milliseconds time);

private:
    void takeSignals();

    const SignalWatch signals_;
    EventLoop loop_;
    const bool hasScreen_;
};

} // namespace ventaro
