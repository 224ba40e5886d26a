#pragma once

#include "ControlProfile.h"

#include <cstdint>
#include <optional>

namespace ventaro {

/// Whether a temperature can be steered by. Two bad readings in a row lose it, two good ones bring
/// it back; one that is lost twice within ten minutes has to be good for half a minute. A plain
/// value; its time are the ticks of the loop, two seconds each.
class TemperatureTrust {
public:
    enum class State {
        pending, ///< it has not been read yet
        known,
        lost,
    };

    /// `celsius`: no value if it does not read or is not plausible.
    void see(std::optional<double> celsius, std::int64_t tick);
    State state() const { return state_; }
    /// The last good reading, in °C; no value unless the temperature is known.
    std::optional<double> celsius() const {
        return state_ == State::known ? std::optional(celsius_) : std::nullopt;
    }

private:
    State state_ = State::pending;
    double celsius_ = 0;
    int badReadings_ = 0;  ///< in a row
    int goodReadings_ = 0; ///< in a row, while it is lost
    std::int64_t goodSince_ = 0;
    std::optional<std::int64_t> lostAt_; ///< the last time
    bool isUnsteady_ = false;            ///< lost again soon after
};

/// The temperatures of the curve's sources.
class SteeringTemperatures {
public:
    void see(std::optional<double> cpu, std::optional<double> gpu, std::int64_t tick) {
        cpu_.see(cpu, tick);
        gpu_.see(gpu, tick);
    }
    /// Of the two together the CPU decides: a GPU that is switched off says nothing.
    TemperatureTrust::State state(CurveSensorSource source) const;
    /// In °C; no value unless the source is known.
    std::optional<double> celsius(CurveSensorSource source) const;

private:
    TemperatureTrust cpu_;
    TemperatureTrust gpu_;
};

} // namespace ventaro
