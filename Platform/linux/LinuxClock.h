#pragma once

#include "Clock.h"

namespace ventaro {

/// The host's own time, its tickers timer descriptors of the kernel.
class LinuxClock final : public Clock {
public:
    std::chrono::system_clock::time_point now() const override;
    std::unique_ptr<Ticker> ticker(std::chrono::milliseconds interval) override;
};

} // namespace ventaro
