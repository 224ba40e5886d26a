#include "CurveArgument.h"

#include "NumberParse.h"

#include <stdexcept>
#include <string>

namespace ventaro {

namespace {

double coordinate(std::string_view text, double most, const std::string& what) {
    const auto number = parseNumber<double>(text, 0, most);
    if (!number) {
        throw std::invalid_argument("\"" + std::string(text) + "\" is no " + what);
    }
    return *number;
}

CurvePoint parsePoint(std::string_view text) {
    constexpr double hottest = 120;     // °C
    constexpr double mostPercent = 100; // of the fan's range
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        throw std::invalid_argument("\"" + std::string(text) +
                                    "\" is no point: write TEMPERATURE:PERCENT, such as 60:30");
    }
    return {coordinate(text.substr(0, colon), hottest, "temperature from 0 to 120 °C"),
            coordinate(text.substr(colon + 1), mostPercent, "speed from 0 to 100 percent")};
}

} // namespace

std::vector<CurvePoint> parseCurve(std::string_view text) {
    std::vector<CurvePoint> points;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        points.push_back(parsePoint(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    if (points.size() < 2) {
        throw std::invalid_argument("a curve has at least two points, this one has one");
    }
    return points;
}

} // namespace ventaro
