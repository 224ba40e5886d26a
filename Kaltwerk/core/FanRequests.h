#pragma once

#include "DetachedTasks.h"
#include "FanTargets.h"

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

class DispatchGate;
class HelperClient;
struct HelperRequest;
struct HelperResponse;

/// Has the helper set the fans, beside the main thread. What was wished for last is what happens:
/// nothing of an older dispatch is sent once there is a newer one. Main thread only.
class FanRequests : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the requests and the tasks they have started.
    FanRequests(const HelperClient& helper, TaskRunner& tasks);

    /// The targets last handed to the helper, in RPM, by fan index.
    const FanTargets& lastTargets() const { return lastTargets_; }
    void forgetTargets();

    /// Forces both fans to a speed, in RPM. `silentSuccess`: only failures are reported.
    void sendTargetRPMs(double fan0, double fan1, bool silentSuccess);
    /// Gives all fans back to the automatic control.
    void sendResetAllToAuto();

    /// What every request goes through: closed, it holds the next ones back. Lives as long as
    /// anything that sends.
    const std::shared_ptr<DispatchGate>& gate() const { return gate_; }

Q_SIGNALS:
    void lastTargetsChanged();
    /// Whether there was a helper that can be used.
    void helperSeen(bool isThere);
    /// A line for the user.
    void reported(const std::optional<std::string>& message, bool isError);
    /// Every request of a dispatch has been answered, be it with a refusal.
    void answered();

private:
    using Answers = std::vector<HelperResponse>;

    void dispatch(std::vector<HelperRequest> requests,
                  std::function<void(const Answers&)> publishAnswers);
    void publishTargets(double fan0, double fan1, bool silentSuccess, const Answers& answers);

    const HelperClient& helper_;
    FanTargets lastTargets_;
    const std::shared_ptr<DispatchGate> gate_;
    DetachedTasks tasks_;
};

} // namespace ventaro
