#include "SMCService.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ventaro {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::nan("");

TEST(Codec, PacksKeysAndUnpacksCodes) {
    EXPECT_EQ(SMCService::fourCharCode("F0Md"), 0x46304D64U);
    EXPECT_EQ(SMCService::fourCharCode("TC0P-and-more"), 0x54433050U);
    EXPECT_EQ(SMCService::fourCharCode("FS!"), 0x465321U);
    EXPECT_EQ(SMCService::fourCharCode(""), 0U);
    EXPECT_EQ(SMCService::fourCharCode("Tü1"), 0x54C3BC31U);
    EXPECT_EQ(SMCService::fourCharString(0x73703738), "sp78");
    EXPECT_EQ(SMCService::fourCharString(0x46530000), std::string("FS\0\0", 4));
    EXPECT_EQ(SMCService::fourCharString(0x54FC8031), "T\u00FC\u00801");
    for (const char* key : {"FS! ", "#KEY", "TaLC", "~~~~"}) {
        EXPECT_EQ(SMCService::fourCharString(SMCService::fourCharCode(key)), key);
    }
}

TEST(Codec, DecodesEveryKnownType) {
    struct Row {
        const char* type;
        SMCBytes bytes;
        std::optional<double> value;
    };
    const Row rows[] = {
        {"ui8 ", {0xFF}, 255},
        {"ui16", {0x07, 0xD0}, 2000},
        {"fpe2", {0x1C, 0x20}, 1800},
        {"fpe2", {0xFF, 0xFF}, 16383.75},
        {"sp78", {0x1C, 0x80}, 28.5},
        {"sp78", {0xFF, 0x80}, -0.5},
        {"sp78", {0x80, 0x00}, -128},
        {"sp78", {0x81, 0x00}, -127},
        {"flt ", {0x00, 0x00, 0xC8, 0x42}, 100},
        {"flt ", {0x00, 0x00, 0xC8, 0x42, 0x99}, 100},
        {"flt ", {0x00, 0x00, 0x80, 0xFF}, -infinity},
        {"ui8 ", {}, std::nullopt},
        {"ui16", {0x07}, std::nullopt},
        {"fpe2", {0x07}, std::nullopt},
        {"sp78", {0x07}, std::nullopt},
        {"flt ", {0x00, 0x00, 0xC8}, std::nullopt},
        {"flt", {0x00, 0x00, 0xC8, 0x42}, std::nullopt},
        {"UI8 ", {0x01}, std::nullopt},
        {"ui32", {0x00, 0x00, 0x00, 0x01}, std::nullopt},
        {"si8 ", {0x01}, std::nullopt},
        {"fp88", {0x01, 0x00}, std::nullopt},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SMCService::decodeValue(row.type, row.bytes), row.value) << row.type;
    }
}

TEST(Codec, EncodesRoundedAndClamped) {
    struct Row {
        const char* type;
        double value;
        SMCBytes bytes;
    };
    const Row rows[] = {
        {"ui8 ", -5, {0x00}},
        {"ui8 ", -0.5, {0x00}},
        {"ui8 ", 2.5, {0x03}},
        {"ui8 ", 254.5, {0xFF}},
        {"ui8 ", 300, {0xFF}},
        {"ui8 ", 9e18, {0xFF}},
        {"ui16", 2000.5, {0x07, 0xD1}},
        {"ui16", 70000, {0xFF, 0xFF}},
        {"fpe2", 1800, {0x1C, 0x20}},
        {"fpe2", 1800.1, {0x1C, 0x20}},
        {"fpe2", 1800.125, {0x1C, 0x21}},
        {"fpe2", 1e6, {0xFF, 0xFF}},
        {"flt ", 100, {0x00, 0x00, 0xC8, 0x42}},
        {"flt ", -1.5, {0x00, 0x00, 0xC0, 0xBF}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SMCService::encodeValue(row.type, row.value), row.bytes) << row.type << row.value;
    }
}

TEST(Codec, RefusesWhatItCannotEncode) {
    struct Row {
        const char* type;
        double value;
    };
    const Row rows[] = {
        {"sp78", 28.5},       {"ui32", 1},         {"", 1},          {"ui8 ", notANumber},
        {"ui8 ", infinity},   {"ui16", -1e19},     {"ui16", 9.3e18}, {"fpe2", 3e18},
        {"flt ", notANumber}, {"flt ", -infinity}, {"flt ", 3.5e38},
    };
    for (const Row& row : rows) {
        try {
            SMCService::encodeValue(row.type, row.value);
            ADD_FAILURE() << row.type << row.value;
        } catch (const SMCError& error) {
            EXPECT_EQ(error, SMCError::unsupportedDataType(row.type));
        }
    }
}

} // namespace
} // namespace ventaro
