#include "HelperStatus.h"

#include "CompetingPrograms.h"
#include "HelperClient.h"
#include "StoredField.h"

#include <algorithm>

namespace ventaro {

namespace {

/// Why `action` failed; no value if it did not.
template<typename Action>
std::optional<std::string> failureOf(Action action) {
    try {
        action();
        return std::nullopt;
    } catch (const std::exception& error) {
        return error.what();
    }
}

struct Installation {
    std::optional<std::string> failure;
    std::optional<HelperResponse> answer; ///< to the ping that followed
};

} // namespace

HelperStatus::HelperStatus(const HelperClient& helper, RunningApplications& applications,
                           TaskRunner& tasks)
    : helper_(helper), applications_(applications), tasks_(tasks) {}

void HelperStatus::setInstalled(bool installed) {
    store(this, isInstalled_, installed, &HelperStatus::isInstalledChanged);
}

void HelperStatus::setGuard(std::optional<GuardCause> cause) {
    store(this, guard_, cause, &HelperStatus::guardChanged);
}

std::string HelperStatus::guardText() const {
    if (!guard_) {
        return {};
    }
    return std::string(*guard_ == GuardCause::hot ? "Der Rechner war zu heiß"
                                                  : "Die CPU-Temperatur war nicht lesbar") +
           ": Der Helper hat langsam gestellte Lüfter freigegeben und nimmt bis zur Abkühlung nur "
           "Automatik oder mindestens 90 % an.";
}

void HelperStatus::publish(const std::optional<HelperResponse>& answer) {
    setInstalled(answer.has_value());
    setGuard(answer ? answer->guard : std::nullopt);
    store(this, isOutdated_, answer && answer->build != VENTARO_VERSION,
          &HelperStatus::isOutdatedChanged);
}

void HelperStatus::check() {
    tasks_.run(
        TaskPriority::background,
        [&helper = helper_, &applications = applications_] {
            auto answer = helper.ping();
            applications.refresh();
            return answer;
        },
        [this](const std::optional<HelperResponse>& answer) {
            const auto running = applications_.current();
            publish(answer);
            store(this, isCompetitorRunning_,
                  std::any_of(running->begin(), running->end(), isCompetingFanControl),
                  &HelperStatus::isCompetitorRunningChanged);
        });
}

void HelperStatus::install() {
    if (isInstalling_) {
        return;
    }
    store(this, isInstalling_, true, &HelperStatus::isInstallingChanged);
    Q_EMIT reported("Administrator-Freigabe für Hintergrund-Helper wird angefordert...", false);
    tasks_.run(
        TaskPriority::standard,
        [&helper = helper_] {
            auto failure = failureOf([&] { helper.installPrivilegedDaemon(); });
            return Installation{std::move(failure), helper.ping()};
        },
        [this](const Installation& outcome) {
            store(this, isInstalling_, false, &HelperStatus::isInstallingChanged);
            publish(outcome.answer);
            Q_EMIT reported(outcome.failure.value_or(HelperClient::installedMessage),
                            outcome.failure.has_value());
        });
}

void HelperStatus::uninstall() {
    tasks_.run(
        TaskPriority::standard,
        [&helper = helper_] { return failureOf([&] { helper.uninstallPrivilegedDaemon(); }); },
        [this](const std::optional<std::string>& failure) {
            if (failure) {
                Q_EMIT reported(failure, true);
                return;
            }
            setInstalled(false);
            Q_EMIT uninstalled();
            Q_EMIT reported(HelperClient::uninstalledMessage, false);
        });
}

} // namespace ventaro
