#pragma once

#include "DetachedTasks.h"
#include "HelperIPC.h"

#include <QObject>
#include <optional>
#include <string>

namespace ventaro {

class HelperClient;
class RunningApplications;

/// Whether the helper answers and whether another program controls the fans, too; installs and
/// removes the helper. Main thread only.
class HelperStatus : public QObject {
    Q_OBJECT

public:
    /// All must outlive this object and the tasks it has started.
    HelperStatus(const HelperClient& helper, RunningApplications& applications, TaskRunner& tasks);

    bool isInstalled() const { return isInstalled_; }
    bool isInstalling() const { return isInstalling_; }
    bool isCompetitorRunning() const { return isCompetitorRunning_; }

    /// Whether it is of another version than this program.
    bool isOutdated() const { return isOutdated_; }
    /// Why the helper's guard refuses low speeds, as far as is known.
    std::optional<GuardCause> guard() const { return guard_; }
    /// The same in a German sentence; empty if it does not.
    std::string guardText() const;

    /// What somebody else has found out.
    void setInstalled(bool installed);
    void setGuard(std::optional<GuardCause> cause);
    /// Looks at both, beside the main thread.
    void check();
    /// Installs the helper unless that is under way. The administrator is asked.
    void install();
    void uninstall();

Q_SIGNALS:
    void isInstalledChanged();
    void isInstallingChanged();
    void guardChanged();
    void isOutdatedChanged();
    void isCompetitorRunningChanged();
    /// The helper has been removed; the fans are automatic.
    void uninstalled();
    /// A line for the user.
    void reported(const std::optional<std::string>& message, bool isError);

private:
    void publish(const std::optional<HelperResponse>& answer);

    const HelperClient& helper_;
    RunningApplications& applications_;
    bool isInstalled_ = false;
    bool isInstalling_ = false;
    bool isCompetitorRunning_ = false;
    std::optional<GuardCause> guard_;
    bool isOutdated_ = false;
    DetachedTasks tasks_;
};

} // namespace ventaro
