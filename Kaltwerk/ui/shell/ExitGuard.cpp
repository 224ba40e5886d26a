#include "ExitGuard.h"

#include "DispatchGate.h"
#include "HelperClient.h"

#include <cstdlib>
#include <exception>
#include <utility>

namespace ventaro {

namespace {

std::atomic<ExitGuard*> present = nullptr;

void atExit() {
    if (ExitGuard* guard = present.exchange(nullptr)) {
        guard->handFansBack();
    }
}

} // namespace

ExitGuard::ExitGuard(const HelperClient& helper, std::shared_ptr<DispatchGate> gate,
                     std::function<bool()> isWished)
    : helper_(helper), gate_(std::move(gate)), isWished_(std::move(isWished)) {
    [[maybe_unused]] static const int registered = std::atexit(atExit);
    present = this;
}

ExitGuard::~ExitGuard() { present = nullptr; }

void ExitGuard::handFansBack() noexcept {
    if (!isArmed_.exchange(false)) {
        return;
    }
    try {
        gate_->close();
        if (isWished_() && helper_.isDaemonActive()) {
            helper_.sendSocketRequest({HelperAction::resetAllAuto, std::nullopt, std::nullopt});
        }
    } catch (const std::exception&) {
        // Nobody is left to be told.
    }
}

} // namespace ventaro
