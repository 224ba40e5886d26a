#include "FailureReporter.h"

#include "FanControllerViewModel.h"
#include "TaskRunner.h"

#include <QPointer>
#include <utility>

namespace ventaro {

namespace {

/// Longer than all exchanges of one action can take; a later status is of something else.
constexpr std::chrono::seconds longestAction(20);

} // namespace

FailureReporter::FailureReporter(FanControllerViewModel& controller, TaskRunner& tasks,
                                 std::function<bool()> isStatusLineVisible,
                                 std::function<void(const QString&)> tell)
    : controller_(controller),
      tasks_(tasks),
      isStatusLineVisible_(std::move(isStatusLineVisible)),
      tell_(std::move(tell)) {
    connect(&controller, &FanControllerViewModel::statusMessageChanged, this,
            &FailureReporter::statusChanges);
    connect(&controller, &FanControllerViewModel::isErrorStatusChanged, this,
            &FailureReporter::statusChanges);
    connect(&controller, &FanControllerViewModel::isInstallingHelperChanged, this,
            [this] { deadline_ = Clock::now() + longestAction; });
}

void FailureReporter::actionStarts() {
    isWaiting_ = true;
    deadline_ = Clock::now() + longestAction;
    if (!isJudging_ && controller_.isErrorStatus() && !isStatusLineVisible_()) {
        // The same failure once more would not be heard of.
        controller_.dismissStatusMessage();
    }
}

void FailureReporter::statusChanges() {
    if (std::exchange(isJudging_, true)) {
        return;
    }
    // Text and kind of a status change one after the other.
    tasks_.onMainThread([self = QPointer(this)] {
        if (self) {
            self->judge();
        }
    });
}

void FailureReporter::judge() {
    isJudging_ = false;
    // Until something fails: a message may only say that an action has begun.
    const bool hasFailed = controller_.hasStatusMessage() && controller_.isErrorStatus();
    if (!hasFailed || !std::exchange(isWaiting_, false)) {
        return;
    }
    const bool isOwn = controller_.isInstallingHelper() || Clock::now() <= deadline_;
    if (isOwn && !isStatusLineVisible_()) {
        tell_(QString::fromStdString(*controller_.statusMessage()));
    }
}

} // namespace ventaro
