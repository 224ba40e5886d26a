#include "MachineClock.h"

namespace ventaro {

std::chrono::milliseconds MachineClock::now() const {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
    return stepped_ + std::chrono::duration_cast<std::chrono::milliseconds>(passed * factor_);
}

} // namespace ventaro
