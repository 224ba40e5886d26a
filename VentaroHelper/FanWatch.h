#pragma once

#include "Clock.h"
#include "EventLoop.h"
#include "FanGuard.h"
#include "FanRelease.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

/// Looks after the machine while a fan is forced, as the last process that is left to do it, and
/// frees fans as the `FanGuard` says. A look comes every five seconds of the machine's time and is
/// taken a key at a time; while no fan is forced there is none, and no timer. One thread.
class FanWatch {
public:
    /// All must outlive this object.
    FanWatch(SMCService& smc, FanRelease& release, Clock& clock, EventLoop& loop,
             const HelperLog& log)
        : smc_(smc), release_(release), clock_(clock), loop_(loop), log_(log) {}
    ~FanWatch();
    FanWatch(const FanWatch&) = delete;
    FanWatch& operator=(const FanWatch&) = delete;

    /// Looks at once, and goes on if a fan is forced, or may be.
    void begin();
    /// A fan is about to be forced. Throws std::system_error, and looks after nothing, if there is
    /// no descriptor for a timer.
    void willForce(int fan, const FanRange& range);
    /// Why low speeds are refused; no value if they are not.
    std::optional<GuardCause> cause() const { return guard_.cause(); }
    /// Why a fan may not be forced to `rpm` now, German; no value if it may.
    std::optional<std::string> refusal(double rpm, const FanRange& range) const;

    /// When the look under way goes on; no value if there is none.
    std::optional<FanRelease::Clock::time_point> due() const;
    /// Takes the next piece of it: a key, or two where a fan's range is not known yet.
    void step();

private:
    void startTicking();
    void startLook();
    void lookAtFan(const FanRelease::Fan& fan);
    void conclude();

    SMCService& smc_;
    FanRelease& release_;
    Clock& clock_;
    EventLoop& loop_;
    const HelperLog& log_;
    FanGuard guard_;
    std::unique_ptr<Ticker> ticker_;            ///< while a fan is forced, or speeds are refused
    std::vector<std::function<void()>> pieces_; ///< of the look under way, the next one last
    FanRelease::Clock::time_point due_;
    std::map<int, FanRange> ranges_;
    FanGuard::Look look_;
    bool isAnyForced_ = false;             ///< as the look under way has found
    std::vector<FanRelease::Fan> lowFans_; ///< forced low, likewise
};

} // namespace ventaro
