#include "FanControllerViewModel.h"
#include "NumberFormat.h"

#include <algorithm>

namespace ventaro {

void FanControllerViewModel::sendTargetRPMs(double fan0, double fan1, bool silentSuccess) {
    if (gate_->isClosed()) {
        return;
    }
    store(lastAppliedRPMs_, {{0, fan0}, {1, fan1}},
          &FanControllerViewModel::lastAppliedRPMsChanged);
    dispatch({{HelperAction::setFanRPM, 0, fan0}, {HelperAction::setFanRPM, 1, fan1}},
             [this, fan0, fan1, silentSuccess](const std::vector<HelperResponse>& answers) {
                 publishTargets(fan0, fan1, silentSuccess, answers);
             });
}

void FanControllerViewModel::sendResetAllToAuto() {
    if (gate_->isClosed()) {
        return;
    }
    store(lastAppliedRPMs_, {}, &FanControllerViewModel::lastAppliedRPMsChanged);
    dispatch({{HelperAction::resetAllAuto, std::nullopt, std::nullopt}},
             [this](const std::vector<HelperResponse>& answers) {
                 report(answers.front().message, !answers.front().success);
             });
}

void FanControllerViewModel::dispatch(
    std::vector<HelperRequest> requests,
    std::function<void(const std::vector<HelperResponse>&)> publishAnswers) {
    using Kind = DispatchOutcome::Kind;
    runDetached(
        TaskPriority::userInitiated,
        [&helper = helper_, gate = gate_, requests = std::move(requests)] {
            return carryOut(requests, helper, *gate);
        },
        [this, publishAnswers = std::move(publishAnswers)](const DispatchOutcome& outcome) {
            switch (outcome.kind) {
            case Kind::notReady:
                store(isHelperInstalled_, false, &FanControllerViewModel::isHelperInstalledChanged);
                report("Bitte zuerst den Hintergrund-Helper oben per Klick installieren.", true);
                return;
            case Kind::failed:
                report(outcome.failure, true);
                return;
            case Kind::answered:
                store(isHelperInstalled_, true, &FanControllerViewModel::isHelperInstalledChanged);
                publishAnswers(outcome.answers);
                refreshTelemetryAsync(false);
                return;
            case Kind::withdrawn:
                return;
            }
        });
}

FanControllerViewModel::DispatchOutcome
FanControllerViewModel::carryOut(const std::vector<HelperRequest>& requests,
                                 const HelperClient& helper, DispatchGate& gate) {
    using Kind = DispatchOutcome::Kind;
    const auto isReady = gate.pass([&] { return helper.isDaemonActive(); });
    if (isReady && !*isReady) {
        return {Kind::notReady, {}, {}};
    }
    DispatchOutcome outcome{Kind::answered, {}, {}};
    for (const HelperRequest& request : requests) {
        try {
            auto answer = gate.pass([&] { return helper.sendSocketRequest(request); });
            if (!answer) {
                return {Kind::withdrawn, {}, {}};
            }
            outcome.answers.push_back(std::move(*answer));
        } catch (const std::exception& error) {
            return {Kind::failed, error.what(), {}};
        }
    }
    return outcome;
}

void FanControllerViewModel::publishTargets(double fan0, double fan1, bool silentSuccess,
                                            const std::vector<HelperResponse>& answers) {
    const auto refused = std::find_if(answers.begin(), answers.end(),
                                      [](const auto& answer) { return !answer.success; });
    if (refused != answers.end()) {
        report(refused->message, true);
    } else if (!silentSuccess) {
        report("Ziel-Drehzahl gesetzt: Links " + formatWhole(fan0) + " RPM · Rechts " +
                   formatWhole(fan1) + " RPM",
               false);
    }
}

} // namespace ventaro
