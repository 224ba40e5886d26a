#pragma once

#include <array>
#include <cstddef>

namespace ventaro {

/// What the machine's parts draw, in W.
struct PowerDraw {
    double cpu = 0;
    double gpu = 0;
    double memory = 0;
    double board = 0; ///< everything else: SSD, T2, display electronics, radio

    double total() const { return cpu + gpu + memory + board; }
};

/// Where heat is stored.
enum class ThermalNode { cpuDie, gpuDie, leftHeatPipe, rightHeatPipe, board, battery };
constexpr std::size_t thermalNodeCount = 6;

/// The machine as six lumped heat capacities joined by conductances, over ambient air. Heat leaves
/// through the fins, in proportion to the fans' speed, and a little through the case. Explicit
/// Euler steps move the same heat out of one node and into the other, so energy is conserved
/// exactly but for rounding. Not thread-safe.
class ThermalModel {
public:
    /// In °C; the air of an office.
    static constexpr double ambient = 25;
    /// In °C: where the processors clock down (junction limit of the i9-9880H).
    static constexpr double throttleTemperature = 100;

    /// A machine that has been off for long: everything at ambient temperature.
    ThermalModel();
    /// A machine that has idled for long.
    static ThermalModel idling();

    /// One step of `seconds` (at most 0.1 for stability). The processors draw `demand` less what
    /// throttling takes away; fan speeds in RPM.
    void step(double seconds, const PowerDraw& demand, double leftRPM, double rightRPM);

    double temperature(ThermalNode node) const; ///< in °C
    /// What was drawn in the last step, after throttling.
    const PowerDraw& drawn() const { return drawn_; }
    bool isThrottling() const { return cpuShare_ < 1 || gpuShare_ < 1; }

    double energyIn() const { return energyIn_; }   ///< J drawn since the start
    double energyOut() const { return energyOut_; } ///< J given to the air since the start
    double energyStored() const;                    ///< J above ambient temperature

private:
    std::array<double, thermalNodeCount> temperatures_;
    PowerDraw drawn_;
    double cpuShare_ = 1; ///< 0 to 1, what throttling leaves of the demand
    double gpuShare_ = 1;
    double energyIn_ = 0;
    double energyOut_ = 0;
};

} // namespace ventaro
