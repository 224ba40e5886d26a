#pragma once

#include "FanLimits.h"
#include "HelperIPC.h"

#include <optional>
#include <string_view>

namespace ventaro {

/// Decides when fans that are forced low have to go back to the automatic control, whoever forced
/// them: what steers them may be gone, stopped, or follow a sensor that stands still. It is told of
/// looks at the machine, one every five seconds while a fan is forced; it counts looks and not
/// time, so a machine that has slept is not taken for one that was hot. A plain value.
class FanGuard {
public:
    /// Below this share of its range a forced fan is low.
    static constexpr double lowShare = 0.9;

    /// What one look has found, key by key.
    class Look {
    public:
        /// `celsius`: no value if the key did not read.
        void see(std::string_view key, std::optional<double> celsius);
        /// Of the CPU's and GPU's sensors with a plausible value; no value if there is none.
        std::optional<double> hottest() const { return hottest_; }
        /// Sensors at 105 °C or more.
        int veryHotSensors() const { return veryHotSensors_; }
        /// Whether the CPU's own temperature is known.
        bool knowsCpuDie() const { return knowsCpuDie_; }

    private:
        std::optional<double> hottest_;
        int veryHotSensors_ = 0;
        bool knowsCpuDie_ = false;
    };

    using Reason = GuardCause;

    /// Why the fans that are forced low have to be freed now; no value if they may stay.
    std::optional<Reason> judge(const Look& look);
    /// Fans have been freed because of it.
    void intervened(Reason reason) { cause_ = reason; }
    /// Why speeds below 90 % are refused: an intervention after which the machine has not been
    /// below 90 °C for half a minute.
    std::optional<Reason> cause() const { return cause_; }
    /// No fan is forced: what was counted before means nothing for those that come.
    void nothingIsForced();

    /// Whether a target (RPM; no value if it does not read) is low.
    static bool isLow(std::optional<double> target, const FanRange& range);

private:
    int hotLooks_ = 0; ///< in a row, like all of these
    int veryHotLooks_ = 0;
    int blindLooks_ = 0;
    int coolLooks_ = 0;
    std::optional<Reason> cause_;
};

} // namespace ventaro
