#pragma once

#include <string>
#include <string_view>

namespace ventaro {

/// The helper's log: changes on one descriptor, errors on another, a line with a time stamp each.
/// A line that cannot be written is lost without further ado. One thread.
class HelperLog {
public:
    /// Neither descriptor is owned.
    HelperLog(int changes, int errors) : changes_(changes), errors_(errors) {}

    void change(std::string_view line) const;
    void error(std::string_view line) const;

private:
    int changes_;
    int errors_;
};

/// Text from outside, safe inside a line: control characters and bytes beyond ASCII as \xNN, cut
/// to a length that a line can bear.
std::string escapedForLog(std::string_view text);

} // namespace ventaro
