#include "FanGuard.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

namespace ventaro {
namespace {

using Reason = FanGuard::Reason;
using Seen = std::vector<std::pair<const char*, std::optional<double>>>;

FanGuard::Look look(const Seen& seen) {
    FanGuard::Look look;
    for (const auto& [key, celsius] : seen) {
        look.see(key, celsius);
    }
    return look;
}

/// The number of the first look with a verdict, and the verdict; 0 if none has one.
std::pair<int, std::optional<Reason>> firstVerdict(FanGuard& guard,
                                                   const std::vector<Seen>& looks) {
    int number = 0;
    for (const Seen& seen : looks) {
        ++number;
        if (const auto reason = guard.judge(look(seen))) {
            return {number, reason};
        }
    }
    return {0, std::nullopt};
}

TEST(FanGuardTest, CountsLooksInARow) {
    const Seen warm{{"TCXC", 97.9}};
    const Seen hot{{"TCXC", 98}};
    const Seen hotGpu{{"TCXC", 60}, {"TGDD", 99}};
    const Seen veryHot{{"TC0F", 70}, {"TC3C", 105}};
    const Seen blind{{"TCXC", {}}, {"TC0F", 0}, {"TC0E", -127}, {"TC1C", NAN}, {"TC0P", 60}};
    struct Row {
        std::vector<Seen> looks;
        int number;
        std::optional<Reason> reason;
    };
    const Row rows[] = {
        {{warm, warm, warm, warm, warm, warm, warm}, 0, {}},
        {{hot, hotGpu, hot, hot}, 4, Reason::hot},
        {{hot, hot, hot, warm, hot, hot, hot}, 0, {}},
        {{veryHot, warm, veryHot, veryHot}, 4, Reason::hot},
        {{{{"TCXC", 105}, {"TC1C", 106}}}, 1, Reason::hot},
        {{{{"TCXC", 130}, {"TC1C", 131}, {"TC2C", 50}}}, 0, {}}, // what no sensor can say
        {{blind, blind, blind, blind, blind, blind}, 6, Reason::blind},
        {{blind, blind, blind, blind, blind, warm, blind}, 0, {}},
        {{{{"TCXC", 60}, {"TC0P", 99}}, hot, hot, hot}, 4, Reason::hot}, // one may stand still
    };
    for (const Row& row : rows) {
        FanGuard guard;
        EXPECT_EQ(firstVerdict(guard, row.looks), std::pair(row.number, row.reason)) << &row - rows;
    }
}

TEST(FanGuardTest, RefusesUntilTheMachineHasBeenCoolForHalfAMinute) {
    FanGuard guard;
    const auto judge = [&](const Seen& seen, int times) {
        for (int number = 0; number < times; ++number) {
            guard.judge(look(seen));
        }
    };
    judge({{"TCXC", 99}}, 4);
    EXPECT_FALSE(guard.cause()) << "not before fans have been freed";
    guard.intervened(Reason::hot);
    guard.nothingIsForced();
    judge({{"TCXC", 89.9}}, 5);
    judge({{"TCXC", 90}}, 1);
    judge({{"TCXC", 60}}, 5);
    judge({{"TC0P", 60}}, 1); // the die is not known
    judge({{"TCXC", 60}}, 5);
    EXPECT_EQ(guard.cause(), Reason::hot);
    judge({{"TCXC", 60}}, 1);
    EXPECT_FALSE(guard.cause());
}

TEST(FanGuardTest, LowIsBelowNinetyPercentOfTheRange) {
    const FanRange range{1800, 5600};
    EXPECT_TRUE(FanGuard::isLow(5219, range));
    EXPECT_FALSE(FanGuard::isLow(5220, range));
    EXPECT_TRUE(FanGuard::isLow({}, range));
    EXPECT_TRUE(FanGuard::isLow(NAN, range));
}

} // namespace
} // namespace ventaro
