#pragma once

#include <QObject>
#include <chrono>
#include <functional>

namespace ventaro {

class FanControllerViewModel;
class TaskRunner;

/// Tells the user of an action's failure where nothing on screen shows the status line: once for
/// each action that was started from the status item. Main thread only.
class FailureReporter : public QObject {
    Q_OBJECT

public:
    /// `isStatusLineVisible` says whether the user can read the status line; `tell` gets its text.
    FailureReporter(FanControllerViewModel& controller, TaskRunner& tasks,
                    std::function<bool()> isStatusLineVisible,
                    std::function<void(const QString&)> tell);

    /// To be called just before an action of the controller is started.
    void actionStarts();

private:
    using Clock = std::chrono::steady_clock;

    void statusChanges();
    void judge();

    FanControllerViewModel& controller_;
    TaskRunner& tasks_;
    const std::function<bool()> isStatusLineVisible_;
    const std::function<void(const QString&)> tell_;
    bool isWaiting_ = false; ///< for the outcome of an action
    bool isJudging_ = false;
    Clock::time_point deadline_;
};

} // namespace ventaro
