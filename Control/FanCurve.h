#pragma once

#include "UUID.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ventaro {

/// One point of the fan curve; identified by `id`.
struct CurvePoint {
    CurvePoint(double celsius, double percent) : temperature(celsius), speedPercent(percent) {}
    CurvePoint(UUID identity, double celsius, double percent)
        : id(identity), temperature(celsius), speedPercent(percent) {}

    UUID id = UUID::random();
    double temperature;  ///< °C
    double speedPercent; ///< percent of the fan's range: 0 is its minimum speed, 100 its maximum

    bool operator==(const CurvePoint&) const = default;
};

/// The number of points of a curve that is kept from one start to the next.
constexpr std::size_t storedCurveSize = 4;

/// The curve of a first start, from 45 °C to 85 °C, each point with a new identity.
std::vector<CurvePoint> defaultCurve();

/// The curve's percentage at `temperature` (°C), not limited to 0 to 100: linear between the
/// points, level before the first and behind the last, in whatever order they are stored. 30 for a
/// curve without points, 50 for a temperature that is not a number.
double evaluateCurvePercent(std::span<const CurvePoint> points, double temperature);

/// A JSON array of objects with "id", "temperature" and "speedPercent". Encoding throws
/// EncodingError for a number that is not finite; decoding throws DecodingError.
std::string encodeJson(std::span<const CurvePoint> points);
std::vector<CurvePoint> decodeCurvePoints(std::string_view json);

} // namespace ventaro
