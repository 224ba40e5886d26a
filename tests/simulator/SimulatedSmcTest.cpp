#include "SimulatedSmc.h"

#include "EmbeddedFiles.h"
#include "InProcessMachine.h"

#include <gtest/gtest.h>

#include <sstream>

namespace ventaro {
namespace {

using std::chrono::seconds;

/// An SMC with somebody who asks it, by the service or byte by byte.
struct AskedSmc : InProcessMachine {
    using InProcessMachine::InProcessMachine;

    SimulatedSmc::Answer ask(std::uint8_t command, const std::string& key, bool privileged = false,
                             std::uint32_t size = 0) {
        SMCKeyData_t block{};
        block.key = SMCService::fourCharCode(key);
        block.data8 = command;
        block.keyInfo.dataSize = size;
        return smc.answer(KERNEL_INDEX_SMC, block, privileged);
    }
    std::optional<double> valueOf(const std::string& key) { return service.readDouble(key); }
    std::optional<SMCError> write(const std::string& key, double value) {
        return errorOf([&] { service.writeValue(key, value); });
    }
};

TEST(SimulatedKeys, EveryKeyOfTheRealMachineAnswersAsItDoes) {
    AskedSmc smc;
    std::istringstream lines{std::string(EmbeddedFiles::keyTable)};
    int readable = 0;
    int refused = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ")) {
            continue;
        }
        const std::string key = line.substr(0, 4);
        const auto info = smc.ask(SMC_CMD_READ_KEYINFO, key).output;
        EXPECT_EQ(info.result, 0) << key;
        EXPECT_EQ(SMCService::fourCharString(info.keyInfo.dataType), line.substr(5, 4)) << key;
        EXPECT_EQ(info.keyInfo.dataAttributes, std::stoi(line.substr(10, 2), nullptr, 16)) << key;
        EXPECT_EQ(static_cast<int>(info.keyInfo.dataSize), std::stoi(line.substr(13, 3))) << key;
        const bool isRefused = line[17] == '!';
        const int result = smc.ask(SMC_CMD_READ_BYTES, key).output.result;
        EXPECT_EQ(result, isRefused ? std::stoi(line.substr(18), nullptr, 16) : 0) << key;
        EXPECT_TRUE(info.keyInfo.dataSize <= 32 || result != 0) << key << " is too long to be read";
        ++(isRefused ? refused : readable);
    }
    EXPECT_EQ(refused, 74);
    EXPECT_EQ(readable, 827);
}

TEST(SimulatedKeys, TheIndexListsEveryKeyOnce) {
    AskedSmc smc;
    const SMCKeyData_t count = smc.ask(SMC_CMD_READ_BYTES, "#KEY").output;
    SMCKeyData_t block{};
    block.data8 = SMC_CMD_READ_INDEX;
    block.data32 = count.bytes[2] * 256U + count.bytes[3];
    EXPECT_EQ(smc.smc.answer(KERNEL_INDEX_SMC, block, false).output.result, 0x84);
    --block.data32;
    const std::uint32_t last = smc.smc.answer(KERNEL_INDEX_SMC, block, false).output.key;
    EXPECT_EQ(smc.ask(SMC_CMD_READ_KEYINFO, SMCService::fourCharString(last)).output.result, 0);
}

TEST(SimulatedKeys, WhoMayWriteWhat) {
    AskedSmc smc;
    EXPECT_EQ(smc.write("F0Mn", 100), SMCError::writeFailed("F0Mn", 0, 0x86));
    EXPECT_EQ(smc.write("F0Mx", 9000), SMCError::writeFailed("F0Mx", 0, 0x86));
    EXPECT_FALSE(smc.write("F0Md", 1) || smc.write("F0Tg", 3000));
    const auto result = [&](std::uint8_t command, const char* key, std::uint32_t size) {
        return smc.ask(command, key, true, size).output.result;
    };
    EXPECT_EQ(result(SMC_CMD_WRITE_BYTES, "F0Tg", 2), 0x87) << "the size must be the key's";
    EXPECT_EQ(result(SMC_CMD_WRITE_BYTES, "ZZZZ", 4), 0x84);
    EXPECT_EQ(result(99, "F0Tg", 4), 0x82);
    EXPECT_EQ(smc.ask(SMC_CMD_WRITE_BYTES, "F0Tg").kernelReturn, KernelCode::notPrivileged);
    EXPECT_EQ(smc.smc.answer(7, {}, true).kernelReturn, KernelCode::unsupported);
    EXPECT_EQ(smc.valueOf("F0Tg"), 3000);
    // A target that is no number is taken, and harmless.
    smc.service.writeKeyRaw("F0Tg", SMCBytes{0x00, 0x00, 0xC0, 0x7F});
    smc.smc.advanceTo(seconds(10));
    EXPECT_NEAR(*smc.valueOf("F0Ac"), 1836, 10);
}

