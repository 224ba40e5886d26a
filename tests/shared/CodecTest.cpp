#include "InProcessMachine.h"
#include "KeyTable.h"

#include <gtest/gtest.h>

#include <limits>

namespace ventaro {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

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
    const std::tuple<const char*, const char*, double> rows[] = {
        {"ui8 ", "FF", 255},         {"ui16", "07D0", 2000},         {"fpe2", "1C20", 1800},
        {"fpe2", "FFFF", 16383.75},  {"sp78", "1C80", 28.5},         {"sp78", "FF80", -0.5},
        {"sp78", "8000", -128},      {"sp78", "8100", -127},         {"flt ", "0000C842", 100},
        {"flt ", "0000C84299", 100}, {"flt ", "000080FF", -infinity}};
    for (const auto& [type, bytes, value] : rows) {
        EXPECT_EQ(SMCService::decodeValue(type, parseHexBytes(bytes)), value) << type << bytes;
    }
    const std::pair<const char*, const char*> unknown[] = {
        {"ui8 ", ""},       {"ui16", "07"},      {"fpe2", "07"}, {"sp78", "07"},
        {"flt ", "0000C8"}, {"flt", "0000C842"}, {"UI8 ", "01"}, {"ui32", "00000001"},
        {"si8 ", "01"},     {"fp88", "0100"}};
    for (const auto& [type, bytes] : unknown) {
        EXPECT_EQ(SMCService::decodeValue(type, parseHexBytes(bytes)), std::nullopt) << type;
    }
}

TEST(Codec, EncodesRoundedAndClampedOrNotAtAll) {
    const std::tuple<const char*, double, const char*> rows[] = {
        {"ui8 ", -5, "00"},        {"ui8 ", -0.5, "00"},       {"ui8 ", 2.5, "03"},
        {"ui8 ", 254.5, "FF"},     {"ui8 ", 300, "FF"},        {"ui8 ", 9e18, "FF"},
        {"ui16", 2000.5, "07D1"},  {"ui16", 70000, "FFFF"},    {"fpe2", 1800, "1C20"},
        {"fpe2", 1800.1, "1C20"},  {"fpe2", 1800.125, "1C21"}, {"fpe2", 1e6, "FFFF"},
        {"flt ", 100, "0000C842"}, {"flt ", -1.5, "0000C0BF"}};
    for (const auto& [type, value, bytes] : rows) {
        EXPECT_EQ(SMCService::encodeValue(type, value), SMCBytes(parseHexBytes(bytes)))
            << type << value;
    }
    const std::pair<const char*, double> refused[] = {
        {"sp78", 28.5},       {"ui32", 1},         {"", 1},          {"ui8 ", notANumber},
        {"ui8 ", infinity},   {"ui16", -1e19},     {"ui16", 9.3e18}, {"fpe2", 3e18},
        {"flt ", notANumber}, {"flt ", -infinity}, {"flt ", 3.5e38}};
    for (const auto& [type, value] : refused) {
        EXPECT_EQ(errorOf([t = type, v = value] { SMCService::encodeValue(t, v); }),
                  SMCError::unsupportedDataType(type))
            << value;
    }
}

} // namespace
} // namespace ventaro
