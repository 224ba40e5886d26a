#include "UUID.h"

#include <cstring>
#include <random>

namespace ventaro {

namespace {

constexpr std::string_view pattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";

std::optional<unsigned> digitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return static_cast<unsigned>(digit - '0');
    }
    const char lower = static_cast<char>(digit | 0x20);
    if (lower >= 'a' && lower <= 'f') {
        return static_cast<unsigned>(lower - 'a' + 10);
    }
    return std::nullopt;
}

} // namespace

UUID UUID::random() {
    // Seeded once per thread: the system's own random bytes take microseconds each.
    thread_local std::mt19937_64 generator = [] {
        std::random_device source;
        std::seed_seq seed{source(), source(), source(), source(),
                           source(), source(), source(), source()};
        return std::mt19937_64(seed);
    }();
    UUID uuid;
    for (std::size_t half = 0; half < uuid.bytes_.size(); half += sizeof(std::uint64_t)) {
        const std::uint64_t bits = generator();
        std::memcpy(uuid.bytes_.data() + half, &bits, sizeof bits);
    }
    uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0FU) | 0x40U); // version 4
    uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3FU) | 0x80U); // variant 1
    return uuid;
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != pattern.size()) {
        return std::nullopt;
    }
    UUID uuid;
    std::size_t digits = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (pattern[index] == '-') {
            if (text[index] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const auto value = digitValue(text[index]);
        if (!value) {
            return std::nullopt;
        }
        std::uint8_t& byte = uuid.bytes_[digits++ / 2];
        byte = static_cast<std::uint8_t>(unsigned{byte} << 4U | *value);
    }
    return uuid;
}

std::string UUID::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    std::size_t written = 0;
    for (const char place : pattern) {
        if (place == '-') {
            text += place;
            continue;
        }
        const unsigned byte = bytes_[written / 2];
        text += digits[written++ % 2 == 0 ? byte >> 4U : byte & 0xFU];
    }
    return text;
}

} // namespace ventaro
