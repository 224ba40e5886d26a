#include "SteeringTemperatures.h"

#include <limits>

namespace ventaro {

namespace {

constexpr int enough = 2;                    // readings
constexpr std::int64_t soon = 300;           // ticks: ten minutes
constexpr std::int64_t steadyGoodTicks = 15; // half a minute

} // namespace

void TemperatureTrust::see(std::optional<double> celsius, std::int64_t tick) {
    if (!celsius) {
        goodReadings_ = 0;
        if (++badReadings_ >= enough && state_ != State::lost) {
            state_ = State::lost;
            isUnsteady_ = lostAt_ && tick - *lostAt_ < soon;
            lostAt_ = tick;
        }
        return;
    }
    badReadings_ = 0;
    celsius_ = *celsius;
    if (state_ != State::lost) {
        state_ = State::known;
        return;
    }
    if (++goodReadings_ == 1) {
        goodSince_ = tick;
    }
    if (goodReadings_ >= enough && (!isUnsteady_ || tick - goodSince_ >= steadyGoodTicks)) {
        state_ = State::known;
    }
}

TemperatureTrust::State SteeringTemperatures::state(CurveSensorSource source) const {
    using State = TemperatureTrust::State;
    switch (source) {
    case CurveSensorSource::maxCpuGpu:
        return cpu_.state() == State::known && gpu_.state() == State::pending ? State::pending
                                                                              : cpu_.state();
    case CurveSensorSource::cpuPackage:
        return cpu_.state();
    case CurveSensorSource::gpuDie:
        return gpu_.state();
    }
    return cpu_.state();
}

std::optional<double> SteeringTemperatures::celsius(CurveSensorSource source) const {
    if (state(source) != TemperatureTrust::State::known) {
        return std::nullopt;
    }
    // The smallest of all loses every comparison, and is never the only one.
    constexpr double none = std::numeric_limits<double>::lowest();
    return temperatureOf(source, cpu_.celsius().value_or(none), gpu_.celsius().value_or(none));
}

} // namespace ventaro
