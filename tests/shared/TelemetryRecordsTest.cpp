#include "TelemetryRecords.h"

#include "JsonObject.h"
#include "SMCError.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace ventaro {
namespace {

using Reason = DecodingError::Reason;
using testing::AllOf;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;

TEST(SMCErrors, DescribeThemselvesInGerman) {
    const std::pair<SMCError, const char*> rows[] = {
        {SMCError::connectionFailed(-536870207),
         "Verbindung zu AppleSMC fehlgeschlagen (Code: -536870207)."},
        {SMCError::keyNotFound("TC0P"), "SMC-Schlüssel 'TC0P' wurde nicht gefunden."},
        {SMCError::readFailed("F0Tg", 132),
         "Lesen von SMC-Schlüssel 'F0Tg' fehlgeschlagen (Status: 132)."},
        {SMCError::writeFailed("F0Md", static_cast<std::int32_t>(0xE00002C1), 0),
         "Schreiben auf SMC-Schlüssel 'F0Md' fehlgeschlagen (kern: -536870207, smc: 0). "
         "Root-Rechte erforderlich."},
        {SMCError::unsupportedDataType("sp78"), "Nicht unterstützter SMC-Datentyp 'sp78'."},
        {SMCError::serviceNotFound(), "AppleSMC IOKit-Dienst wurde nicht gefunden."},
    };
    for (const auto& [error, description] : rows) {
        EXPECT_EQ(error.errorDescription(), description);
        EXPECT_STREQ(error.what(), description);
    }
}

TEST(FanReadings, PercentageStaysInRange) {
    struct Row {
        double current, minimum, maximum, percentage;
    };
    const Row rows[] = {{1000, 1836, 5616, 0},    {6000, 1836, 5616, 1},
                        {3726, 1836, 5616, 0.5},  {1836, 1836, 1836, 0},
                        {3000, 5616, 1836, 0},    {3000, std::nan(""), 5616, 0},
                        {INFINITY, 1836, 5616, 1}};
    for (const Row& row : rows) {
        const FanReading fan{0, "", row.current, 0, row.minimum, row.maximum, FanMode::automatic};
        EXPECT_EQ(fan.percentage(), row.percentage);
    }
}

TEST(SensorCategories, AreFoundByExactTitleOnly) {
    const char* titles[] = {"CPU",         "GPU",  "Kühlsystem & Gehäuse",
                            "Board & SSD", "Akku", "Leistung (Watt)"};
    for (std::size_t index = 0; index < allSensorCategories.size(); ++index) {
        EXPECT_EQ(sensorCategoryFromRawValue(titles[index]), allSensorCategories[index]);
    }
    for (const char* text : {"board & ssd", "Kuhlsystem & Gehause", "Akku ", ""}) {
        EXPECT_FALSE(sensorCategoryFromRawValue(text)) << text;
    }
}

TEST(RecordJson, RoundTripsAndHasTheAgreedForm) {
    const FanReading fan{1, "Rechter Lüfter (GPU)", 1702.5, 1700, 1700, 5200, FanMode::forced};
    EXPECT_EQ(encodeJson(fan), "{\"id\":1,\"name\":\"Rechter Lüfter (GPU)\",\"currentRPM\":1702.5,"
                               "\"targetRPM\":1700.0,\"minRPM\":1700.0,\"maxRPM\":5200.0,"
                               "\"mode\":1}");
    EXPECT_EQ(decodeFanReading(encodeJson(fan)), fan);

    const SensorReading sensor{"Th1H", "a \"b\"\n", SensorCategory::heatsink, 36.5, "°C"};
    EXPECT_EQ(encodeJson(sensor),
              R"({"key":"Th1H","name":"a \"b\"\n","category":"Kühlsystem & Gehäuse",)"
              R"("value":36.5,"unit":"°C"})");
    EXPECT_EQ(decodeSensorReading(encodeJson(sensor)), sensor);
    EXPECT_EQ(sensor.id(), "Th1H");
}

