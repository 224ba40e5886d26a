#pragma once

#include "ControlProfile.h"
#include "FanSupervisor.h"
#include "SteeringTemperatures.h"

#include <QObject>
#include <cstdint>

namespace ventaro {

struct TelemetryReadout;

/// Whether what is shown is so: which temperatures are known, how old they are, whether the chosen
/// profile is in force and whether somebody else has forced the fans. Main thread only.
class MachineTruth : public QObject {
    Q_OBJECT

public:
    const SteeringTemperatures& temperatures() const { return temperatures_; }
    bool isCpuKnown() const { return isCpuKnown_; }
    bool isGpuKnown() const { return isGpuKnown_; }
    /// Whether the last readout got no answer to anything.
    bool isSmcLost() const { return isSmcLost_; }
    /// The age of the last readout, in seconds; 0 until it is more than six.
    int staleSeconds() const { return staleSeconds_; }
    /// Whether the fans do what the active profile says, as far as has been read.
    bool isProfileInForce() const { return isProfileInForce_; }
    /// Whether fans are forced that this program has not forced, or no longer steers.
    bool areFansForcedByOthers() const { return areFansForcedByOthers_; }

    void onTick(std::int64_t tick);
    void onReadout(const TelemetryReadout& readout, std::int64_t tick);
    /// After a wish, a request or a readout.
    void judge(ControlProfile activeProfile, const FanSupervisor& supervisor);

Q_SIGNALS:
    void isCpuKnownChanged();
    void isGpuKnownChanged();
    void isSmcLostChanged();
    void staleSecondsChanged();
    void isProfileInForceChanged();
    void areFansForcedByOthersChanged();

private:
    SteeringTemperatures temperatures_;
    bool isCpuKnown_ = true; // until the first readout there is nothing to doubt
    bool isGpuKnown_ = true;
    bool isSmcLost_ = false;
    int staleSeconds_ = 0;
    bool isProfileInForce_ = true;
    bool areFansForcedByOthers_ = false;

    std::int64_t lastReadout_ = 0; ///< a tick
    int forcedReadouts_ = 0;       ///< in a row
};

} // namespace ventaro
