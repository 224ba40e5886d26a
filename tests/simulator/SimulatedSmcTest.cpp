#include "SimulatedSmc.h"

#include "EmbeddedFiles.h"
#include "SMCService.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace ventaro {
namespace {

using std::chrono::seconds;

SMCKeyData_t request(std::uint8_t command, const std::string& key) {
    SMCKeyData_t block{};
    block.key = SMCService::fourCharCode(key);
    block.data8 = command;
    return block;
}

SimulatedSmc::Answer ask(SimulatedSmc& smc, std::uint8_t command, const std::string& key,
                         bool privileged = false) {
    return smc.answer(KERNEL_INDEX_SMC, request(command, key), privileged);
}

std::optional<double> valueOf(SimulatedSmc& smc, const std::string& key) {
    const auto info = ask(smc, SMC_CMD_READ_KEYINFO, key).output.keyInfo;
    const auto answer = ask(smc, SMC_CMD_READ_BYTES, key);
    return answer.output.result != 0
               ? std::nullopt
               : SMCService::decodeValue(SMCService::fourCharString(info.dataType),
                                         answer.output.bytes);
}

std::uint8_t write(SimulatedSmc& smc, const std::string& key, std::uint32_t size, double value) {
    SMCKeyData_t block = request(SMC_CMD_WRITE_BYTES, key);
    const auto info = ask(smc, SMC_CMD_READ_KEYINFO, key).output.keyInfo;
    const std::string type = SMCService::fourCharString(info.dataType);
    const SMCBytes bytes = SMCService::encodeValue(type, value);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        block.bytes[index] = bytes[index];
    }
    block.keyInfo.dataSize = size;
    return smc.answer(KERNEL_INDEX_SMC, block, true).output.result;
}

TEST(SimulatedKeys, EveryKeyOfTheRealMachineAnswersAsItDoes) {
    SimulatedSmc smc({});
    std::istringstream lines{std::string(EmbeddedFiles::keyTable)};
    int readable = 0;
    int refused = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ")) {
            continue;
        }
        const std::string key = line.substr(0, 4);
        const auto info = ask(smc, SMC_CMD_READ_KEYINFO, key).output;
        EXPECT_EQ(info.result, 0) << key;
        EXPECT_EQ(SMCService::fourCharString(info.keyInfo.dataType), line.substr(5, 4)) << key;
        EXPECT_EQ(info.keyInfo.dataAttributes, std::stoi(line.substr(10, 2), nullptr, 16)) << key;
        EXPECT_EQ(static_cast<int>(info.keyInfo.dataSize), std::stoi(line.substr(13, 3))) << key;
        const auto value = ask(smc, SMC_CMD_READ_BYTES, key).output;
        if (line[17] == '!') {
            ++refused;
            EXPECT_EQ(value.result, std::stoi(line.substr(18), nullptr, 16)) << key;
        } else {
            ++readable;
            EXPECT_EQ(value.result, 0) << key;
        }
        if (info.keyInfo.dataSize > 32) {
            EXPECT_NE(value.result, 0) << key << " is longer than a block carries";
        }
    }
    EXPECT_EQ(refused, 74);
    EXPECT_EQ(readable, 827);
}

TEST(SimulatedKeys, TheIndexListsEveryKeyOnce) {
    SimulatedSmc smc({});
    const auto answer = ask(smc, SMC_CMD_READ_BYTES, "#KEY");
    const std::uint32_t count = answer.output.bytes[2] * 256U + answer.output.bytes[3];
    SMCKeyData_t block = request(SMC_CMD_READ_INDEX, "");
    block.data32 = count - 1;
    const std::uint32_t last = smc.answer(KERNEL_INDEX_SMC, block, false).output.key;
    EXPECT_EQ(ask(smc, SMC_CMD_READ_KEYINFO, SMCService::fourCharString(last)).output.result, 0);
    block.data32 = count;
    EXPECT_EQ(smc.answer(KERNEL_INDEX_SMC, block, false).output.result, 0x84);
}

TEST(SimulatedKeys, WhoMayWriteWhat) {
    SimulatedSmc smc({});
    EXPECT_EQ(write(smc, "F0Mn", 4, 100), 0x86);
    EXPECT_EQ(write(smc, "F0Mx", 4, 9000), 0x86);
    EXPECT_EQ(write(smc, "F0Md", 1, 1), 0);
    EXPECT_EQ(write(smc, "F0Tg", 4, 3000), 0);
    EXPECT_EQ(write(smc, "F0Tg", 2, 3000), 0x87) << "the size must be the key's";
    EXPECT_EQ(ask(smc, SMC_CMD_WRITE_BYTES, "F0Tg", false).kernelReturn, KernelCode::notPrivileged);
    EXPECT_EQ(valueOf(smc, "F0Tg"), 3000);
    EXPECT_EQ(ask(smc, SMC_CMD_WRITE_BYTES, "ZZZZ", true).output.result, 0x84);
    EXPECT_EQ(ask(smc, 99, "F0Tg", true).output.result, 0x82);
    EXPECT_EQ(smc.answer(7, request(SMC_CMD_READ_BYTES, "F0Tg"), true).kernelReturn,
              KernelCode::unsupported);
}