TEST(SimulatedKeys, VariantsDifferInTheirFanKeys) {
    for (const int fans : {0, 1, 2, 3}) {
        AskedSmc t2({.fanCount = fans});
        AskedSmc legacy({.variant = SmcVariant::legacy, .fanCount = fans});
        EXPECT_EQ(t2.valueOf("FNum"), fans);
        for (int fan = 0; fan < 4; ++fan) {
            const std::string prefix = "F" + std::to_string(fan);
            EXPECT_EQ(t2.valueOf(prefix + "Ac").has_value(), fan < fans) << prefix << fans;
            EXPECT_EQ(t2.valueOf(prefix + "Md").has_value(), fan < fans) << prefix << fans;
            EXPECT_EQ(legacy.valueOf(prefix + "Tg").has_value(), fan < fans) << prefix << fans;
            EXPECT_FALSE(legacy.valueOf(prefix + "Md"));
        }
        EXPECT_FALSE(t2.valueOf("FS! "));
        EXPECT_TRUE(legacy.valueOf("FS! "));
    }
    AskedSmc legacy({.variant = SmcVariant::legacy});
    EXPECT_EQ(legacy.service.readKeyRaw("F1Mx").type, "fpe2");
    EXPECT_EQ(legacy.valueOf("F1Mx"), 5200);
}

TEST(SimulatedFans, FollowTargetsOnlyWhenForced) {
    for (const SmcVariant variant : {SmcVariant::t2, SmcVariant::legacy}) {
        AskedSmc smc({.variant = variant});
        const bool isT2 = variant == SmcVariant::t2;
        const std::string mode = isT2 ? "F1Md" : "FS! ";
        smc.write("F1Tg", 4000);
        smc.smc.advanceTo(seconds(20));
        EXPECT_NEAR(*smc.valueOf("F1Ac"), 1700, 10) << "the regulation takes a target back";
        smc.write(mode, isT2 ? 1 : 2);
        smc.write("F1Tg", 4000);
        smc.smc.advanceTo(seconds(22));
        EXPECT_NEAR(*smc.valueOf("F1Ac"), 2500, 60) << "400 RPM a second, never a jump";
        smc.smc.advanceTo(seconds(40));
        EXPECT_NEAR(*smc.valueOf("F1Ac"), 4000, 10);
        EXPECT_NEAR(*smc.valueOf("F0Ac"), 1836, 10);
        smc.write(mode, 0);
        smc.smc.advanceTo(seconds(60));
        EXPECT_NEAR(*smc.valueOf("F1Ac"), 1700, 10);
    }
}

TEST(SimulatedTime, TheSameSeedGivesTheSameCourse) {
    const auto course = [](std::uint64_t seed, std::chrono::milliseconds stride) {
        AskedSmc smc({.workload = Workload::office, .seed = seed});
        std::vector<double> values;
        for (auto time = std::chrono::milliseconds(0); time <= seconds(60); time += stride) {
            smc.smc.advanceTo(time);
            if (time % seconds(10) == seconds(0)) {
                values.insert(values.end(), {*smc.valueOf("TCXC"), *smc.valueOf("F0Ac")});
            }
        }
        return values;
    };
    EXPECT_EQ(course(1, seconds(1)), course(1, seconds(10))) << "however time is cut";
    EXPECT_NE(course(1, seconds(1)), course(2, seconds(1)));
}

} // namespace
} // namespace ventaro
