#include "Workload.h"

#include <array>
#include <cmath>
#include <utility>

namespace ventaro {

namespace {

constexpr std::array<std::pair<std::string_view, Workload>, 5> names{{
    {"idle", Workload::idle},
    {"office", Workload::office},
    {"compile", Workload::compile},
    {"game", Workload::game},
    {"burst", Workload::burst},
}};

/// A course that wanders smoothly between -1 and 1, with a new goal every five seconds.
double wander(std::uint64_t seed, std::uint64_t stream, double seconds) {
    constexpr double period = 5;
    const double knot = std::floor(seconds / period);
    const double share = seconds / period - knot;
    const auto instant = static_cast<std::int64_t>(knot);
    return noiseAt(seed, stream, instant) * (1 - share) +
           noiseAt(seed, stream, instant + 1) * share;
}

} // namespace

std::optional<Workload> workloadFromName(std::string_view name) {
    for (const auto& [candidate, workload] : names) {
        if (candidate == name) {
            return workload;
        }
    }
    return std::nullopt;
}

double noiseAt(std::uint64_t seed, std::uint64_t stream, std::int64_t instant) {
    // SplitMix64, the usual mixer for a counter.
    std::uint64_t bits = seed * 0x9E3779B97F4A7C15U + stream * 0xD1B54A32D192ED03U +
                         static_cast<std::uint64_t>(instant);
    bits += 0x9E3779B97F4A7C15U;
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
    bits ^= bits >> 31U;
    constexpr double largest = 9007199254740992.0; // 2^53
    return static_cast<double>(bits >> 11U) / largest * 2 - 1;
}

PowerDraw demandOf(Workload workload, double seconds, std::uint64_t seed) {
    constexpr std::uint64_t cpuStream = 1;
    constexpr std::uint64_t gpuStream = 2;
    const double cpu = wander(seed, cpuStream, seconds);
    const double gpu = wander(seed, gpuStream, seconds);
    switch (workload) {
    case Workload::idle:
        return {1.8 + 0.3 * cpu, 0.08 + 0.02 * gpu, 0.2, 4.7};
    case Workload::office:
        return {24 + 4 * cpu, 1.5 + gpu, 0.6, 6};
    case Workload::compile:
        return {54 + 2 * cpu, 1, 1.5, 7};
    case Workload::game:
        return {22 + 3 * cpu, 38 + 3 * gpu, 1.5, 7};
    case Workload::burst: {
        constexpr double period = 60;
        constexpr double busy = 20;
        return std::fmod(seconds, period) < busy ? PowerDraw{60, 1, 1.2, 7}
                                                 : PowerDraw{2, 0.1, 0.3, 5};
    }
    }
    return {};
}

} // namespace ventaro
