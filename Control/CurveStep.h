#pragma once

#include "FanCurve.h"
#include "FanTargets.h"
#include "TelemetryRecords.h"

#include <span>

namespace ventaro {

/// What a curve asks for at one moment.
struct CurveStep {
    double percent; ///< of the fans' ranges, also beyond 0 to 100 where the curve goes there
    double fan0;    ///< RPM
    double fan1;    ///< RPM
};

/// The step at `temperature` (°C), each fan within its own range.
CurveStep curveStep(std::span<const CurvePoint> curve, double temperature,
                    std::span<const FanReading> fans);

/// Whether one of the fans has moved by 45 RPM or more since `sent`, or has never been asked.
bool isWorthSending(const CurveStep& step, const FanTargets& sent);

/// Whether a percentage is worth being shown in place of another one: from half a point on.
bool isWorthShowing(double percent, double shownPercent);

} // namespace ventaro
