#include "JsonObject.h"
#include "NumberFormat.h"
#include "UUID.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>
#include <limits>

namespace ventaro {
namespace {

using namespace std::string_literals;
using namespace testing;

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

TEST(UUIDs, AreUniqueAndReadWhatTheyWrite) {
    const UUID id = UUID::random();
    EXPECT_NE(id, UUID::random());
    EXPECT_EQ(UUID::parse(id.text()), id);
    EXPECT_EQ(id.text()[14], '4') << "the version";
    EXPECT_EQ(UUID::parse("0123abcd-0123-4567-89ab-0123456789ef")->text(),
              "0123ABCD-0123-4567-89AB-0123456789EF");
    for (const char* text :
         {"", "0123abcd-0123-4567-89ab-0123456789e", "0123abcd00123-4567-89ab-0123456789ef",
          "0123abcg-0123-4567-89ab-0123456789ef"}) {
        EXPECT_FALSE(UUID::parse(text)) << text;
    }
}

TEST(JsonObjects, TextsThatAreNoObjectAreMalformed) {
    const std::string deep(100000, '[');
    for (const std::string& text : {""s, "[]"s, "7"s, "{\"id\":0"s, "{\"id\":0} x"s,
                                    "{\"id\":\"\xff\"}"s, "{'id':0}"s, "{\"x\":" + deep, deep}) {
        EXPECT_THAT([&] { JsonObjectReader{text}; },
                    Throws<DecodingError>(
                        Property(&DecodingError::reason, DecodingError::Reason::malformed)))
            << text.substr(0, 30);
    }
}

TEST(JsonObjects, ALongForeignMemberNameIsCutInTheSentence) {
    std::string name;
    for (int repeat = 0; repeat < 200; ++repeat) {
        name += "ü";
    }
    // A cut inside a character would not survive a strict encoder.
    const auto isShortAndWhole = [](const std::string& sentence) {
        const std::string json = JsonObjectWriter().string("s", sentence).text();
        return sentence.size() < 120 && json.find("\uFFFD") == std::string::npos;
    };
    EXPECT_THAT(
        [&] { JsonObjectReader("{\"" + name + "\":1e999}"); },
        Throws<DecodingError>(AllOf(Property(&DecodingError::member, name),
                                    Property(&DecodingError::what, Truly(isShortAndWhole)))));
}

} // namespace
} // namespace ventaro
