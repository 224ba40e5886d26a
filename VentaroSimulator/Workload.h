#pragma once

#include "ThermalModel.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace ventaro {

/// What the simulated machine is busy with.
enum class Workload { idle, office, compile, game, burst };

std::optional<Workload> workloadFromName(std::string_view name);

/// What `workload` draws `seconds` after power-on. The same seed gives the same course.
PowerDraw demandOf(Workload workload, double seconds, std::uint64_t seed);

/// A reproducible random number from -1 to 1 that belongs to these three.
double noiseAt(std::uint64_t seed, std::uint64_t stream, std::int64_t instant);

} // namespace ventaro
