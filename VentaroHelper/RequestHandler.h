#pragma once

#include "HelperIPC.h"
#include "HelperLog.h"
#include "SMCService.h"

#include <string>
#include <variant>

namespace ventaro {

/// Carries requests out on the SMC, with a line in the log for each change and each failure. One
/// thread.
class RequestHandler {
public:
    /// Both must outlive the handler.
    RequestHandler(SMCService& smc, const HelperLog& log) : smc_(smc), log_(log) {}

    /// Never throws: whatever fails is a response with `success` false and a German sentence.
    HelperResponse handle(const HelperRequest& request);

private:
    struct Fan {
        int index;
        std::string name;
    };

    HelperResponse carryOut(const HelperRequest& request);
    HelperResponse setFanRPM(const HelperRequest& request);
    HelperResponse resetFanAuto(const HelperRequest& request);
    HelperResponse resetAllAuto();
    /// The fan as the SMC counts, or the refusal of one that it does not report.
    std::variant<Fan, HelperResponse> checkedFan(const HelperRequest& request);
    /// A reset that finds no mode to write succeeds, also when the SMC just did not answer. Throws
    /// SMCError if it still does not; a refusal if the fan is still forced.
    std::optional<HelperResponse> refusalIfStillForced(int fanIndex, const std::string& name);

    SMCService& smc_;
    const HelperLog& log_;
};

} // namespace ventaro
