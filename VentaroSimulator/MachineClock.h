#pragma once

#include <chrono>
#include <optional>

namespace ventaro {

/// The machine's time since power-on: the host's, scaled, or moved by command. One thread.
class MachineClock {
public:
    /// Machine seconds per host second, greater than 0.
    static MachineClock scaled(double factor) { return MachineClock(factor); }
    /// Stands still but for `step`.
    static MachineClock stepped() { return MachineClock(0); }

    std::chrono::milliseconds now() const;
    /// How long the host waits until `instant`; no value while the clock stands still.
    std::optional<std::chrono::milliseconds> hostTimeUntil(std::chrono::milliseconds instant) const;
    bool isStepped() const { return factor_ == 0; }
    /// Moves a stepped clock on.
    void step(std::chrono::milliseconds by) { stepped_ += by; }

private:
    explicit MachineClock(double factor)
        : factor_(factor), start_(std::chrono::steady_clock::now()) {}

    double factor_;
    std::chrono::steady_clock::time_point start_;
    std::chrono::milliseconds stepped_{0};
};

} // namespace ventaro
