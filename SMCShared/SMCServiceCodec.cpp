#include "SMCService.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace ventaro {

namespace {

std::uint16_t bigEndian16(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8U | bytes[1]);
}

constexpr double fpe2Scale = 4;   // two fraction bits
constexpr double sp78Scale = 256; // eight fraction bits

/// Rounds halves away from zero and clamps to 0...largest.
std::uint16_t clampedInteger(std::string_view type, double value, std::int64_t largest) {
    const double rounded = std::round(value);
    // 2^63, the first double beyond the signed 64-bit range; NaN fails the comparison as well.
    constexpr double limit = 9223372036854775808.0;
    if (!(rounded >= -limit && rounded < limit)) {
        throw SMCError::unsupportedDataType(std::string(type));
    }
    const auto integer = static_cast<std::int64_t>(rounded);
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(integer, 0, largest));
}

SMCBytes bigEndianBytes(std::uint16_t value) {
    return {static_cast<std::uint8_t>(value >> 8U), static_cast<std::uint8_t>(value & 0xFFU)};
}

} // namespace

SMCBytes::SMCBytes(std::span<const std::uint8_t> bytes) : size_(std::min(bytes.size(), capacity)) {
    std::copy_n(bytes.begin(), size_, bytes_.begin());
}

std::uint32_t SMCService::fourCharCode(std::string_view key) {
    std::uint32_t code = 0;
    for (const char character : key.substr(0, 4)) {
        code = code << 8U | static_cast<std::uint8_t>(character);
    }
    return code;
}

std::string SMCService::fourCharString(std::uint32_t code) {
    std::string text;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        const auto scalar = static_cast<std::uint8_t>(code >> shift);
        if (scalar < 0x80) {
            text += static_cast<char>(scalar);
        } else { // two bytes of UTF-8
            text += static_cast<char>(0xC0 | scalar >> 6U);
            text += static_cast<char>(0x80 | (scalar & 0x3FU));
        }
    }
    return text;
}

std::optional<double> SMCService::decodeValue(std::string_view type,
                                              std::span<const std::uint8_t> bytes) {
    if (type == "flt " && bytes.size() >= 4) {
        const std::uint32_t bits = bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8U |
                                   static_cast<std::uint32_t>(bytes[2]) << 16U |
                                   static_cast<std::uint32_t>(bytes[3]) << 24U;
        return std::bit_cast<float>(bits);
    }
    if (type == "sp78" && bytes.size() >= 2) {
        return static_cast<std::int16_t>(bigEndian16(bytes)) / sp78Scale;
    }
    if (type == "fpe2" && bytes.size() >= 2) {
        return bigEndian16(bytes) / fpe2Scale;
    }
    if (type == "ui16" && bytes.size() >= 2) {
        return bigEndian16(bytes);
    }
    if (type == "ui8 " && !bytes.empty()) {
        return bytes[0];
    }
    return std::nullopt;
}

SMCBytes SMCService::encodeValue(std::string_view type, double value) {
    constexpr std::int64_t largest8 = std::numeric_limits<std::uint8_t>::max();
    constexpr std::int64_t largest16 = std::numeric_limits<std::uint16_t>::max();
    if (type == "ui8 ") {
        return {static_cast<std::uint8_t>(clampedInteger(type, value, largest8))};
    }
    if (type == "ui16") {
        return bigEndianBytes(clampedInteger(type, value, largest16));
    }
    if (type == "fpe2") {
        return bigEndianBytes(clampedInteger(type, value * fpe2Scale, largest16));
    }
    if (type == "flt " && std::abs(value) <= std::numeric_limits<float>::max()) {
        const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
        return {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8U),
                static_cast<std::uint8_t>(bits >> 16U), static_cast<std::uint8_t>(bits >> 24U)};
    }
    throw SMCError::unsupportedDataType(std::string(type));
}

} // namespace ventaro
