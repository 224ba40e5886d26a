#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace ventaro {

class DispatchGate;

/// Hands the fans back when the process exits without having come through its event loop, as it
/// does when the display goes away. Works without Qt. At most one at a time.
class ExitGuard {
public:
    /// `handBack` hands the fans back, if that is wished, without Qt.
    ExitGuard(std::shared_ptr<DispatchGate> gate, std::function<void()> handBack);
    ~ExitGuard();
    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;

    /// Nothing is left to be done at the exit. Any thread.
    void disarm() { isArmed_ = false; }

    /// What happens at the exit: nothing else is sent any more, then the fans are handed back.
    /// Blocks until an exchange under way has ended, and for the hand-back.
    void handFansBack() noexcept;

private:
    const std::shared_ptr<DispatchGate> gate_;
    const std::function<void()> handBack_;
    std::atomic<bool> isArmed_ = true;
};

} // namespace ventaro