TEST(RecordJson, NumbersThatAreNotFiniteCannotBeEncoded) {
    FanReading fan{0, "", 0, 0, 0, 0, FanMode::automatic};
    fan.minRPM = std::nan("");
    EXPECT_THAT([&] { encodeJson(fan); },
                Throws<EncodingError>(Property(&EncodingError::member, "minRPM")));
}

/// A fan's JSON in which one member is replaced by `text`, or left out if that is empty.
std::string fanWith(const std::string& member, const std::string& text) {
    std::string json;
    for (const auto& [name, value] : {std::pair<const char*, const char*>{"id", "0"},
                                      {"name", "\"n\""},
                                      {"currentRPM", "1"},
                                      {"targetRPM", "2"},
                                      {"minRPM", "3"},
                                      {"maxRPM", "4.5"},
                                      {"mode", "1"}}) {
        const std::string shown = name == member ? text : value;
        if (!shown.empty()) {
            json += (json.empty() ? "" : ",") + ("\"" + std::string(name) + "\":" + shown);
        }
    }
    return "{" + json + "}";
}

TEST(RecordJson, DecodingNamesTheMemberAtFault) {
    struct Row {
        const char* member;
        const char* text;
        Reason reason;
    };
    const Row rows[] = {
        {"id", "", Reason::missing},
        {"id", "null", Reason::wrongType},
        {"id", "1.0", Reason::wrongType},
        {"id", "true", Reason::wrongType},
        {"id", "9223372036854775808", Reason::outOfRange},
        {"id", "-99999999999999999999", Reason::outOfRange},
        {"name", "7", Reason::wrongType},
        {"name", "{\"name\":\"n\"}", Reason::wrongType},
        {"currentRPM", "false", Reason::wrongType},
        {"currentRPM", "1e999", Reason::outOfRange},
        {"maxRPM", "", Reason::missing},
        {"mode", "2", Reason::unknownValue},
        {"mode", "-1", Reason::unknownValue},
        {"mode", "0.0", Reason::wrongType},
        {"mode", "1,\"mode\":0", Reason::repeated},
    };
    for (const Row& row : rows) {
        EXPECT_THAT(
            [&] { decodeFanReading(fanWith(row.member, row.text)); },
            Throws<DecodingError>(AllOf(Property(&DecodingError::member, row.member),
                                        Property(&DecodingError::reason, row.reason),
                                        Property(&DecodingError::what, HasSubstr(row.member)))))
            << row.member << " " << row.text;
    }
    EXPECT_EQ(decodeFanReading(fanWith("id", "9223372036854775807")).id,
              std::numeric_limits<std::int64_t>::max());
}

TEST(RecordJson, TextsThatAreNoObjectAreMalformed) {
    const std::string deep(100000, '[');
    for (const std::string& text :
         {std::string(), std::string("[]"), std::string("7"), std::string("{\"id\":0"),
          std::string("{\"id\":0} x"), std::string("{\"id\":\"\xff\"}"), std::string("{'id':0}"),
          "{\"x\":" + deep, deep}) {
        EXPECT_THAT([&] { decodeFanReading(text); },
                    Throws<DecodingError>(Property(&DecodingError::reason, Reason::malformed)))
            << text.substr(0, 30);
    }
}

TEST(RecordJson, ALongForeignMemberNameIsCutInTheSentence) {
    std::string name;
    for (int repeat = 0; repeat < 200; ++repeat) {
        name += "ü";
    }
    try {
        decodeSensorReading("{\"" + name + "\":1e999}");
        ADD_FAILURE();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.member(), name);
        EXPECT_LT(std::string(error.what()).size(), 120U);
        // A cut inside a character would not survive a strict encoder.
        EXPECT_EQ(JsonObjectWriter().string("s", error.what()).text().find("\uFFFD"),
                  std::string::npos);
    }
}

} // namespace
} // namespace ventaro
