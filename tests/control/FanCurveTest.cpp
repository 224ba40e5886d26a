#include "FanCurve.h"

#include "FanRange.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace ventaro {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(FanCurve, EvaluatesAtEveryPlace) {
    const std::vector<CurvePoint> usual = defaultCurve();
    const std::vector<CurvePoint> steep{{80, 90}, {70.05, 80}, {60, 30}, {70, 40}};
    const std::vector<CurvePoint> upright{{60, 30}, {70, 40}, {70, 80}, {80, 90}};
    struct Row {
        std::vector<CurvePoint> points;
        double temperature;
        double percent;
    };
    const Row rows[] = {
        {usual, 30, 0},
        {usual, 45, 0},
        {usual, 52.5, 15},
        {usual, 66, 45},
        {usual, 85, 100},
        {usual, 95, 100},
        {usual, infinity, 100},
        {usual, -infinity, 0},
        {usual, notANumber, 50},
        {steep, 70.02, 48},
        {upright, 70, 40},
        {upright, 70.5, 80.5},
        {{{50, 40}}, -5, 40},
        {{{50, 40}}, 80, 40},
        {{}, 60, 30},
        {{{notANumber, 10}, {40, 20}, {60, 40}}, 50, 30},
        {{{40, -20}, {60, 140}}, 50, 60},
    };
    for (const Row& row : rows) {
        EXPECT_NEAR(evaluateCurvePercent(row.points, row.temperature), row.percent, 1e-9)
            << row.temperature << " °C on a curve of " << row.points.size();
    }
}

TEST(FanRange, RoundsHalvesAwayFromZeroAndStaysInRange) {
    EXPECT_EQ(mapToRange(0.15, {1700, 5200}), 2225);
    EXPECT_EQ(mapToRange(0.5, {1700, 2749}), 2225) << "2224.5";
    EXPECT_EQ(mapToRange(-0.3, {1800, 5600}), 1800);
    EXPECT_EQ(mapToRange(infinity, {1800, 5600}), 5600);
    EXPECT_TRUE(std::isnan(mapToRange(notANumber, {1800, 5600})));
}

} // namespace
} // namespace ventaro
