#pragma once

#include "FanRelease.h"
#include "FanWatch.h"
#include "HelperIPC.h"
#include "HelperLog.h"
#include "SMCService.h"

#include <chrono>
#include <optional>
#include <string>
#include <variant>

namespace ventaro {

/// Carries requests out on the SMC, with a line in the log for each change and each failure. One
/// thread.
class RequestHandler {
public:
    /// All must outlive the handler.
    RequestHandler(SMCService& smc, FanRelease& release, FanWatch& watch, const HelperLog& log)
        : smc_(smc), release_(release), watch_(watch), log_(log) {}

    /// Never throws: whatever fails is a response with `success` false and a German sentence.
    HelperResponse handle(const HelperRequest& request);

private:
    using Fan = FanRelease::Fan;

    HelperResponse carryOut(const HelperRequest& request);
    HelperResponse answerToPing() const;
    HelperResponse setFanRPM(const HelperRequest& request);
    HelperResponse resetFanAuto(const HelperRequest& request);
    HelperResponse resetAllAuto();
    HelperResponse notReleased(const std::string& failure) const;
    /// The fan as the SMC counts, or the refusal of one that it does not report.
    std::variant<Fan, HelperResponse> checkedFan(const HelperRequest& request);
    /// What the SMC has once said holds: an exchange less in front of those that matter.
    int fanCount();

    SMCService& smc_;
    FanRelease& release_;
    FanWatch& watch_;
    const HelperLog& log_;
    std::optional<int> knownFanCount_;
    const std::chrono::system_clock::time_point started_ = std::chrono::system_clock::now();
};

} // namespace ventaro
