#include "CompetingPrograms.h"
#include "FanControllerViewModel.h"

#include <algorithm>

namespace ventaro {

void FanControllerViewModel::checkHelperAndConflictsAsync() {
    runDetached(
        TaskPriority::background,
        [&helper = helper_, &applications = *session_.runningApplications] {
            const bool isActive = helper.isDaemonActive();
            applications.refresh();
            return isActive;
        },
        [this](bool isActive) {
            const auto running = session_.runningApplications->current();
            const bool isCompeting =
                std::any_of(running->begin(), running->end(), isCompetingFanControl);
            store(isHelperInstalled_, isActive, &FanControllerViewModel::isHelperInstalledChanged);
            store(competingProcessDetected_, isCompeting,
                  &FanControllerViewModel::competingProcessDetectedChanged);
        });
}

void FanControllerViewModel::installHelper() {
    using Self = FanControllerViewModel;
    if (isInstallingHelper_) {
        return;
    }
    store(isInstallingHelper_, true, &Self::isInstallingHelperChanged);
    report("Administrator-Freigabe für Hintergrund-Helper wird angefordert...", false);
    runDetached(
        TaskPriority::standard,
        [&helper = helper_] {
            InstallationOutcome outcome;
            try {
                helper.installPrivilegedDaemon();
            } catch (const std::exception& error) {
                outcome.failure = error.what();
            }
            outcome.isHelperActive = helper.isDaemonActive();
            return outcome;
        },
        [this](const InstallationOutcome& outcome) {
            store(isInstallingHelper_, false, &Self::isInstallingHelperChanged);
            store(isHelperInstalled_, outcome.isHelperActive, &Self::isHelperInstalledChanged);
            report(outcome.failure.value_or(HelperClient::installedMessage),
                   outcome.failure.has_value());
        });
}

void FanControllerViewModel::uninstallHelper() {
    using Self = FanControllerViewModel;
    runDetached(
        TaskPriority::standard,
        [&helper = helper_] {
            InstallationOutcome outcome;
            try {
                helper.uninstallPrivilegedDaemon();
            } catch (const std::exception& error) {
                outcome.failure = error.what();
            }
            return outcome;
        },
        [this](const InstallationOutcome& outcome) {
            if (outcome.failure) {
                report(outcome.failure, true);
                return;
            }
            store(isHelperInstalled_, false, &Self::isHelperInstalledChanged);
            store(activeProfile_, ControlProfile::systemAuto, &Self::activeProfileChanged);
            report(HelperClient::uninstalledMessage, false);
        });
}

} // namespace ventaro
