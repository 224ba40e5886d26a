#pragma once

#include "DetachedTasks.h"
#include "FanSupervisor.h"
#include "FanTargets.h"
#include "HelperIPC.h"

#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

class ControlHolder;
class DispatchGate;
class HelperClient;

/// Has the helper set the fans, beside the main thread, and sends again what a `FanSupervisor`
/// finds to be due. What was wished for last is what happens: nothing of an older dispatch is sent
/// once there is a newer one. Main thread only.
class FanRequests : public QObject {
    Q_OBJECT

public:
    /// The three must outlive the requests and the tasks they have started. `begunReadouts` counts
    /// the readouts of the fans that have begun.
    FanRequests(const HelperClient& helper, ControlHolder& holder, TaskRunner& tasks,
                std::function<std::uint64_t()> begunReadouts);

    /// The targets last handed to the helper, in RPM, by fan index.
    const FanTargets& lastTargets() const { return lastTargets_; }
    void forgetTargets();

    /// Asks for the curve. Its first speeds are to be sent now if its temperature is known, or else
    /// when `curveStepDue` tells.
    void wishCurve(bool isSourceKnown);
    /// Forces both fans to a speed, in RPM. `silentSuccess`: it is the curve's, and only failures
    /// are reported.
    void sendTargetRPMs(double fan0, double fan1, bool silentSuccess);
    /// Gives all fans back to the automatic control.
    void sendResetAllToAuto();
    /// Has whoever else steers the fans let go of them, and then calls `then`.
    void takeOver(std::function<void()> then);

    /// Nobody asks for anything any more; nothing is sent.
    void wishNothing();
    /// Compares the fans with the wish.
    void onReadout(const FanSupervisor::Readout& readout);
    const FanSupervisor& supervisor() const { return supervisor_; }
    /// Whether the last wish was refused because another program steers the fans.
    bool canTakeOver() const { return canTakeOver_; }

    /// What every request goes through: closed, it holds the next ones back. Lives as long as
    /// anything that sends.
    const std::shared_ptr<DispatchGate>& gate() const { return gate_; }

Q_SIGNALS:
    void lastTargetsChanged();
    /// Whether there was a helper that can be used.
    void helperSeen(bool isThere);
    /// The helper's guard refuses low speeds.
    void guardSeen(std::optional<GuardCause> cause);
    /// A line for the user.
    void reported(const std::optional<std::string>& message, bool isError);
    /// Every request of a dispatch has been answered, be it with a refusal.
    void answered();
    void canTakeOverChanged();
    /// Another program steers the fans from now on.
    void controlLost();
    /// The curve's speeds are to be sent, whether or not they have moved.
    void curveStepDue();
    /// What `supervisor` says may have changed.
    void supervised();

private:
    using Answers = std::vector<HelperResponse>;
    struct Outcome;

    /// How much of what a dispatch brings about is reported.
    enum class Report {
        everything,
        failures,
        recovery, ///< a success, if a failure has been reported before
    };

    static Outcome carryOut(const std::vector<HelperRequest>& requests, const HelperClient& helper,
                            DispatchGate& gate, std::uint64_t wish);
    bool mayForce();
    void releaseUnlessWished();
    void letGo(const std::string& by);
    void sendTargets(const FanTargets& targets, Report report);
    void sendReset(Report report);
    void dispatch(std::vector<HelperRequest> requests, Report report,
                  const std::string& successMessage);
    void publish(const Outcome& outcome, Report report, const std::string& successMessage);
    void conclude(const Outcome& outcome, std::uint64_t wish);
    void carryOutStep(FanSupervisor::Step step);
    void tell(FanSupervisor::Notice notice);

    const HelperClient& helper_;
    ControlHolder& holder_;
    const std::function<std::uint64_t()> begunReadouts_;
    FanSupervisor supervisor_;
    bool canTakeOver_ = false;
    std::int64_t tick_ = 0;              ///< of the last readout
    bool isFailureReported_ = false;     ///< since the last success
    std::optional<std::string> failure_; ///< of the newest dispatch that has ended
    FanTargets lastTargets_;
    const std::shared_ptr<DispatchGate> gate_;
    DetachedTasks tasks_;
};

} // namespace ventaro
