#pragma once

#include "ControlProfile.h"
#include "DefaultsStore.h"
#include "FanCurve.h"

#include <vector>

namespace ventaro {

constexpr double initialManualRPMFan0 = 2200; // RPM
constexpr double initialManualRPMFan1 = 2100; // RPM

/// What is kept from one start to the next, with the values of a first start.
struct SavedSettings {
    double manualRPMFan0 = initialManualRPMFan0; ///< RPM
    double manualRPMFan1 = initialManualRPMFan1; ///< RPM
    bool linkFans = false;
    bool resetOnQuit = true;
    bool startMinimized = true;
    CurveSensorSource curveSensorSource = CurveSensorSource::maxCpuGpu;
    std::vector<CurvePoint> curvePoints = defaultCurve();

    bool operator==(const SavedSettings&) const = default;
};

/// `settings` with what the store holds in place of it. A value that is missing, of another type,
/// unknown or damaged, or a curve of another length than four, is passed over in silence.
SavedSettings loadedSettings(const DefaultsStore& store, SavedSettings settings = {});

/// Writes everything. A curve with a number that is not finite is left as it was stored.
void saveSettings(DefaultsStore& store, const SavedSettings& settings);

} // namespace ventaro
