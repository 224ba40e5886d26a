#pragma once

#include <string>

namespace ventaro {

/// The one place that turns numbers into the digits people read: like printf, exact on ties, and
/// the same in every locale.

/// `value` with `decimals` digits after the point, as "%.*f" writes it; "inf", "-inf" and "nan" for
/// values that are not finite.
std::string formatFixed(double value, int decimals);

/// `value` without its fraction, which is dropped, not rounded; "--" if it is not finite.
std::string formatWhole(double value);

/// `value` rounded to the nearest whole number, halves away from zero; "--" if it is not finite.
std::string formatRounded(double value);

} // namespace ventaro
