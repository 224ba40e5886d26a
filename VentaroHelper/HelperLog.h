#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace ventaro {

/// One descriptor of a log that nobody can fill the disk with: of many lines within a minute only
/// the first are written and the others counted, and a file that has grown too large begins anew. A
/// line that cannot be written is lost without further ado. One thread.
class BoundedLog {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int linesPerMinute = 100;
    static constexpr std::size_t largestFile = 1 << 20; ///< bytes

    /// The descriptor is not owned.
    explicit BoundedLog(int descriptor) : descriptor_(descriptor) {}

    void line(std::string_view text, Clock::time_point now = Clock::now());

private:
    void write(std::string_view text) const;

    int descriptor_;
    Clock::time_point minuteBegan_{};
    int lines_ = 0; ///< since then, written or not
};

/// The helper's log: changes on one descriptor, errors on another, a line with a time stamp each.
/// One thread.
class HelperLog {
public:
    /// Neither descriptor is owned.
    HelperLog(int changes, int errors) : changes_(changes), errors_(errors) {}

    void change(std::string_view line) const { changes_.line(line); }
    void error(std::string_view line) const { errors_.line(line); }

private:
    mutable BoundedLog changes_;
    mutable BoundedLog errors_;
};

/// Text from outside, safe inside a line: control characters and bytes beyond ASCII as \xNN, cut
/// to a length that a line can bear.
std::string escapedForLog(std::string_view text);

} // namespace ventaro
