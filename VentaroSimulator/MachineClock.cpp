#include "MachineClock.h"

namespace ventaro {

std::chrono::milliseconds MachineClock::now() const {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
    return stepped_ + std::chrono::duration_cast<std::chrono::milliseconds>(passed * factor_);
}

std::optional<std::chrono::milliseconds>
MachineClock::hostTimeUntil(std::chrono::milliseconds instant) const {
    if (isStepped()) {
        return std::nullopt;
    }
    const std::chrono::duration<double, std::milli> left = (instant - now()) / factor_;
    return std::chrono::ceil<std::chrono::milliseconds>(left);
}

} // namespace ventaro
