#pragma once

#include "Clock.h"
#include "MachineRoot.h"

namespace ventaro {

/// The clock of a simulated machine. While the machine is off its tickers follow the host's.
class SimulatedClock final : public Clock {
public:
    SimulatedClock(MachineRoot root, std::unique_ptr<Clock> host)
        : root_(std::move(root)), host_(std::move(host)) {}
    /// The host's: time stamps are for people.
    std::chrono::system_clock::time_point now() const override;
    std::unique_ptr<Ticker> ticker(std::chrono::milliseconds interval) override;

private:
    const MachineRoot root_;
    const std::unique_ptr<Clock> host_;
};

} // namespace ventaro
