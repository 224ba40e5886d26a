#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace ventaro {

/// A universally unique identifier (RFC 4122).
class UUID {
public:
    /// A new random one (version 4). Throws std::system_error if the system gives no random bytes.
    static UUID random();
    /// From 36 characters, 8-4-4-4-12 hexadecimal digits of either case with hyphens; no value for
    /// any other text.
    static std::optional<UUID> parse(const std::string& text);

    /// 36 characters, upper-case digits.
    std::string text() const;

    bool operator==(const UUID&) const = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

} // namespace ventaro
