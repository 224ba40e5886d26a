#include "InProcessMachine.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using namespace testing;

constexpr const char* leftName = "Linker Lüfter (CPU)";
constexpr const char* rightName = "Rechter Lüfter (GPU)";

TEST(FanReadout, ReadsEveryFanInOrder) {
    InProcessMachine machine;
    const auto fans = machine.service.readFans();
    ASSERT_EQ(fans.size(), 2U);
    EXPECT_NEAR(fans[0].currentRPM, 1836, 20);
    EXPECT_NEAR(fans[1].currentRPM, 1700, 20);
    EXPECT_THAT(fans, ElementsAre(FanReading{0, leftName, fans[0].currentRPM, 1836, 1836, 5616,
                                             FanMode::automatic},
                                  FanReading{1, rightName, fans[1].currentRPM, 1700, 1700, 5200,
                                             FanMode::automatic}));
    machine.taken();
    machine.service.readFans();
    EXPECT_THAT(machine.taken(),
                ElementsAre("5 FNum", "5 F0Ac", "5 F0Mn", "5 F0Mx", "5 F0Tg", "5 F0Md", "5 F1Ac",
                            "5 F1Mn", "5 F1Mx", "5 F1Tg", "5 F1Md"));
}

TEST(FanReadout, NamesFansByTheirNumberAndFallsBackOnACountThatIsNone) {
    const std::pair<int, std::vector<std::string>> rows[] = {
        {0, {}},
        {1, {"Lüfter 1"}},
        {2, {leftName, rightName}},
        {3, {"Lüfter 1", "Lüfter 2", "Lüfter 3"}}};
    for (const auto& [count, expected] : rows) {
        InProcessMachine machine({.fanCount = count});
        std::vector<std::string> names;
        for (const FanReading& fan : machine.service.readFans()) {
            names.push_back(fan.name);
        }
        EXPECT_EQ(names, expected);
    }
    InProcessMachine machine({.fanCount = 3});
    machine.smc.faults().addAll("FNum type \"flt \"\nFNum size 4\nFNum value nan\n"
                                "F0Md type \"flt \"\nF0Md size 4\nF0Md value nan\n");
    const auto automatic = Field(&FanReading::mode, FanMode::automatic);
    EXPECT_THAT(machine.service.readFans(), ElementsAre(automatic, automatic));
}

TEST(FanReadout, FallsBackPerValue) {
    InProcessMachine machine;
    machine.smc.faults().addAll("F0Mn read-fails\nF0Mx type ui32\nF1Mn info-fails\nF1Mx size 3\n"
                                "F0Tg read-fails\nF1Ac read-fails\nF1Tg read-fails\n"
                                "F0Md value 03\nF1Md value 01\n"); // any mode but 1 is automatic
    const auto fans = machine.service.readFans();
    const double current = fans.at(0).currentRPM;
    EXPECT_GT(current, 1800);
    EXPECT_THAT(
        fans, ElementsAre(FanReading{0, leftName, current, current, 1836, 5616, FanMode::automatic},
                          FanReading{1, rightName, 0, 0, 1700, 5200, FanMode::forced}));

    SimulatedSmc gone({});
    gone.faults().add("service gone");
    InProcessIOKit ioKit(gone, false);
    EXPECT_THAT(SMCService(ioKit).readFans(),
                ElementsAre(FanReading{0, leftName, 0, 0, 1836, 5616, FanMode::automatic},
                            FanReading{1, rightName, 0, 0, 1700, 5200, FanMode::automatic}));
}

TEST(FanWrites, ModeFirstThenTheClampedTarget) {
    struct Row {
        const char* faults;
        int fan;
        double rpm;
        std::vector<std::string> writes;
        SmcVariant variant = SmcVariant::t2;
    };
    const Row rows[] = {
        {"", 0, 4000, {"6 F0Md=1", "6 F0Tg=4000"}},
        {"", 1, 0, {"6 F1Md=1", "6 F1Tg=1700"}},
        {"", 1, 1e12, {"6 F1Md=1", "6 F1Tg=5200"}},
        {"", 0, INFINITY, {"6 F0Md=1", "6 F0Tg=5616"}},
        {"F0Mn read-fails\nF0Mx read-fails", 0, 1000, {"6 F0Md=1", "6 F0Tg=1836"}},
        {"F0Mn read-fails\nF0Mx read-fails", 0, 9000, {"6 F0Md=1", "6 F0Tg=5616"}},
        {"F1Mn info-fails\nF1Mx info-fails", 1, 1000, {"6 F1Md=1", "6 F1Tg=1700"}},
        // 6000.0 as a minimum above the maximum: the maximum wins
        {"F0Mn value 0080BB45", 0, 2000, {"6 F0Md=1", "6 F0Tg=5616"}},
        {"F0Mn value nan\nF0Mx value nan", 0, 2000, {"6 F0Md=1", "6 F0Tg=2000"}},
        {"F0Md read-fails", 0, 2000, {"6 F0Md=1", "6 F0Tg=2000"}}, // it is there all the same
        {"F0Md info-fails", 0, 2000, {"6 F0Tg=2000"}},             // no mode at all
        {"\"FS! \" info-fails", 0, 2000, {"6 F0Tg=2000"}, SmcVariant::legacy},
        {"\"FS! \" size 1", 0, 2000, {"6 F0Tg=2000"}, SmcVariant::legacy},
    };
    for (const Row& row : rows) {
        InProcessMachine machine({.variant = row.variant});
        machine.smc.faults().addAll(row.faults);
        machine.service.setFanTargetRPM(row.fan, row.rpm);
        EXPECT_EQ(machine.taken(true), row.writes) << row.faults << row.rpm;
        machine.service.resetFanToAutomatic(row.fan);
        EXPECT_EQ(machine.taken(true).size(), row.writes.size() - 1) << "the mode, if there is one";
    }
}

