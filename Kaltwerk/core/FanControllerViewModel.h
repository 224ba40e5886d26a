#pragma once

#include "ControlProfile.h"
#include "FanCurve.h"
#include "FanTargets.h"
#include "HardwareSections.h"
#include "TelemetryRecords.h"
#include "TelemetrySample.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

class ControlHolder;
class ControlSettings;
class ControlWatcher;
class DetachedTasks;
class DispatchGate;
class FanRequests;
class FileDescriptor;
class HardwareInventory;
class HelperClient;
class HelperStatus;
class LoginItem;
class MachineRoot;
class MachineTruth;
class MonitoringTimer;
class SMCService;
class StatusLine;
class SystemHardwareInspector;
class TaskRunner;
class TelemetryMonitor;
struct TelemetryReadout;
struct UserSession;

/// What a controller works with. All must outlive the controller and the tasks it has started.
struct FanControllerDependencies {
    SMCService& smc;
    const HelperClient& helper;
    const SystemHardwareInspector& inspector;
    const MachineRoot& machineRoot;
    UserSession& session;
    TaskRunner& tasks;
    std::string program = "Ventaro"; ///< what other programs call this one
    std::filesystem::path watcher{}; ///< the watcher's program; empty: there is none
};

/// The one controller of the application, and all that the views know: it brings the parts together
/// that watch the machine, keep the settings and have the helper set the fans, and decides what the
/// profiles ask for. Every field tells of a change once its stored value really differs. Failures
/// end in the status line; no operation throws. Main thread only.
class FanControllerViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::vector<ventaro::FanReading> fans READ fans NOTIFY fansChanged)
    Q_PROPERTY(std::vector<ventaro::SensorReading> sensors READ sensors NOTIFY sensorsChanged)
    Q_PROPERTY(std::vector<ventaro::TelemetrySample> history READ history NOTIFY historyChanged)
    Q_PROPERTY(std::vector<ventaro::HardwareSectionData> hardwareSections READ hardwareSections
                   NOTIFY hardwareSectionsChanged)
    Q_PROPERTY(
        bool isLoadingHardwareInfo READ isLoadingHardwareInfo NOTIFY isLoadingHardwareInfoChanged)
    Q_PROPERTY(double cpuMaxTemp READ cpuMaxTemp NOTIFY cpuMaxTempChanged)
    Q_PROPERTY(double gpuMaxTemp READ gpuMaxTemp NOTIFY gpuMaxTempChanged)
    Q_PROPERTY(double systemPowerWatts READ systemPowerWatts NOTIFY systemPowerWattsChanged)
    /// Whether the temperatures above are the sensors' own, and plausible.
    Q_PROPERTY(bool isCpuTempKnown READ isCpuTempKnown NOTIFY isCpuTempKnownChanged)
    Q_PROPERTY(bool isGpuTempKnown READ isGpuTempKnown NOTIFY isGpuTempKnownChanged)
    /// The SMC answers to nothing.
    Q_PROPERTY(bool isSmcLost READ isSmcLost NOTIFY isSmcLostChanged)
    /// The age of all readings, in seconds; 0 until it is more than six.
    Q_PROPERTY(int staleSeconds READ staleSeconds NOTIFY staleSecondsChanged)
    /// Whether the fans do what the active profile says, as far as has been read.
    Q_PROPERTY(bool isProfileInForce READ isProfileInForce NOTIFY isProfileInForceChanged)
    /// Whether fans are forced that this program does not steer.
    Q_PROPERTY(
        bool areFansForcedByOthers READ areFansForcedByOthers NOTIFY areFansForcedByOthersChanged)
    /// Whether the program that steers instead has just been named, and can be made to let go.
    Q_PROPERTY(bool canTakeOver READ canTakeOver NOTIFY canTakeOverChanged)
    /// Why the helper refuses low speeds, German; empty if it does not.
    Q_PROPERTY(QString guardText READ guardText NOTIFY guardTextChanged)
    /// Whether the helper is of another version than this program.
    Q_PROPERTY(bool isHelperOutdated READ isHelperOutdated NOTIFY isHelperOutdatedChanged)
    Q_PROPERTY(QString menuBarSummaryText READ menuBarSummaryText NOTIFY menuBarSummaryTextChanged)
    Q_PROPERTY(ventaro::ControlProfile activeProfile READ activeProfile NOTIFY activeProfileChanged)
    Q_PROPERTY(
        double manualRPMFan0 READ manualRPMFan0 WRITE setManualRPMFan0 NOTIFY manualRPMFan0Changed)
    Q_PROPERTY(
        double manualRPMFan1 READ manualRPMFan1 WRITE setManualRPMFan1 NOTIFY manualRPMFan1Changed)
    Q_PROPERTY(bool linkFansInManualMode READ linkFansInManualMode WRITE setLinkFansInManualMode
                   NOTIFY linkFansInManualModeChanged)
    Q_PROPERTY(ventaro::CurveSensorSource curveSensorSource READ curveSensorSource WRITE
                   setCurveSensorSource NOTIFY curveSensorSourceChanged)
    Q_PROPERTY(std::vector<ventaro::CurvePoint> curvePoints READ curvePoints WRITE setCurvePoints
                   NOTIFY curvePointsChanged)
    Q_PROPERTY(double currentCurveTargetPercent READ currentCurveTargetPercent NOTIFY
                   currentCurveTargetPercentChanged)
    Q_PROPERTY(bool isHelperInstalled READ isHelperInstalled NOTIFY isHelperInstalledChanged)
    Q_PROPERTY(bool isInstallingHelper READ isInstallingHelper NOTIFY isInstallingHelperChanged)
    Q_PROPERTY(QString statusMessage READ statusText NOTIFY statusMessageChanged)
    Q_PROPERTY(bool hasStatusMessage READ hasStatusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(bool isErrorStatus READ isErrorStatus NOTIFY isErrorStatusChanged)
    Q_PROPERTY(bool competingProcessDetected READ competingProcessDetected NOTIFY
                   competingProcessDetectedChanged)
    Q_PROPERTY(bool resetToAutoOnQuit READ resetToAutoOnQuit WRITE setResetToAutoOnQuit NOTIFY
                   resetToAutoOnQuitChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool startMinimized READ startMinimized NOTIFY startMinimizedChanged)
    Q_PROPERTY(bool isSensorsTabVisible READ isSensorsTabVisible WRITE setSensorsTabVisible NOTIFY
                   isSensorsTabVisibleChanged)
    Q_PROPERTY(bool isOverviewTabVisible READ isOverviewTabVisible WRITE setOverviewTabVisible
                   NOTIFY isOverviewTabVisibleChanged)

public:
    /// Loads the settings, reads the fans once and starts to watch. Sends the fans nothing. Throws
    /// std::system_error if the process is out of descriptors.
    explicit FanControllerViewModel(const FanControllerDependencies& dependencies,
                                    QObject* parent = nullptr);
    ~FanControllerViewModel() override;

    const std::vector<FanReading>& fans() const;
    /// Of the last full sweep.
    const std::vector<SensorReading>& sensors() const;
    /// The last two minutes, oldest first, at most 60.
    const std::vector<TelemetrySample>& history() const;
    const std::vector<HardwareSectionData>& hardwareSections() const;
    bool isLoadingHardwareInfo() const;
    double cpuMaxTemp() const;       ///< °C
    double gpuMaxTemp() const;       ///< °C
    double systemPowerWatts() const; ///< W
    bool isCpuTempKnown() const;
    bool isGpuTempKnown() const;
    bool isSmcLost() const;
    int staleSeconds() const; ///< s
    bool isProfileInForce() const;
    bool areFansForcedByOthers() const;
    bool canTakeOver() const;
    QString guardText() const;
    bool isHelperOutdated() const;
    QString menuBarSummaryText() const;
    ControlProfile activeProfile() const { return activeProfile_; }
    double manualRPMFan0() const; ///< RPM
    double manualRPMFan1() const; ///< RPM
    bool linkFansInManualMode() const;
    CurveSensorSource curveSensorSource() const;
    /// As they were stored, in any order.
    const std::vector<CurvePoint>& curvePoints() const;
    /// In percent, also beyond 0 to 100 where the curve goes there.
    double currentCurveTargetPercent() const { return currentCurveTargetPercent_; }
    bool isHelperInstalled() const;
    bool isInstallingHelper() const;
    /// The one line for the user, German.
    const std::optional<std::string>& statusMessage() const;
    bool hasStatusMessage() const { return statusMessage().has_value(); }
    bool isErrorStatus() const;
    bool competingProcessDetected() const;
    bool resetToAutoOnQuit() const;
    bool launchAtLogin() const;
    bool startMinimized() const;
    bool isSensorsTabVisible() const { return isSensorsTabVisible_; }
    bool isOverviewTabVisible() const { return isOverviewTabVisible_; }
    bool isMonitoring() const { return timer_ != nullptr; }
    bool isPollingInFlight() const;
    /// The targets last handed to the helper, in RPM, by fan index.
    const FanTargets& lastAppliedRPMs() const;
    std::int64_t tickCount() const { return tickCount_; }

    // Writing these changes the field alone: nothing is saved, nothing is sent.
    void setManualRPMFan0(double rpm);
    void setManualRPMFan1(double rpm);
    void setLinkFansInManualMode(bool linked);
    void setCurveSensorSource(CurveSensorSource source);
    void setCurvePoints(std::vector<CurvePoint> points);
    void setResetToAutoOnQuit(bool reset);
    void setSensorsTabVisible(bool visible);
    void setOverviewTabVisible(bool visible);

    /// Takes the status line away.
    Q_INVOKABLE void dismissStatusMessage();

    Q_INVOKABLE void saveSettings();

    /// Starts the timer, or starts it anew, but not after the shutdown.
    void startMonitoring();
    /// Starts a readout of fans and temperatures, with the full sweep of all sensors or without it,
    /// unless one is running.
    Q_INVOKABLE void refreshTelemetryAsync(bool includeAllSensors);
    /// Loads the hardware inventory unless it is there.
    Q_INVOKABLE void ensureHardwareSpecsLoaded();
    /// Loads the hardware inventory anew unless it is being loaded.
    Q_INVOKABLE void refreshHardwareSpecs();

    /// Makes `profile` the active one, saves the settings and has the profile's speeds set.
    Q_INVOKABLE void selectProfile(ventaro::ControlProfile profile);
    /// Sets both manual speeds to a share of the fans' ranges, 0 to 1, and has them set.
    void applyPresetPercentage(double fraction);
    /// The same, but has them set in the manual profile only.
    Q_INVOKABLE void setManualPercentageForBoth(double fraction);
    /// Changes to the manual profile, saves the settings and has the manual speeds set.
    Q_INVOKABLE void applyManualSpeeds();

    /// The temperature of the curve's source, °C.
    Q_INVOKABLE double currentSourceTemperature() const;
    /// The curve's percentage at `temperature` (°C); see the free function.
    Q_INVOKABLE double evaluateCurvePercent(double temperature) const;
    /// Follows the curve: has new speeds set if one has moved by 45 RPM or more, or if forced.
    Q_INVOKABLE void applySmartCurveStep(bool force);

    /// Chooses the system's automatic control.
    Q_INVOKABLE void returnToAutomatic() { selectProfile(ControlProfile::systemAuto); }
    /// Has whoever else steers the fans let go of them, and then the active profile set again.
    Q_INVOKABLE void takeOverControl();

    /// Finds out whether the helper answers and whether a competing program runs.
    void checkHelperAndConflictsAsync();
    /// Installs the helper unless that is under way. The administrator is asked.
    Q_INVOKABLE void installHelper();
    Q_INVOKABLE void uninstallHelper();

    Q_INVOKABLE void setLaunchAtLogin(bool enabled);
    Q_INVOKABLE void setStartMinimized(bool minimized);

    /// Hands the fans back to the automatic control, if the user wants that at the end and no other
    /// program steers them. Why the helper has not confirmed it, German; no value if it has, or
    /// need not. Blocks for two exchanges at most, and for those with a program that steers.
    std::optional<std::string> handleAppTermination() const;

    /// The one way out: stops the timer, ends a running profiler, sends no fan request any more,
    /// waits for those that are just on their way, and hands the fans back: for as long as
    /// `goesOn`, told of what each try failed of, allows it, if this program has forced them, or
    /// else once. Why they have not been handed back; no value if they have, or need not be. Only
    /// the first call does anything.
    std::optional<std::string> shutdown(const std::function<bool(const std::string&)>& goesOn);
    /// The same for up to five seconds.
    std::optional<std::string> shutdown();
    /// The same at the end of the user's session, which waits for nobody: one try of a second at
    /// most, and the watcher does the rest.
    void shutdownAtOnce();

    /// What every fan request goes through: closed, it holds the next ones back, for the end of a
    /// process that cannot come to `shutdown`. Lives as long as anything that sends.
    const std::shared_ptr<DispatchGate>& dispatchGate() const;

Q_SIGNALS:
    void fansChanged();
    void sensorsChanged();
    void historyChanged();
    void hardwareSectionsChanged();
    void isLoadingHardwareInfoChanged();
    void cpuMaxTempChanged();
    void gpuMaxTempChanged();
    void systemPowerWattsChanged();
    void isCpuTempKnownChanged();
    void isGpuTempKnownChanged();
    void isSmcLostChanged();
    void staleSecondsChanged();
    void isProfileInForceChanged();
    void areFansForcedByOthersChanged();
    void canTakeOverChanged();
    void guardTextChanged();
    void isHelperOutdatedChanged();
    void menuBarSummaryTextChanged();
    void activeProfileChanged();
    void manualRPMFan0Changed();
    void manualRPMFan1Changed();
    void linkFansInManualModeChanged();
    void curveSensorSourceChanged();
    void curvePointsChanged();
    void currentCurveTargetPercentChanged();
    void isHelperInstalledChanged();
    void isInstallingHelperChanged();
    void statusMessageChanged();
    void isErrorStatusChanged();
    void competingProcessDetectedChanged();
    void resetToAutoOnQuitChanged();
    void launchAtLoginChanged();
    void startMinimizedChanged();
    void isSensorsTabVisibleChanged();
    void isOverviewTabVisibleChanged();
    void timerChanged();
    void isPollingInFlightChanged();
    void lastAppliedRPMsChanged();
    void tickCountChanged();
    /// Another program steers the fans from now on.
    void controlLost();

private:
    QString statusText() const { return QString::fromStdString(statusMessage().value_or("")); }
    void passOnChanges();
    void followControl();
    bool beginShutdown();
    void connectParts();
    void seedManualSpeeds();
    void setActiveProfile(ControlProfile profile);
    void setManualSpeedsToFraction(double fraction);
    void sendManualSpeeds();
    void tick();
    void onReadout(const TelemetryReadout& readout);

    SMCService& smc_;
    const HelperClient& helper_;
    UserSession& session_;
    TaskRunner& runner_;

    const std::unique_ptr<DetachedTasks> tasks_;
    const std::unique_ptr<StatusLine> statusLine_;
    const std::unique_ptr<ControlSettings> settings_;
    const std::unique_ptr<TelemetryMonitor> telemetry_;
    const std::unique_ptr<ControlHolder> holder_;
    const std::unique_ptr<ControlWatcher> watcher_;
    const std::unique_ptr<FanRequests> requests_;
    const std::unique_ptr<HelperStatus> helperStatus_;
    const std::unique_ptr<LoginItem> loginItem_;
    const std::unique_ptr<HardwareInventory> inventory_;
    std::unique_ptr<MonitoringTimer> timer_;

    const std::unique_ptr<MachineTruth> truth_;
    std::unique_ptr<FileDescriptor> spare_; ///< for the way out of a process that has no other left
    ControlProfile activeProfile_ = ControlProfile::systemAuto;
    double currentCurveTargetPercent_ = 0;
    bool isSensorsTabVisible_ = false;
    bool isOverviewTabVisible_ = true;
    std::int64_t tickCount_ = 0;
    bool isShutDown_ = false;
};

} // namespace ventaro
