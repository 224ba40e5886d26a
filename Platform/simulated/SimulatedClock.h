#pragma once

#include "Clock.h"
#include "MachineRoot.h"

#include <cstdint>

namespace ventaro {

/// How a program is told the time of a simulated machine: it connects (SOCK_SEQPACKET), sends the
/// interval in milliseconds, host byte order, and gets a byte for every tick.
namespace ClockWire {

constexpr const char* socketPath = "/var/run/ventaro-simulator/clock.sock";
using Interval = std::uint32_t;

} // namespace ClockWire

/// The clock of a simulated machine. While the machine is off its tickers follow the host's time.
class SimulatedClock final : public Clock {
public:
    explicit SimulatedClock(MachineRoot root) : root_(std::move(root)) {}
    /// The host's: time stamps are for people.
    std::chrono::system_clock::time_point now() const override;
    std::unique_ptr<Ticker> ticker(std::chrono::milliseconds interval) override;

private:
    const MachineRoot root_;
};

} // namespace ventaro
