#pragma once

#include "HelperIPC.h"
#include "HelperLog.h"
#include "SMCService.h"

namespace ventaro {

/// Carries requests out on the SMC. One thread.
class RequestHandler {
public:
    /// Both must outlive the handler.
    RequestHandler(SMCService& smc, const HelperLog& log) : smc_(smc), log_(log) {}

    /// Never throws: whatever fails is a response with `success` false and a German sentence.
    HelperResponse handle(const HelperRequest& request);

private:
    HelperResponse setFanRPM(const HelperRequest& request);
    HelperResponse resetFanAuto(const HelperRequest& request);
    HelperResponse resetAllAuto();
    /// The index as the SMC counts, or the refusal of one that it does not report.
    std::variant<int, HelperResponse> checkedFan(const HelperRequest& request);

    SMCService& smc_;
    const HelperLog& log_;
};

/// A response that tells the user why nothing was done.
HelperResponse refusal(std::string sentence);

} // namespace ventaro
