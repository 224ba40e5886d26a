#include "TelemetryRecords.h"

#include "JsonObject.h"
#include "SMCError.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using namespace testing;

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
    const std::tuple<double, double, double, double> rows[] = {
        {1000, 1836, 5616, 0},    {6000, 1836, 5616, 1}, {3726, 1836, 5616, 0.5},
        {1836, 1836, 1836, 0},    {3000, 5616, 1836, 0}, {3000, NAN, 5616, 0},
        {INFINITY, 1836, 5616, 1}};
    for (const auto& [current, minimum, maximum, percentage] : rows) {
        const FanReading fan{0, "", current, 0, minimum, maximum, FanMode::automatic};
        EXPECT_EQ(fan.percentage(), percentage) << current;
    }
}

TEST(RecordJson, HasTheAgreedForm) {
    const FanReading fan{1, "Rechter Lüfter (GPU)", 1702.5, 1700, 1700, 5200, FanMode::forced};
    EXPECT_EQ(encodeJson(fan), "{\"id\":1,\"name\":\"Rechter Lüfter (GPU)\",\"currentRPM\":1702.5,"
                               "\"targetRPM\":1700.0,\"minRPM\":1700.0,\"maxRPM\":5200.0,"
                               "\"mode\":1}");

    const SensorReading sensor{"Th1H", "a \"b\"\n", SensorCategory::heatsink, 36.5, "°C"};
    EXPECT_EQ(encodeJson(sensor),
              R"({"key":"Th1H","name":"a \"b\"\n","category":"Kühlsystem & Gehäuse",)"
              R"("value":36.5,"unit":"°C"})");

    const FanReading endless{0, "", 0, 0, NAN, 0, FanMode::automatic};
    EXPECT_THAT([&] { encodeJson(endless); },
                Throws<EncodingError>(Property(&EncodingError::member, "minRPM")));
}

} // namespace
} // namespace ventaro
