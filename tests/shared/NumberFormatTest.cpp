#include "NumberFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

namespace ventaro {
namespace {

TEST(NumberFormat, FixedAgreesWithPrintf) {
    for (const double value : std::initializer_list<double>{
             62.25, 62.5, 63.5, 0.05, 0.15, -0.04, 99.95, 1e21, -127.0, 5e-324,
             std::numeric_limits<double>::max(), std::nan(""), -INFINITY}) {
        for (const int decimals : {0, 1, 2, 17}) {
            char expected[400];
            std::snprintf(expected, sizeof expected, "%.*f", decimals, value);
            EXPECT_EQ(formatFixed(value, decimals), expected);
        }
    }
}

TEST(NumberFormat, WholeNumbers) {
    const std::tuple<double, const char*, const char*> rows[] = {
        {2156.5, "2156", "2157"},   {2156.4, "2156", "2156"},
        {-0.5, "0", "-1"},          {-0.4, "0", "0"},
        {62.5, "62", "63"},         {1e15, "1000000000000000", "1000000000000000"},
        {std::nan(""), "--", "--"}, {INFINITY, "--", "--"}};
    for (const auto& [value, dropped, rounded] : rows) {
        EXPECT_EQ(formatWhole(value), dropped);
        EXPECT_EQ(formatRounded(value), rounded);
    }
}

} // namespace
} // namespace ventaro
