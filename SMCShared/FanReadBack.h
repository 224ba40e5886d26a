#pragma once

#include "FanLimits.h"

#include <optional>

namespace ventaro {

/// Who steers a fan, as far as the SMC tells.
enum class FanHold {
    automatic, ///< the SMC's own regulation
    forced,    ///< a target speed that somebody has written
    unread,    ///< there is a mode, but it does not read
    untold,    ///< the machine has neither a mode nor a force mask
};

/// What a fan has been told to do, as the SMC holds it.
struct FanReadBack {
    int fan = 0; ///< index in the SMC, from 0
    FanHold hold = FanHold::untold;
    std::optional<double> targetRPM; ///< no value if it does not read
    FanRange range;
};

} // namespace ventaro
