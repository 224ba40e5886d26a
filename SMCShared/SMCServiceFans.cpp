#include "SMCService.h"

#include <cmath>

namespace ventaro {

namespace {

constexpr const char* fanCountKey = "FNum";
constexpr const char* forceMaskKey = "FS! ";
constexpr int forceMaskBits = 16;
constexpr int defaultFanCount = 2;

std::string fanKey(int fanIndex, const char* suffix) {
    return "F" + std::to_string(fanIndex) + suffix;
}

/// A limit that is not a number bounds nothing, so a write falls back to the default for it too.
double limitOr(std::optional<double> limit, double fallback) {
    return limit && std::isfinite(*limit) ? *limit : fallback;
}

bool isForcedMode(double mode) { return std::trunc(mode) == 1; }

std::uint16_t forceBit(int fanIndex) {
    return fanIndex >= 0 && fanIndex < forceMaskBits ? static_cast<std::uint16_t>(1U << fanIndex)
                                                     : std::uint16_t{0};
}

} // namespace

std::string SMCService::fanName(int fanIndex, int fanCount) {
    if (fanCount == 2 && fanIndex == 0) {
        return "Linker Lüfter (CPU)";
    }
    if (fanCount == 2 && fanIndex == 1) {
        return "Rechter Lüfter (GPU)";
    }
    return "Lüfter " + std::to_string(fanIndex + 1);
}

int SMCService::fanCount() {
    const double count = readDouble(fanCountKey).value_or(defaultFanCount);
    // FNum is a "ui8 " on every known machine; NaN fails the comparison as well.
    constexpr double mostFans = 255;
    if (!(count >= 0 && count <= mostFans)) {
        return defaultFanCount;
    }
    return static_cast<int>(count);
}

int SMCService::steerableFanCount() {
    const int count = fanCount();
    return count == 0 && readDouble(fanKey(0, "Ac")) ? defaultFanCount : count;
}

std::vector<FanReading> SMCService::readFans() {
    const int count = fanCount();
    std::vector<FanReading> fans;
    fans.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        FanReading fan;
        fan.id = index;
        fan.name = fanName(index, count);
        fan.currentRPM = readDouble(fanKey(index, "Ac")).value_or(0);
        fan.minRPM = readDouble(fanKey(index, "Mn")).value_or(builtInRange(index).minimum);
        fan.maxRPM = readDouble(fanKey(index, "Mx")).value_or(builtInRange(index).maximum);
        fan.targetRPM = readDouble(fanKey(index, "Tg")).value_or(fan.currentRPM);
        const double mode = readDouble(fanKey(index, "Md")).value_or(0);
        fan.mode = isForcedMode(mode) ? FanMode::forced : FanMode::automatic;
        fans.push_back(std::move(fan));
    }
    return fans;
}

std::optional<double> SMCService::readFanTargetRPM(int fanIndex) {
    return readDouble(fanKey(fanIndex, "Tg"));
}

std::optional<std::uint16_t> SMCService::readForceMask() {
    if (!has(forceMaskKey)) {
        return std::nullopt;
    }
    const SMCRawValue raw = readKeyRaw(forceMaskKey);
    return raw.bytes.size() < 2
               ? std::nullopt
               : std::optional(static_cast<std::uint16_t>(raw.bytes[0] << 8U | raw.bytes[1]));
}

std::optional<bool> SMCService::readFanForced(int fanIndex) {
    const std::string modeKey = fanKey(fanIndex, "Md");
    try {
        if (has(modeKey)) {
            const auto mode = readDouble(modeKey);
            return mode ? std::optional(isForcedMode(*mode)) : std::nullopt;
        }
        return (readForceMask().value_or(0) & forceBit(fanIndex)) != 0;
    } catch (const SMCError&) {
        return std::nullopt;
    }
}

FanRange SMCService::readFanRange(int fanIndex) {
    const FanRange builtIn = builtInRange(fanIndex);
    return {limitOr(readDouble(fanKey(fanIndex, "Mn")), builtIn.minimum),
            limitOr(readDouble(fanKey(fanIndex, "Mx")), builtIn.maximum)};
}

void SMCService::setFanTargetRPM(int fanIndex, double rpm, const FanRange& range) {
    const std::string modeKey = fanKey(fanIndex, "Md");
    if (has(modeKey)) {
        writeValue(modeKey, static_cast<double>(rawValue(FanMode::forced)));
    } else if (const auto mask = readForceMask()) {
        writeValue(forceMaskKey, *mask | forceBit(fanIndex));
    }
    writeValue(fanKey(fanIndex, "Tg"), range.limited(rpm));
}

void SMCService::resetFanToAutomatic(int fanIndex) {
    const std::string modeKey = fanKey(fanIndex, "Md");
    if (has(modeKey)) {
        writeValue(modeKey, static_cast<double>(rawValue(FanMode::automatic)));
    } else if (const auto mask = readForceMask()) {
        writeValue(forceMaskKey, *mask & ~forceBit(fanIndex));
    }
}

void SMCService::resetAllFansToAutomatic() {
    const int count = steerableFanCount();
    std::optional<SMCError> last;
    for (int index = 0; index < count; ++index) {
        try {
            resetFanToAutomatic(index);
        } catch (const SMCError& error) {
            last = error;
        }
    }
    if (last) {
        throw SMCError(*last);
    }
}

} // namespace ventaro
