#include "CurveStep.h"
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

std::vector<FanReading> fansBetween(double min0, double max0, double min1, double max1) {
    return {{0, "", min0, min0, min0, max0, FanMode::forced},
            {1, "", min1, min1, min1, max1, FanMode::forced}};
}

TEST(CurveSteps, StayInEachFansRangeAndAreSentFrom45RPMOn) {
    const auto usual = fansBetween(1800, 5600, 1700, 5200);
    struct Row {
        double celsius; // on a line from 0 °C to 100 °C, which turns it into percents
        FanTargets sent;
        FanTargets step;
        bool isWorthSending;
        std::vector<FanReading> fans;
    };
    const Row rows[] = {
        {45, {}, {{0, 3510}, {1, 3275}}, true, usual},
        {45, {{0, 3510}}, {{0, 3510}, {1, 3275}}, true, usual},
        {46.05, {{0, 3510}, {1, 3275}}, {{0, 3550}, {1, 3312}}, false, usual},
        {46.184, {{0, 3510}, {1, 3275}}, {{0, 3555}, {1, 3316}}, true, usual},
        {46,
         {{0, 1845}, {1, 3250}},
         {{0, 1846}, {1, 3300}},
         true,
         fansBetween(1800, 1900, 1000, 6000)},
        {46, {{0, notANumber}, {1, 3310}}, {{0, 3548}, {1, 3310}}, true, usual},
        {120, {}, {{0, 5600}, {1, 5200}}, true, usual},
        {45, {}, {{0, 3537}, {1, 3275}}, true, {}}, // the built-in ranges
    };
    for (const Row& row : rows) {
        const std::vector<CurvePoint> line{{0, 0}, {150, 150}};
        const CurveStep step = curveStep(line, row.celsius, row.fans);
        EXPECT_EQ(step.percent, row.celsius);
        EXPECT_EQ(FanTargets({{0, step.fan0}, {1, step.fan1}}), row.step);
        EXPECT_EQ(isWorthSending(step, row.sent), row.isWorthSending) << row.celsius;
    }
    EXPECT_FALSE(isWorthShowing(45.49, 45));
    EXPECT_TRUE(isWorthShowing(44.5, 45));
}

} // namespace
} // namespace ventaro
