#pragma once

#include "DetachedTasks.h"
#include "TelemetryReadout.h"

#include <QObject>
#include <string>
#include <vector>

namespace ventaro {

/// What is known of fans and sensors, kept up to date by readouts beside the main thread. Main
/// thread only.
class TelemetryMonitor : public QObject {
    Q_OBJECT

public:
    /// All must outlive the monitor and the readouts it has started.
    TelemetryMonitor(SMCService& smc, const Clock& clock, TaskRunner& tasks);

    const std::vector<FanReading>& fans() const { return fans_; }
    /// Of the last full sweep.
    const std::vector<SensorReading>& sensors() const { return sensors_; }
    /// The last two minutes, oldest first, at most 60.
    const std::vector<TelemetrySample>& history() const { return history_; }
    double cpuMaxTemp() const { return cpuMaxTemp_; }             ///< °C
    double gpuMaxTemp() const { return gpuMaxTemp_; }             ///< °C
    double systemPowerWatts() const { return systemPowerWatts_; } ///< W
    const std::string& summaryText() const { return summaryText_; }
    bool isReading() const { return isReading_; }
    /// How many readouts have begun.
    std::uint64_t begunReadouts() const { return begunReadouts_; }

    /// Reads the fans alone, at once; blocks.
    void readFansNow();
    /// Starts a readout, with the full sweep of all sensors or without it, unless one is running.
    void refresh(bool includeAllSensors);

Q_SIGNALS:
    void fansChanged();
    void sensorsChanged();
    void historyChanged();
    void cpuMaxTempChanged();
    void gpuMaxTempChanged();
    void systemPowerWattsChanged();
    void summaryTextChanged();
    void isReadingChanged();
    /// After all that it has changed.
    void published(const TelemetryReadout& readout);

private:
    void publish(const TelemetryReadout& readout);

    SMCService& smc_;
    const Clock& clock_;
    std::vector<FanReading> fans_;
    std::vector<SensorReading> sensors_;
    std::vector<TelemetrySample> history_;
    double cpuMaxTemp_ = 0;
    double gpuMaxTemp_ = 0;
    double systemPowerWatts_ = 0;
    std::string summaryText_ = "-- RPM · --°C";
    bool isReading_ = false;
    std::uint64_t begunReadouts_ = 0;
    DetachedTasks tasks_;
};

} // namespace ventaro
