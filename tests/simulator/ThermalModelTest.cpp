#include "ThermalModel.h"

#include "SimulatedFans.h"
#include "Workload.h"

#include <gtest/gtest.h>

#include <optional>

namespace ventaro {
namespace {

constexpr double stepSeconds = 0.05;

struct Result {
    double cpu, gpu, watts, leftRPM;
    bool throttled;
};

/// The machine after an hour, with the fans forced to a share of their range or automatic.
Result afterAnHour(Workload workload, std::optional<double> forcedShare) {
    ThermalModel model;
    SimulatedFan left{1836, 5616, 1836, 1836, false};
    SimulatedFan right{1700, 5200, 1700, 1700, false};
    bool throttled = false;
    for (int step = 0; step < 72000; ++step) {
        const double share = forcedShare.value_or(automaticShare(
            model.temperature(ThermalNode::cpuDie), model.temperature(ThermalNode::gpuDie)));
        for (SimulatedFan* fan : {&left, &right}) {
            fan->target = fan->minimum + share * (fan->maximum - fan->minimum);
            const double before = fan->speed;
            fan->step(stepSeconds);
            EXPECT_LE(std::abs(fan->speed - before), 400 * stepSeconds + 1e-9) << "a fan jumped";
        }
        model.step(stepSeconds, demandOf(workload, step * stepSeconds, 1), left.speed, right.speed);
        throttled = throttled || model.isThrottling();
    }
    EXPECT_NEAR(model.energyIn(), model.energyOut() + model.energyStored(),
                model.energyIn() * 1e-9);
    return {model.temperature(ThermalNode::cpuDie), model.temperature(ThermalNode::gpuDie),
            model.drawn().total(), left.speed, throttled};
}

TEST(Thermals, IdleIsCoolAndQuiet) {
    const Result idle = afterAnHour(Workload::idle, std::nullopt);
    EXPECT_NEAR(idle.cpu, 41, 2);
    EXPECT_NEAR(idle.watts, 7, 0.7);
    EXPECT_NEAR(idle.leftRPM, 1836, 1);
}

TEST(Thermals, FullLoad) {
    for (const Workload workload : {Workload::compile, Workload::game}) {
        const bool isGame = workload == Workload::game;
        const auto hottest = [&](const Result& result) { return isGame ? result.gpu : result.cpu; };
        const Result quiet = afterAnHour(workload, 0.0);
        EXPECT_TRUE(quiet.throttled);
        EXPECT_NEAR(hottest(quiet), ThermalModel::throttleTemperature, 2);

        const Result automatic = afterAnHour(workload, std::nullopt);
        EXPECT_FALSE(automatic.throttled);
        EXPECT_LT(hottest(automatic), 92);
        EXPECT_GT(automatic.leftRPM, 3000);

        const Result loud = afterAnHour(workload, 1.0);
        EXPECT_LT(hottest(loud), hottest(quiet) - 15);
        EXPECT_LT(hottest(loud), hottest(automatic));
    }
}

} // namespace
} // namespace ventaro
