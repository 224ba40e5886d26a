#pragma once

#include "ThermalModel.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace ventaro {

/// Computes every sensor of the model, temperatures in °C and powers in W, and hands each with its
/// key to `publish`. Readings bear a little noise that depends on `instant`, the same way for the
/// same seed.
void computeSensors(const ThermalModel& model, std::uint64_t seed, std::int64_t instant,
                    const std::function<void(std::string_view key, double value)>& publish);

} // namespace ventaro
