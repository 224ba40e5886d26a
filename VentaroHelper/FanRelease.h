#pragma once

#include "HelperLog.h"
#include "SMCService.h"

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ventaro {

/// Gives fans back to the automatic control and sees it through: what the SMC has not confirmed is
/// tried again, a key at a time, until it is or the fan has been forced anew. One thread.
class FanRelease {
public:
    using Clock = std::chrono::steady_clock;

    struct Fan {
        int index;
        std::string name; ///< German
    };

    /// All fans of a machine with `count` of them.
    static std::vector<Fan> fans(int count);

    /// Both must outlive this object.
    FanRelease(SMCService& smc, const HelperLog& log) : smc_(smc), log_(log) {}

    /// Writes the mode of all these fans and then has each confirmed, as far as the SMC answers.
    /// Why one of them is not known to be automatic, German; no value if they all are.
    std::optional<std::string> release(std::span<const Fan> fans);
    /// Leaves all of it to `step`. Whether there is one among these that is not being freed
    /// already.
    bool releaseLater(std::span<const Fan> fans);
    /// Somebody wants this fan forced.
    void forget(int fan);

    /// When there is something left to be done; no value while there is not.
    std::optional<Clock::time_point> due() const;
    /// Does the next piece of it: one mode is written or read.
    void step();

private:
    struct Pending {
        Fan fan;
        bool isWritten = false; ///< since the last look at it
        int vainTries = 0;
        Clock::time_point due = Clock::now();
        std::string failure = {}; ///< why it is not known to be automatic
    };

    void write(Pending& pending) const;
    /// Whether the SMC says that the fan is automatic.
    bool confirm(Pending& pending) const;
    std::vector<Pending>::const_iterator next() const;

    SMCService& smc_;
    const HelperLog& log_;
    std::vector<Pending> pending_;
};

} // namespace ventaro
