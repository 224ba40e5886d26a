#include "CurveStep.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ventaro {
namespace {

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
        {46, {{0, std::nan("")}, {1, 3310}}, {{0, 3548}, {1, 3310}}, true, usual},
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

TEST(FanTargetsTest, AreFollowedByForcedFansWithinTheirRange) {
    const FanTargets targets{{0, 9000}, {1, 3000}};
    const auto follow = [&](double left, FanMode mode, double right) {
        auto fans = fansBetween(1836, 5616, 1700, 5200);
        fans[0].targetRPM = left;
        fans[0].mode = mode;
        fans[1].targetRPM = right;
        return doFansFollow(fans, targets);
    };
    EXPECT_TRUE(follow(5616, FanMode::forced, 3001));
    EXPECT_FALSE(follow(5616, FanMode::forced, 3001.25));
    EXPECT_FALSE(follow(5616, FanMode::automatic, 3000));
    EXPECT_FALSE(follow(9000, FanMode::forced, 3000));
    EXPECT_TRUE(doFansFollow({}, targets)) << "fans that are not there";
}

} // namespace
} // namespace ventaro
