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
FanRange usableRange(int fanIndex, std::optional<double> minimum, std::optional<double> maximum) {
    const auto limitOr = [](std::optional<double> limit, double fallback) {
        return limit && std::isfinite(*limit) ? *limit : fallback;
    };
    const FanRange builtIn = builtInRange(fanIndex);
    return {limitOr(minimum, builtIn.minimum), limitOr(maximum, builtIn.maximum)};
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

FanHold SMCService::holdOf(int fanIndex, std::optional<double> mode) {
    const auto hold = [](bool isForced) { return isForced ? FanHold::forced : FanHold::automatic; };
    try {
        if (mode) {
            return hold(isForcedMode(*mode));
        }
        if (has(fanKey(fanIndex, "Md"))) {
            return FanHold::unread;
        }
        const auto mask = readForceMask();
        return mask ? hold((*mask & forceBit(fanIndex)) != 0) : FanHold::untold;
    } catch (const SMCError&) {
        return FanHold::unread;
    }
}

FanSurvey SMCService::surveyFans() {
    FanSurvey survey;
    const int count = fanCount();
    const int steerable = count > 0 ? count : steerableFanCount();
    survey.fans.reserve(static_cast<std::size_t>(count));
    survey.readBacks.reserve(static_cast<std::size_t>(steerable));
    for (int index = 0; index < steerable; ++index) {
        FanReading fan;
        fan.id = index;
        fan.name = fanName(index, count);
        fan.currentRPM = readDouble(fanKey(index, "Ac")).value_or(0);
        const auto minimum = readDouble(fanKey(index, "Mn"));
        const auto maximum = readDouble(fanKey(index, "Mx"));
        fan.minRPM = minimum.value_or(builtInRange(index).minimum);
        fan.maxRPM = maximum.value_or(builtInRange(index).maximum);
        const auto target = readDouble(fanKey(index, "Tg"));
        fan.targetRPM = target.value_or(fan.currentRPM);
        const auto mode = readDouble(fanKey(index, "Md"));
        fan.mode = isForcedMode(mode.value_or(0)) ? FanMode::forced : FanMode::automatic;
        survey.readBacks.push_back(
            {index, holdOf(index, mode), target, usableRange(index, minimum, maximum)});
        if (index < count) {
            survey.fans.push_back(std::move(fan));
        }
    }
    return survey;
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
    const FanHold hold = holdOf(fanIndex, readDouble(fanKey(fanIndex, "Md")));
    return hold == FanHold::unread ? std::nullopt : std::optional(hold == FanHold::forced);
}

bool SMCService::areFansAutomatic() {
    const int count = steerableFanCount();
    for (int fan = 0; fan < count; ++fan) {
        if (readFanForced(fan).value_or(true)) {
            return false;
        }
    }
    return true;
}

FanRange SMCService::readFanRange(int fanIndex) {
    const auto minimum = readDouble(fanKey(fanIndex, "Mn"));
    return usableRange(fanIndex, minimum, readDouble(fanKey(fanIndex, "Mx")));
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
