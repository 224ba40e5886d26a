#pragma once

#include "SavedSettings.h"

#include <QObject>

namespace ventaro {

/// The user's settings: fields that are kept by `save` from one start to the next. Setting one
/// changes the field alone. Main thread only.
class ControlSettings : public QObject {
    Q_OBJECT

public:
    /// Loads what `store` holds, which must outlive the settings.
    explicit ControlSettings(DefaultsStore& store);

    const SavedSettings& values() const { return values_; }
    void save();

    void setManualRPMFan0(double rpm);
    void setManualRPMFan1(double rpm);
    void setLinkFans(bool linked);
    void setCurveSensorSource(CurveSensorSource source);
    void setCurvePoints(std::vector<CurvePoint> points);
    void setResetOnQuit(bool reset);
    void setStartMinimized(bool minimized);

Q_SIGNALS:
    void manualRPMFan0Changed();
    void manualRPMFan1Changed();
    void linkFansChanged();
    void curveSensorSourceChanged();
    void curvePointsChanged();
    void resetOnQuitChanged();
    void startMinimizedChanged();

private:
    DefaultsStore& store_;
    SavedSettings values_;
};

} // namespace ventaro
