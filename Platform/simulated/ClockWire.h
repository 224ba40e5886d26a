#pragma once

#include <cstdint>

namespace ventaro {

/// How a program is told the time of a simulated machine: it connects, sends the interval in
/// milliseconds, host byte order, and gets a byte for every tick.
namespace ClockWire {

constexpr const char* socketPath = "/var/run/ventaro-simulator/clock.sock";
using Interval = std::uint32_t;

} // namespace ClockWire

} // namespace ventaro
