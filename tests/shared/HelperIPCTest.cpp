#include "HelperIPC.h"

#include "JsonObject.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace ventaro {
namespace {

using enum DecodingError::Reason;
using namespace testing;

TEST(HelperMessages, RequestsOnTheWire) {
    const std::pair<HelperRequest, const char*> rows[] = {
        {{HelperAction::ping, {}, {}}, R"({"action":"ping"})"},
        {{HelperAction::setFanRPM, 0, {}}, R"({"action":"setFanRPM","fanIndex":0})"},
        {{HelperAction::setFanRPM, 1, 2500.25},
         R"({"action":"setFanRPM","fanIndex":1,"rpm":2500.25})"},
        {{HelperAction::resetFanAuto, 1, {}}, R"({"action":"resetFanAuto","fanIndex":1})"},
        {{HelperAction::resetAllAuto, {}, {}}, R"({"action":"resetAllAuto"})"},
    };
    for (const auto& [request, json] : rows) {
        EXPECT_EQ(encodeJson(request), json);
        EXPECT_EQ(decodeHelperRequest(json), request);
    }
    EXPECT_EQ(decodeHelperRequest(
                  R"( {"rpm":2500,"x":[{}],"y":1,"y":2,"fanIndex":1,"action":"setFanRPM"} )"),
              (HelperRequest{HelperAction::setFanRPM, 1, 2500}));
    EXPECT_THROW(encodeJson({HelperAction::setFanRPM, 0, NAN}), EncodingError);
    EXPECT_THROW(encodeJson({HelperAction::setFanRPM, 0, -INFINITY}), EncodingError);
}

TEST(HelperMessages, BadRequestsNameTheMember) {
    const std::tuple<const char*, const char*, DecodingError::Reason> rows[] = {
        {R"({})", "action", missing},
        {R"({"action":"Ping"})", "action", unknownValue},
        {R"({"action":"ping "})", "action", unknownValue},
        {R"({"action":1})", "action", wrongType},
        {R"({"action":{"action":"ping"}})", "action", wrongType},
        {R"({"action":"ping","action":"resetAllAuto"})", "action", repeated},
        {R"({"action":"ping","fanIndex":null})", "fanIndex", wrongType},
        {R"({"action":"ping","fanIndex":1.0})", "fanIndex", wrongType},
        {R"({"action":"ping","fanIndex":true})", "fanIndex", wrongType},
        {R"({"action":"ping","fanIndex":9223372036854775808})", "fanIndex", outOfRange},
        {R"({"action":"ping","fanIndex":-99999999999999999999})", "fanIndex", outOfRange},
        {R"({"action":"ping","rpm":true})", "rpm", wrongType},
        {R"({"action":"ping","rpm":-1e400})", "rpm", outOfRange},
        {R"({"action":"ping"}{)", "", malformed}};
    for (const auto& [json, member, reason] : rows) {
        EXPECT_THAT([text = json] { decodeHelperRequest(text); },
                    Throws<DecodingError>(AllOf(Property(&DecodingError::member, member),
                                                Property(&DecodingError::reason, reason),
                                                Property(&DecodingError::what, HasSubstr(member)))))
            << json;
    }
    EXPECT_EQ(decodeHelperRequest(R"({"action":"ping","fanIndex":9223372036854775807})").fanIndex,
              std::numeric_limits<std::int64_t>::max());
}

TEST(HelperMessages, ResponsesNeedAllMembers) {
    const HelperResponse response{true, "Alle Lüfter auf macOS-Automatik.", 1};
    EXPECT_EQ(encodeJson(response),
              R"({"success":true,"message":"Alle Lüfter auf macOS-Automatik.","version":1})");
    EXPECT_EQ(decodeHelperResponse(encodeJson(response)), response);
    for (const char* json :
         {R"({"success":true,"message":"m"})", R"({"success":true,"version":1})",
          R"({"message":"m","version":1})", R"({"success":1,"message":"m","version":1})",
          R"({"success":true,"message":"m","version":1.0})",
          R"({"success":true,"message":null,"version":1})"}) {
        EXPECT_THROW(decodeHelperResponse(json), DecodingError) << json;
    }
    // Only a successful ping of this version is usable.
    EXPECT_TRUE(isUsableHelper({true, "", 1}));
    EXPECT_FALSE(isUsableHelper({true, "", 2}));
    EXPECT_FALSE(isUsableHelper({true, "", 0}));
    EXPECT_FALSE(isUsableHelper({false, "", 1}));
}

} // namespace
} // namespace ventaro
