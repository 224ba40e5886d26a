#pragma once

#include "Commands.h"
#include "ControlProfile.h"
#include "FanCurve.h"
#include "Platform.h"

#include <chrono>
#include <optional>
#include <vector>

namespace ventaro {

struct HeadlessOptions {
    ControlProfile profile = ControlProfile::smartCurve;
    std::optional<std::vector<CurvePoint>> curve; ///< no value: the user's saved one
    std::optional<CurveSensorSource> source;      ///< no value: the user's saved one
    bool json = false;
    /// How long to go on trying to hand the fans back to a helper that does not answer.
    std::chrono::milliseconds patience{10000};
};

/// Runs a profile without a window until a signal ends the program or nobody reads its lines any
/// more, prints a line per change, and hands the fans back to the automatic control. Changes none
/// of the user's settings. Throws CommandError if the fans could not be handed back, and what
/// `Commands` throws if the machine cannot be used at all. Once per process.
void runHeadless(Commands& commands, SMCService& smc, const HelperClient& helper,
                 Platform& platform, const HeadlessOptions& options);

} // namespace ventaro
