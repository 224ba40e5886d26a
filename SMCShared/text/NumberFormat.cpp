#include "NumberFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace ventaro {

std::string formatFixed(double value, int decimals) {
    // The largest double has 309 digits before the point.
    constexpr int mostDecimals = 60;
    std::array<char, 400> text;
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed,
                      std::clamp(decimals, 0, mostDecimals));
    return {text.data(), result.ptr};
}

std::string formatWhole(double value) {
    // Adding zero turns -0.0, which would be written with its sign, into 0.0.
    return std::isfinite(value) ? formatFixed(std::trunc(value) + 0.0, 0) : "--";
}

std::string formatRounded(double value) { return formatWhole(std::round(value)); }

} // namespace ventaro
