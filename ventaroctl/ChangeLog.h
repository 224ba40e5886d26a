#pragma once

#include "FanControllerViewModel.h"
#include "JsonObject.h"

#include <map>
#include <string>

namespace ventaro {

/// Prints a line to standard output for whatever changes in a controller. A line that nobody takes
/// at once is dropped, for the fans matter more; once the reader is gone the event loop ends. Main
/// thread only.
class ChangeLog {
public:
    /// The controller must outlive the log. `json`: lines are JSON objects.
    ChangeLog(FanControllerViewModel& controller, bool json);

    /// Prints `object`, or else `text` behind the time.
    void line(const JsonObjectWriter& object, const std::string& text) const;

private:
    void on(void (FanControllerViewModel::*changed)(), void (ChangeLog::*print)());
    void targets();
    void status();
    void helper();
    void competitor();
    void reader();

    FanControllerViewModel& controller_;
    const bool json_;
    std::map<int, double> printedTargets_;
    QObject context_;
};

} // namespace ventaro