TEST(SimulatedKeys, VariantsDifferInTheirFanKeys) {
    for (const int fans : {0, 1, 2, 3}) {
        SimulatedSmc t2({.fanCount = fans});
        SimulatedSmc legacy({.variant = SmcVariant::legacy, .fanCount = fans});
        EXPECT_EQ(valueOf(t2, "FNum"), fans);
        for (int fan = 0; fan < 4; ++fan) {
            const std::string prefix = "F" + std::to_string(fan);
            EXPECT_EQ(valueOf(t2, prefix + "Ac").has_value(), fan < fans) << prefix << fans;
            EXPECT_EQ(valueOf(t2, prefix + "Md").has_value(), fan < fans) << prefix << fans;
            EXPECT_EQ(valueOf(legacy, prefix + "Tg").has_value(), fan < fans) << prefix << fans;
            EXPECT_FALSE(valueOf(legacy, prefix + "Md"));
        }
        EXPECT_FALSE(valueOf(t2, "FS! "));
        EXPECT_TRUE(valueOf(legacy, "FS! "));
    }
    SimulatedSmc legacy({.variant = SmcVariant::legacy});
    const auto info = ask(legacy, SMC_CMD_READ_KEYINFO, "F1Mx").output.keyInfo;
    EXPECT_EQ(SMCService::fourCharString(info.dataType), "fpe2");
    EXPECT_EQ(valueOf(legacy, "F1Mx"), 5200);
}

TEST(SimulatedFans, FollowTargetsOnlyWhenForced) {
    for (const SmcVariant variant : {SmcVariant::t2, SmcVariant::legacy}) {
        SimulatedSmc smc({.variant = variant});
        const bool isT2 = variant == SmcVariant::t2;
        const std::uint32_t size = isT2 ? 4 : 2;
        write(smc, "F1Tg", size, 4000);
        smc.advanceTo(seconds(20));
        EXPECT_NEAR(*valueOf(smc, "F1Ac"), 1700, 10) << "the regulation takes a target back";
        EXPECT_EQ(write(smc, isT2 ? "F1Md" : "FS! ", isT2 ? 1 : 2, isT2 ? 1 : 2), 0);
        write(smc, "F1Tg", size, 4000);
        smc.advanceTo(seconds(22));
        EXPECT_NEAR(*valueOf(smc, "F1Ac"), 2500, 60) << "400 RPM a second, never a jump";
        smc.advanceTo(seconds(40));
        EXPECT_NEAR(*valueOf(smc, "F1Ac"), 4000, 10);
        EXPECT_NEAR(*valueOf(smc, "F0Ac"), 1836, 10);
        write(smc, isT2 ? "F1Md" : "FS! ", isT2 ? 1 : 2, 0);
        smc.advanceTo(seconds(60));
        EXPECT_NEAR(*valueOf(smc, "F1Ac"), 1700, 10);
    }
}

TEST(SimulatedFans, ATargetThatIsNoNumberIsHarmless) {
    SimulatedSmc smc({});
    write(smc, "F0Md", 1, 1);
    SMCKeyData_t block = request(SMC_CMD_WRITE_BYTES, "F0Tg");
    block.keyInfo.dataSize = 4;
    const std::uint8_t quietNaN[] = {0x00, 0x00, 0xC0, 0x7F};
    std::copy(std::begin(quietNaN), std::end(quietNaN), block.bytes);
    EXPECT_EQ(smc.answer(KERNEL_INDEX_SMC, block, true).output.result, 0);
    smc.advanceTo(seconds(10));
    EXPECT_NEAR(*valueOf(smc, "F0Ac"), 1836, 10);
}

TEST(SimulatedTime, TheSameSeedGivesTheSameCourse) {
    const auto course = [](std::uint64_t seed, std::chrono::milliseconds stride) {
        SimulatedSmc smc({.workload = Workload::office, .seed = seed});
        std::vector<double> values;
        for (auto time = std::chrono::milliseconds(0); time <= seconds(60); time += stride) {
            smc.advanceTo(time);
            if (time % seconds(10) == seconds(0)) {
                values.push_back(*valueOf(smc, "TCXC"));
                values.push_back(*valueOf(smc, "F0Ac"));
            }
        }
        return values;
    };
    EXPECT_EQ(course(1, seconds(1)), course(1, seconds(10))) << "however time is cut";
    EXPECT_NE(course(1, seconds(1)), course(2, seconds(1)));
}

} // namespace
} // namespace ventaro