TEST(FanWrites, TheOrderOfExchanges) {
    InProcessMachine machine;
    machine.service.setFanTargetRPM(0, 3000); // fills the cache
    machine.taken();
    machine.service.setFanTargetRPM(0, 3000);
    EXPECT_THAT(machine.taken(), ElementsAre("5 F0Mn", "5 F0Mx", "6 F0Md=1", "6 F0Tg=3000"));
    machine.service.resetFanToAutomatic(0);
    EXPECT_THAT(machine.taken(), ElementsAre("6 F0Md=0"));
}

TEST(FanWrites, OlderMachinesHaveOneMaskForAllFans) {
    InProcessMachine machine({.variant = SmcVariant::legacy});
    machine.service.setFanTargetRPM(0, 2000);
    machine.service.setFanTargetRPM(1, 2500);
    machine.service.resetFanToAutomatic(0);
    // The mask has no bit for a fan 16, and its keys do not exist.
    EXPECT_EQ(errorOf([&] { machine.service.setFanTargetRPM(16, 2000); }),
              SMCError::keyNotFound("F16Tg"));
    EXPECT_THAT(machine.taken(true), ElementsAre("6 FS! =1", "6 F0Tg=2000", "6 FS! =3",
                                                 "6 F1Tg=2500", "6 FS! =2", "6 FS! =2"));
}

TEST(FanWrites, OnlyTheSmcsOwnWordMeansThatThereIsNoMode) {
    struct Row {
        const char* faults;
        std::optional<bool> isForced;
        std::optional<SMCError> failure; // of a reset
        SmcVariant variant = SmcVariant::t2;
    };
    const Row rows[] = {
        {"F0Md value 01", true, {}},
        {"F0Md read-fails", {}, {}},
        {"F0Md info-fails", false, {}},
        {"F0Md info-fails 85", {}, SMCError::keyNotFound("F0Md")},
        {"service gone", {}, SMCError::serviceNotFound()},
        {"", false, {}, SmcVariant::legacy},
        {"\"FS! \" value 0003", true, {}, SmcVariant::legacy},
        {"\"FS! \" read-fails", {}, SMCError::readFailed("FS! ", 0x85), SmcVariant::legacy},
        {"\"FS! \" info-fails 85", {}, SMCError::keyNotFound("FS! "), SmcVariant::legacy},
    };
    for (const Row& row : rows) {
        InProcessMachine machine({.variant = row.variant});
        machine.smc.faults().addAll(row.faults);
        machine.service.close(); // it finds the service gone, too
        EXPECT_EQ(machine.service.readFanForced(0), row.isForced) << row.faults;
        EXPECT_EQ(errorOf([&] { machine.service.resetFanToAutomatic(0); }), row.failure)
            << row.faults;
    }
}

TEST(FanWrites, AnErrorStopsAndLeavesWhatWasWritten) {
    InProcessMachine machine;
    machine.smc.faults().addAll("F0Tg write-fails 86\nF1Md write-fails 87");
    EXPECT_EQ(errorOf([&] { machine.service.setFanTargetRPM(0, 3000); }),
              SMCError::writeFailed("F0Tg", 0, 0x86));
    EXPECT_EQ(machine.service.readFans()[0].mode, FanMode::forced);
    EXPECT_EQ(errorOf([&] { machine.service.setFanTargetRPM(1, 3000); }),
              SMCError::writeFailed("F1Md", 0, 0x87));
    EXPECT_THAT(machine.taken(true), ElementsAre("6 F0Md=1", "6 F0Tg=3000", "6 F1Md=1"))
        << "and no target";
}

TEST(FanWrites, ResettingAllGoesOnAfterAFailure) {
    InProcessMachine machine;
    machine.service.setFanTargetRPM(0, 3000);
    machine.service.setFanTargetRPM(1, 3000);
    machine.smc.faults().add("F0Md write-fails 86");
    EXPECT_EQ(errorOf([&] { machine.service.resetAllFansToAutomatic(); }),
              SMCError::writeFailed("F0Md", 0, 0x86));
    EXPECT_EQ(machine.service.readFans()[1].mode, FanMode::automatic);
    machine.smc.faults().add("F1Md write-fails 87");
    EXPECT_EQ(errorOf([&] { machine.service.resetAllFansToAutomatic(); }),
              SMCError::writeFailed("F1Md", 0, 0x87))
        << "the last one's error";
}

} // namespace
} // namespace ventaro
