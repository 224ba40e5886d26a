#pragma once

#include <chrono>
#include <memory>

namespace ventaro {

/// Ticks at a steady pace until it is destroyed.
class Ticker {
public:
    virtual ~Ticker() = default;
    /// Can be read from the first tick until `acknowledge`. Owned by the ticker.
    virtual int descriptor() const = 0;
    /// Takes all ticks so far as seen.
    virtual void acknowledge() = 0;
};

/// The time of the machine. Any thread.
class Clock {
public:
    virtual ~Clock() = default;
    /// For time stamps.
    virtual std::chrono::system_clock::time_point now() const = 0;
    /// Ticks every `interval` of the machine's time, first one interval from now. Throws
    /// std::system_error if the process is out of descriptors.
    virtual std::unique_ptr<Ticker> ticker(std::chrono::milliseconds interval) = 0;
};

} // namespace ventaro
