#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace ventaro {

class DispatchGate;
class HelperClient;

/// Hands the fans back when the process exits without having come through its event loop, as it
/// does when the display goes away. Works without Qt. At most one at a time.
class ExitGuard {
public:
    /// `helper` must live to the end of the process. `isWished`, asked at the exit: whether the
    /// fans are to be handed back.
    ExitGuard(const HelperClient& helper, std::shared_ptr<DispatchGate> gate,
              std::function<bool()> isWished);
    ~ExitGuard();
    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;

    /// Nothing is left to be done at the exit. Any thread.
    void disarm() { isArmed_ = false; }

    /// What happens at the exit: sends nothing else any more, then a ping and the reset. Blocks for
    /// two exchanges at most, and until an exchange under way has ended.
    void handFansBack() noexcept;

private:
    const HelperClient& helper_;
    const std::shared_ptr<DispatchGate> gate_;
    const std::function<bool()> isWished_;
    std::atomic<bool> isArmed_ = true;
};

} // namespace ventaro
