#include "ControlHolder.h"
#include "ControlWatcher.h"
#include "DispatchGate.h"
#include "FanControllerViewModel.h"
#include "FanRequests.h"
#include "HardwareInventory.h"
#include "HelperClient.h"
#include "MonitoringTimer.h"
#include "SMCService.h"
#include "TaskRunner.h"

#include <chrono>
#include <future>
#include <thread>
#include <utility>

// How a controller ends.

namespace ventaro {

namespace {

/// Why the helper has not confirmed that all fans are automatic; no value if it has.
std::optional<std::string> failureOfReset(const HelperClient& helper) {
    try {
        if (!helper.isDaemonActive()) {
            return HelperClientError(HelperClientError::Code::notReachable).description();
        }
        const HelperResponse answer =
            helper.sendSocketRequest({HelperAction::resetAllAuto, std::nullopt, std::nullopt});
        return answer.success ? std::nullopt : std::optional(answer.message);
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace

bool FanControllerViewModel::isHandBackWished() const {
    return resetToAutoOnQuit() && !holder_->other();
}

void FanControllerViewModel::handleAppTermination() const {
    if (isHandBackWished()) {
        failureOfReset(helper_);
    }
}

bool FanControllerViewModel::beginShutdown() {
    if (std::exchange(isShutDown_, true)) {
        return false;
    }
    timer_.reset();
    inventory_->endCollection();
    spare_.reset();
    Q_EMIT timerChanged();
    return true;
}

std::optional<std::string>
FanControllerViewModel::shutdown(const std::function<bool(const std::string&)>& goesOn) {
    constexpr std::chrono::milliseconds pause(200);
    if (!beginShutdown()) {
        return std::nullopt;
    }
    dispatchGate()->close();
    if (!isHandBackWished()) {
        return std::nullopt;
    }
    const bool hasForced = requests_->supervisor().wish() != FanSupervisor::Wish::none;
    auto failure = failureOfReset(helper_);
    while (failure && hasForced && !smc_.areFansAutomatic()) {
        if (!goesOn(*failure)) {
            return failure; // the watcher goes on
        }
        std::this_thread::sleep_for(pause);
        failure = failureOfReset(helper_);
    }
    watcher_->end();
    return std::nullopt;
}

std::optional<std::string> FanControllerViewModel::shutdown() {
    constexpr std::chrono::seconds patience(5);
    const auto end = std::chrono::steady_clock::now() + patience;
    return shutdown([end](const std::string&) { return std::chrono::steady_clock::now() < end; });
}

void FanControllerViewModel::shutdownAtOnce() {
    constexpr std::chrono::seconds longest(1);
    if (!beginShutdown()) {
        return;
    }
    const auto isFree = std::make_shared<std::promise<bool>>();
    runner_.detach(TaskPriority::userInitiated,
                   [&helper = helper_, gate = dispatchGate(), isWished = isHandBackWished(),
                    isFree]() -> TaskRunner::Action {
                       gate->close();
                       isFree->set_value(!isWished || !failureOfReset(helper));
                       return {};
                   });
    auto result = isFree->get_future();
    if (result.wait_for(longest) == std::future_status::ready && result.get()) {
        watcher_->end();
    }
}

} // namespace ventaro
