#pragma once

#include <array>
#include <cstddef>

namespace ventaro {

/// One fan with its motor controller. Speeds in RPM.
struct SimulatedFan {
    double minimum = 0;
    double maximum = 0;
    double speed = 0;
    double target = 0;
    bool forced = false;

    /// Moves towards the target, no faster than the motor can, and never beyond the limits of what
    /// it can do: a target that is no number keeps it at its minimum.
    void step(double seconds);
};

/// The SMC's own regulation: the share of every fan's range, 0 to 1, that the die temperatures (°C)
/// ask for. All fans run at the same share, as measured on the real machine.
double automaticShare(double cpuDie, double gpuDie);

} // namespace ventaro
