#include "FanRequests.h"

#include "DispatchGate.h"
#include "HelperClient.h"
#include "NumberFormat.h"
#include "StoredField.h"

#include <algorithm>

namespace ventaro {

namespace {

/// How a dispatch ended.
struct Outcome {
    enum class Kind {
        notReady,  ///< no helper that can be used
        failed,    ///< a request did not get through
        answered,  ///< every request was answered
        withdrawn, ///< there is a newer wish, or the program is on its way out
    };
    Kind kind;
    std::string failure;
    std::vector<HelperResponse> answers;
};

Outcome carryOut(const std::vector<HelperRequest>& requests, const HelperClient& helper,
                 DispatchGate& gate, DispatchGate::Wish wish) {
    const auto isReady = gate.pass(wish, [&] { return helper.isDaemonActive(); });
    if (isReady && !*isReady) {
        return {Outcome::Kind::notReady, {}, {}};
    }
    Outcome outcome{Outcome::Kind::answered, {}, {}};
    for (const HelperRequest& request : requests) {
        try {
            auto answer = gate.pass(wish, [&] { return helper.sendSocketRequest(request); });
            if (!answer) {
                return {Outcome::Kind::withdrawn, {}, {}};
            }
            outcome.answers.push_back(std::move(*answer));
        } catch (const std::exception& error) {
            return {Outcome::Kind::failed, error.what(), {}};
        }
    }
    return outcome;
}

} // namespace

FanRequests::FanRequests(const HelperClient& helper, TaskRunner& tasks)
    : helper_(helper), gate_(std::make_shared<DispatchGate>()), tasks_(tasks) {}

void FanRequests::forgetTargets() {
    store(this, lastTargets_, FanTargets(), &FanRequests::lastTargetsChanged);
}

void FanRequests::sendTargetRPMs(double fan0, double fan1, bool silentSuccess) {
    if (gate_->isClosed()) {
        return;
    }
    store(this, lastTargets_, FanTargets{{0, fan0}, {1, fan1}}, &FanRequests::lastTargetsChanged);
    dispatch({{HelperAction::setFanRPM, 0, fan0}, {HelperAction::setFanRPM, 1, fan1}},
             [this, fan0, fan1, silentSuccess](const Answers& answers) {
                 publishTargets(fan0, fan1, silentSuccess, answers);
             });
}

void FanRequests::sendResetAllToAuto() {
    if (gate_->isClosed()) {
        return;
    }
    forgetTargets();
    dispatch({{HelperAction::resetAllAuto, std::nullopt, std::nullopt}},
             [this](const Answers& answers) {
                 Q_EMIT reported(answers.front().message, !answers.front().success);
             });
}

void FanRequests::dispatch(std::vector<HelperRequest> requests,
                           std::function<void(const Answers&)> publishAnswers) {
    tasks_.run(
        TaskPriority::userInitiated,
        [&helper = helper_, gate = gate_, wish = gate_->newWish(), requests = std::move(requests)] {
            return carryOut(requests, helper, *gate, wish);
        },
        [this, publishAnswers = std::move(publishAnswers)](const Outcome& outcome) {
            switch (outcome.kind) {
            case Outcome::Kind::notReady:
                Q_EMIT helperSeen(false);
                Q_EMIT reported("Bitte zuerst den Hintergrund-Helper oben per Klick installieren.",
                                true);
                return;
            case Outcome::Kind::failed:
                Q_EMIT reported(outcome.failure, true);
                return;
            case Outcome::Kind::answered:
                Q_EMIT helperSeen(true);
                publishAnswers(outcome.answers);
                Q_EMIT answered();
                return;
            case Outcome::Kind::withdrawn:
                return;
            }
        });
}

void FanRequests::publishTargets(double fan0, double fan1, bool silentSuccess,
                                 const Answers& answers) {
    const auto refused = std::find_if(answers.begin(), answers.end(),
                                      [](const auto& answer) { return !answer.success; });
    if (refused != answers.end()) {
        Q_EMIT reported(refused->message, true);
    } else if (!silentSuccess) {
        Q_EMIT reported("Ziel-Drehzahl gesetzt: Links " + formatWhole(fan0) + " RPM · Rechts " +
                            formatWhole(fan1) + " RPM",
                        false);
    }
}

} // namespace ventaro
