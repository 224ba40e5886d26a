#pragma once

#include "FanCurve.h"

#include <string_view>
#include <vector>

namespace ventaro {

/// The curve of a text such as "45:0,60:30,85:100": temperatures in °C from 0 to 120 with percents
/// from 0 to 100, at least two points in any order. Throws std::invalid_argument with an English
/// sentence that says what is wrong.
std::vector<CurvePoint> parseCurve(std::string_view text);

} // namespace ventaro
