#include "FanRequests.h"

#include "ControlHolder.h"
#include "DispatchGate.h"
#include "HelperClient.h"
#include "NumberFormat.h"
#include "StoredField.h"

#include <algorithm>
#include <map>
#include <utility>

namespace ventaro {

/// How a dispatch ended.
struct FanRequests::Outcome {
    enum class Kind {
        notReady,  ///< no helper that can be used
        failed,    ///< a request did not get through
        answered,  ///< every request was answered
        withdrawn, ///< there is a newer wish, or the program is on its way out
    };
    Kind kind;
    std::string failure;
    Answers answers;

    const HelperResponse* refusal() const {
        const auto refused = std::find_if(answers.begin(), answers.end(),
                                          [](const auto& answer) { return !answer.success; });
        return refused == answers.end() ? nullptr : &*refused;
    }
};

FanRequests::Outcome FanRequests::carryOut(const std::vector<HelperRequest>& requests,
                                           const HelperClient& helper, DispatchGate& gate,
                                           DispatchGate::Wish wish) {
    using Kind = Outcome::Kind;
    const auto isReady = gate.pass(wish, [&] { return helper.isDaemonActive(); });
    if (isReady && !*isReady) {
        return {Kind::notReady, {}, {}};
    }
    Outcome outcome{Kind::answered, {}, {}};
    for (const HelperRequest& request : requests) {
        try {
            auto answer = gate.pass(wish, [&] { return helper.sendSocketRequest(request); });
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

FanRequests::FanRequests(const HelperClient& helper, ControlHolder& holder, TaskRunner& tasks,
                         std::function<std::uint64_t()> begunReadouts)
    : helper_(helper),
      holder_(holder),
      begunReadouts_(std::move(begunReadouts)),
      gate_(std::make_shared<DispatchGate>()),
      tasks_(tasks) {
    connect(&holder_, &ControlHolder::letGoRequested, this, &FanRequests::letGo);
}

void FanRequests::forgetTargets() {
    store(this, lastTargets_, FanTargets(), &FanRequests::lastTargetsChanged);
}

bool FanRequests::mayForce() {
    const auto other = holder_.claim();
    store(this, canTakeOver_, other.has_value(), &FanRequests::canTakeOverChanged);
    if (other) {
        supervisor_ = {};
        Q_EMIT reported(*other + " steuert bereits die Lüfter.", true);
        Q_EMIT supervised();
        return false;
    }
    return true;
}

void FanRequests::letGo(const std::string& by) {
    wishNothing();
    Q_EMIT reported(by + " hat die Steuerung der Lüfter übernommen.", false);
    Q_EMIT controlLost();
}

void FanRequests::takeOver(std::function<void()> then) {
    tasks_.run(
        TaskPriority::userInitiated,
        [otherLetsGo = holder_.otherLettingGo()] { return otherLetsGo(); },
        [this, then = std::move(then)](bool hasLetGo) {
            if (hasLetGo) {
                then();
            } else {
                Q_EMIT reported(holder_.other().value_or("") + " gibt die Lüfter nicht frei.",
                                true);
            }
        });
}

void FanRequests::wishCurve(bool isSourceKnown) {
    if (!mayForce()) {
        return;
    }
    supervisor_.wishCurve(isSourceKnown);
    gate_->newWish();
    Q_EMIT supervised();
}

void FanRequests::wishNothing() {
    supervisor_ = {};
    gate_->newWish();
    Q_EMIT supervised();
    tasks_.run(
        TaskPriority::userInitiated,
        [gate = gate_] {
            gate->settle(); // nothing of this process comes after the next holder's requests
            return true;
        },
        [this](bool) { releaseUnlessWished(); });
}

void FanRequests::releaseUnlessWished() {
    if (supervisor_.wish() == FanSupervisor::Wish::none && holder_.isMine()) {
        holder_.release();
        Q_EMIT supervised();
    }
}

void FanRequests::sendTargetRPMs(double fan0, double fan1, bool silentSuccess) {
    if (!mayForce()) {
        return;
    }
    const FanTargets targets{{0, fan0}, {1, fan1}};
    silentSuccess ? supervisor_.steer(targets) : supervisor_.wishSpeeds(targets);
    Q_EMIT supervised(); // before anything is forced
    sendTargets(targets, silentSuccess ? Report::failures : Report::everything);
}

void FanRequests::sendResetAllToAuto() {
    store(this, canTakeOver_, false, &FanRequests::canTakeOverChanged);
    supervisor_.wishAutomatic();
    Q_EMIT supervised();
    sendReset(Report::everything);
}

void FanRequests::sendTargets(const FanTargets& targets, Report report) {
    if (gate_->isClosed()) {
        return;
    }
    store(this, lastTargets_, targets, &FanRequests::lastTargetsChanged);
    std::vector<HelperRequest> requests;
    for (const auto& [fan, rpm] : targets) {
        requests.push_back({HelperAction::setFanRPM, fan, rpm});
    }
    dispatch(std::move(requests), report,
             "Ziel-Drehzahl gesetzt: Links " + formatWhole(targets.at(0)) + " RPM · Rechts " +
                 formatWhole(targets.at(1)) + " RPM");
}

void FanRequests::sendReset(Report report) {
    if (gate_->isClosed()) {
        return;
    }
    forgetTargets();
    dispatch({{HelperAction::resetAllAuto, std::nullopt, std::nullopt}}, report, {});
}

void FanRequests::dispatch(std::vector<HelperRequest> requests, Report report,
                           const std::string& successMessage) {
    const auto wish = gate_->newWish();
    tasks_.run(
        TaskPriority::userInitiated,
        [&helper = helper_, otherLetsGo = holder_.otherLettingGo(), gate = gate_, wish,
         requests = std::move(requests)] {
            if (requests.front().action == HelperAction::resetAllAuto) {
                otherLetsGo(); // or else it would force them again
            }
            return carryOut(requests, helper, *gate, wish);
        },
        [this, wish, report, successMessage](const Outcome& outcome) {
            publish(outcome, report, successMessage);
            conclude(outcome, wish);
        });
}

void FanRequests::publish(const Outcome& outcome, Report report,
                          const std::string& successMessage) {
    const auto say = [&](const std::string& message, bool isError) {
        if (report == Report::everything || (report == Report::failures && isError) ||
            (report == Report::recovery && !isError && isFailureReported_)) {
            isFailureReported_ = isError;
            Q_EMIT reported(message, isError);
        }
    };
    switch (outcome.kind) {
    case Outcome::Kind::notReady:
        Q_EMIT helperSeen(false);
        say("Bitte zuerst den Hintergrund-Helper oben per Klick installieren.", true);
        return;
    case Outcome::Kind::failed:
        say(outcome.failure, true);
        return;
    case Outcome::Kind::answered: {
        Q_EMIT helperSeen(true);
        const HelperResponse* refusal = outcome.refusal();
        const std::string& done =
            outcome.answers.size() == 1 ? outcome.answers.front().message : successMessage;
        say(refusal != nullptr ? refusal->message : done, refusal != nullptr);
        return;
    }
    case Outcome::Kind::withdrawn:
        return;
    }
}

void FanRequests::conclude(const Outcome& outcome, DispatchGate::Wish wish) {
    if (gate_->isNewest(wish) && outcome.kind != Outcome::Kind::withdrawn) {
        const HelperResponse* refusal = outcome.refusal();
        const bool isGuarded = refusal != nullptr && refusal->guard;
        if (isGuarded) {
            Q_EMIT guardSeen(refusal->guard);
        }
        failure_ = refusal != nullptr         ? std::optional(refusal->message)
                   : !outcome.failure.empty() ? std::optional(outcome.failure)
                                              : std::nullopt;
        carryOutStep(supervisor_.onOutcome(isGuarded ? FanSupervisor::Outcome::refusedByGuard
                                                     : FanSupervisor::Outcome::ended,
                                           tick_, begunReadouts_()));
    }
    if (outcome.kind == Outcome::Kind::answered) {
        Q_EMIT answered();
    }
}

void FanRequests::onReadout(const FanSupervisor::Readout& readout) {
    tick_ = readout.tick;
    carryOutStep(supervisor_.onReadout(readout));
}

void FanRequests::carryOutStep(FanSupervisor::Step step) {
    tell(step.notice);
    switch (step.action) {
    case FanSupervisor::Action::nothing:
        break;
    case FanSupervisor::Action::sendTargets:
        sendTargets(supervisor_.targets(), Report::recovery);
        break;
    case FanSupervisor::Action::sendReset:
        sendReset(Report::recovery);
        break;
    case FanSupervisor::Action::stepCurve:
        Q_EMIT curveStepDue();
        break;
    }
    Q_EMIT supervised();
    releaseUnlessWished();
}

void FanRequests::tell(FanSupervisor::Notice notice) {
    using Notice = FanSupervisor::Notice;
    if (notice == Notice::none) {
        return;
    }
    const std::string reason = failure_.value_or("");
    const std::string freed = "Der Helper hat die Lüfter freigegeben. " + reason + " Danach ";
    const std::map<Notice, std::string> sentences{
        {Notice::blind, "Die Temperatur der Kurve ist nicht lesbar. Bis sie es wieder ist, gehen "
                        "die Lüfter auf macOS-Automatik."},
        {Notice::seeing, "Die Temperatur der Kurve ist wieder lesbar."},
        {Notice::unfollowed, failure_ ? "Die Lüfter folgen nicht: " + reason
                                      : "Die Lüfter folgen nicht, obwohl der Helper es gemeldet "
                                        "hat. Vermutlich stellt sie ein anderes Programm."},
        {Notice::followed, "Die Lüfter folgen wieder."},
        {Notice::guardEndsSpeed, freed + "bitte neu wählen."},
        {Notice::guardPausesCurve, freed + "steuert wieder die Kurve."},
        {Notice::guardEndsCurve, freed + "bitte neu wählen: Es war schon das zweite Mal."},
    };
    isFailureReported_ = false;
    Q_EMIT reported(sentences.at(notice), notice != Notice::seeing && notice != Notice::followed);
}

} // namespace ventaro
