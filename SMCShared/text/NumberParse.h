#pragma once

#include <charconv>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace ventaro {

/// The number that `text` is, in any locale: nothing before it, nothing behind it, within
/// `least` and `most`. No value for anything else.
template<typename Number>
std::optional<Number> parseNumber(std::string_view text,
                                  Number least = std::numeric_limits<Number>::lowest(),
                                  Number most = std::numeric_limits<Number>::max()) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isNumber = result.ec == std::errc{} && result.ptr == end;
    return isNumber && least <= number && number <= most ? std::optional(number) : std::nullopt;
}

} // namespace ventaro
