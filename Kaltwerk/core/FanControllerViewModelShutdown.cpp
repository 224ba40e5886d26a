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

std::optional<std::string> FanControllerViewModel::handleAppTermination() const {
    return resetToAutoOnQuit() && !holder_->other() ? helper_.resetAllFans() : std::nullopt;
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
    const bool hasForced = requests_->supervisor().wish() != FanSupervisor::Wish::none;
    auto failure = handleAppTermination();
    while (failure && hasForced && !smc_.areFansAutomatic()) {
        if (!goesOn(*failure)) {
            return failure; // the watcher goes on
        }
        std::this_thread::sleep_for(pause);
        failure = handleAppTermination();
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
                   [&helper = helper_, gate = dispatchGate(), isWished = resetToAutoOnQuit(),
                    lookForOther = holder_->lookForOther(), isFree]() -> TaskRunner::Action {
                       gate->close();
                       isFree->set_value(!isWished || lookForOther() || !helper.resetAllFans());
                       return {};
                   });
    auto result = isFree->get_future();
    if (result.wait_for(longest) == std::future_status::ready && result.get()) {
        watcher_->end();
    }
}

} // namespace ventaro
