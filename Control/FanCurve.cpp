#include "FanCurve.h"

#include "JsonObject.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

namespace {

/// In order of temperature; what is not a number stands last.
bool isColder(const CurvePoint& left, const CurvePoint& right) {
    return !std::isnan(left.temperature) &&
           (std::isnan(right.temperature) || left.temperature < right.temperature);
}

} // namespace

std::vector<CurvePoint> defaultCurve() { return {{45, 0}, {60, 30}, {72, 60}, {85, 100}}; }

double evaluateCurvePercent(std::span<const CurvePoint> points, double temperature) {
    constexpr double withoutPoints = 30;
    constexpr double withoutInterval = 50;
    constexpr double leastWidth = 0.1; // °C
    std::vector<CurvePoint> sorted(points.begin(), points.end());
    std::stable_sort(sorted.begin(), sorted.end(), isColder);
    if (sorted.empty()) {
        return withoutPoints;
    }
    if (sorted.front().temperature >= temperature) {
        return sorted.front().speedPercent;
    }
    if (sorted.back().temperature <= temperature) {
        return sorted.back().speedPercent;
    }
    for (std::size_t index = 1; index < sorted.size(); ++index) {
        const CurvePoint& a = sorted[index - 1];
        const CurvePoint& b = sorted[index];
        if (a.temperature <= temperature && b.temperature >= temperature) {
            const double width = std::max(leastWidth, b.temperature - a.temperature);
            return a.speedPercent +
                   (temperature - a.temperature) / width * (b.speedPercent - a.speedPercent);
        }
    }
    return withoutInterval;
}

std::string encodeJson(std::span<const CurvePoint> points) {
    std::string text = "[";
    for (const CurvePoint& point : points) {
        text += (text.size() > 1 ? "," : "") + JsonObjectWriter()
                                                   .string("id", point.id.text())
                                                   .number("temperature", point.temperature)
                                                   .number("speedPercent", point.speedPercent)
                                                   .text();
    }
    return text + "]";
}

std::vector<CurvePoint> decodeCurvePoints(std::string_view json) {
    std::vector<CurvePoint> points;
    for (const JsonObjectReader& object : readJsonObjects(json)) {
        const auto id = UUID::parse(object.string("id"));
        if (!id) {
            throw DecodingError(DecodingError::Reason::unknownValue, "id");
        }
        points.emplace_back(*id, object.number("temperature"), object.number("speedPercent"));
    }
    return points;
}

} // namespace ventaro
