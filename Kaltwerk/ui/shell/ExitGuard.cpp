#include "ExitGuard.h"

#include "DispatchGate.h"

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

ExitGuard::ExitGuard(std::shared_ptr<DispatchGate> gate, std::function<void()> handBack)
    : gate_(std::move(gate)), handBack_(std::move(handBack)) {
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
        handBack_();
    } catch (const std::exception&) {
        // Nobody is left to be told.
    }
}

} // namespace ventaro
