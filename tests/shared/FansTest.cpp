#include "InProcessMachine.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> names(const std::vector<FanReading>& fans) {
    std::vector<std::string> list;
    for (const FanReading& fan : fans) {
        list.push_back(fan.name);
    }
    return list;
}

TEST(FanReadout, ReadsEveryFanInOrder) {
    InProcessMachine machine;
    const auto fans = machine.service.readFans();
    EXPECT_THAT(names(fans), ElementsAre("Linker Lüfter (CPU)", "Rechter Lüfter (GPU)"));
    EXPECT_EQ(fans[0].minRPM, 1836);
    EXPECT_EQ(fans[0].maxRPM, 5616);
    EXPECT_EQ(fans[1].maxRPM, 5200);
    EXPECT_NEAR(fans[0].currentRPM, 1836, 20);
    machine.taken();
    machine.service.readFans();
    EXPECT_THAT(machine.taken(),
                ElementsAre("5 FNum", "5 F0Ac", "5 F0Mn", "5 F0Mx", "5 F0Tg", "5 F0Md", "5 F1Ac",
                            "5 F1Mn", "5 F1Mx", "5 F1Tg", "5 F1Md"));
}

TEST(FanReadout, NamesFansByTheirNumber) {
    const std::pair<int, std::vector<std::string>> rows[] = {
        {0, {}}, {1, {"Lüfter 1"}}, {3, {"Lüfter 1", "Lüfter 2", "Lüfter 3"}}};
    for (const auto& [count, expected] : rows) {
        InProcessMachine machine({.fanCount = count});
        EXPECT_EQ(names(machine.service.readFans()), expected);
    }
}

TEST(FanReadout, FallsBackPerValue) {
    InProcessMachine machine;
    machine.smc.faults().addAll("F0Mn read-fails\nF0Mx type ui32\nF1Mn info-fails\nF1Mx size 3\n"
                                "F0Tg read-fails\nF1Ac read-fails\nF1Tg read-fails\n"
                                "F0Md value 03\nF1Md value 01\n");
    const auto fans = machine.service.readFans();
    EXPECT_EQ(fans[0].minRPM, 1836);
    EXPECT_EQ(fans[0].maxRPM, 5616);
    EXPECT_EQ(fans[0].targetRPM, fans[0].currentRPM);
    EXPECT_EQ(fans[0].mode, FanMode::automatic) << "any mode but 1";
    EXPECT_EQ(fans[1], (FanReading{1, "Rechter Lüfter (GPU)", 0, 0, 1700, 5200, FanMode::forced}));

    SimulatedSmc gone({});
    gone.faults().add("service gone");
    InProcessIOKit ioKit(gone, false);
    SMCService service(ioKit);
    EXPECT_THAT(
        service.readFans(),
        ElementsAre(FanReading{0, "Linker Lüfter (CPU)", 0, 0, 1836, 5616, FanMode::automatic},
                    FanReading{1, "Rechter Lüfter (GPU)", 0, 0, 1700, 5200, FanMode::automatic}));
}

TEST(FanReadout, CountsThatAreNoCountFallBack) {
    InProcessMachine machine;
    machine.smc.faults().addAll("FNum type \"flt \"\nFNum size 4\nFNum value nan\n"
                                "F0Md type \"flt \"\nF0Md size 4\nF0Md value nan\n");
    const auto fans = machine.service.readFans();
    ASSERT_EQ(fans.size(), 2U);
    EXPECT_EQ(fans[0].mode, FanMode::automatic);
}

TEST(FanWrites, ModeFirstThenTheClampedTarget) {
    struct Row {
        const char* faults;
        int fan;
        double rpm;
        std::vector<std::string> writes;
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
        {"F0Md read-fails", 0, 2000, {"6 F0Tg=2000"}}, // no mode key at all
    };
    for (const Row& row : rows) {
        InProcessMachine machine;
        machine.smc.faults().addAll(row.faults);
        machine.service.setFanTargetRPM(row.fan, row.rpm);
        EXPECT_EQ(machine.taken(true), row.writes) << row.faults << row.rpm;
    }
}

TEST(FanWrites, TheOrderOfExchanges) {
    InProcessMachine machine;
    machine.service.setFanTargetRPM(0, 3000); // fills the cache
    machine.taken();
    machine.service.setFanTargetRPM(0, 3000);
    EXPECT_THAT(machine.taken(),
                ElementsAre("5 F0Mn", "5 F0Mx", "5 F0Md", "6 F0Md=1", "6 F0Tg=3000"));
    machine.service.resetFanToAutomatic(0);
    EXPECT_THAT(machine.taken(), ElementsAre("5 F0Md", "6 F0Md=0"));
}

TEST(FanWrites, OlderMachinesHaveOneMaskForAllFans) {
    InProcessMachine machine({.variant = SmcVariant::legacy});
    machine.service.setFanTargetRPM(0, 2000);
    EXPECT_THAT(machine.taken(true), ElementsAre("6 FS! =1", "6 F0Tg=2000"));
    machine.service.setFanTargetRPM(1, 2500);
    EXPECT_THAT(machine.taken(true), ElementsAre("6 FS! =3", "6 F1Tg=2500"));
    machine.service.resetFanToAutomatic(0);
    EXPECT_THAT(machine.taken(true), ElementsAre("6 FS! =2"));
    // The mask has no bit for a fan 16, and its keys do not exist.
    EXPECT_EQ(errorOf([&] { machine.service.setFanTargetRPM(16, 2000); }),
              SMCError::keyNotFound("F16Tg"));
    EXPECT_THAT(machine.taken(true), ElementsAre("6 FS! =2"));
}

TEST(FanWrites, WithoutModeOrUsableMaskOnlyTheTargetIsWritten) {
    for (const char* fault : {"\"FS! \" read-fails", "\"FS! \" size 1"}) {
        InProcessMachine machine({.variant = SmcVariant::legacy});
        machine.smc.faults().add(fault);
        machine.service.setFanTargetRPM(0, 2000);
        EXPECT_THAT(machine.taken(true), ElementsAre("6 F0Tg=2000")) << fault;
        machine.service.resetFanToAutomatic(0);
        EXPECT_THAT(machine.taken(true), IsEmpty()) << fault;
    }
}

TEST(FanWrites, AnErrorStopsAndLeavesWhatWasWritten) {
    InProcessMachine machine;
    machine.smc.faults().add("F0Tg write-fails 86");
    EXPECT_EQ(errorOf([&] { machine.service.setFanTargetRPM(0, 3000); }),
              SMCError::writeFailed("F0Tg", 0, 0x86));
    EXPECT_EQ(machine.service.readFans()[0].mode, FanMode::forced);

    machine.smc.faults().add("F1Md write-fails 87");
    machine.taken();
    EXPECT_EQ(errorOf([&] { machine.service.setFanTargetRPM(1, 3000); }),
              SMCError::writeFailed("F1Md", 0, 0x87));
    EXPECT_THAT(machine.taken(true), ElementsAre("6 F1Md=1")) << "and no target";
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
