#include "SimulatedFans.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

void SimulatedFan::step(double seconds) {
    constexpr double slewPerSecond = 400; // spin-up of a laptop blower takes about ten seconds
    const double goal = std::isfinite(target) ? std::clamp(target, 0.0, maximum) : minimum;
    const double most = slewPerSecond * seconds;
    speed += std::clamp(goal - speed, -most, most);
}

double automaticShare(double cpuDie, double gpuDie) {
    // The fans begin to rise at 62 °C and reach their maximum just below throttling.
    constexpr double start = 62;
    constexpr double cpuFull = 100;
    constexpr double gpuFull = 96;
    const double share =
        std::max((cpuDie - start) / (cpuFull - start), (gpuDie - start) / (gpuFull - start));
    return std::clamp(share, 0.0, 1.0);
}

} // namespace ventaro
