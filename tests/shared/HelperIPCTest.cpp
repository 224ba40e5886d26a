#include "HelperIPC.h"

#include "JsonObject.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ventaro {
namespace {

using Reason = DecodingError::Reason;
using testing::AllOf;
using testing::Property;
using testing::Throws;

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
    const HelperRequest whole{HelperAction::setFanRPM, 1, 2500};
    EXPECT_EQ(decodeHelperRequest(
                  R"( {"rpm":2500,"x":[{}],"y":1,"y":2,"fanIndex":1,"action":"setFanRPM"} )"),
              whole);
    EXPECT_THROW(encodeJson({HelperAction::setFanRPM, 0, std::nan("")}), EncodingError);
    EXPECT_THROW(encodeJson({HelperAction::setFanRPM, 0, -INFINITY}), EncodingError);
}

TEST(HelperMessages, BadRequestsNameTheMember) {
    struct Row {
        const char* json;
        const char* member;
        Reason reason;
    };
    const Row rows[] = {
        {R"({})", "action", Reason::missing},
        {R"({"action":"Ping"})", "action", Reason::unknownValue},
        {R"({"action":"ping "})", "action", Reason::unknownValue},
        {R"({"action":1})", "action", Reason::wrongType},
        {R"({"action":"ping","fanIndex":null})", "fanIndex", Reason::wrongType},
        {R"({"action":"ping","fanIndex":18446744073709551615})", "fanIndex", Reason::outOfRange},
        {R"({"action":"ping","rpm":true})", "rpm", Reason::wrongType},
        {R"({"action":"ping","rpm":-1e400})", "rpm", Reason::outOfRange},
        {R"({"action":"ping","action":"resetAllAuto"})", "action", Reason::repeated},
        {R"({"action":"ping"}{)", "", Reason::malformed},
    };
    for (const Row& row : rows) {
        EXPECT_THAT([&] { decodeHelperRequest(row.json); },
                    Throws<DecodingError>(AllOf(Property(&DecodingError::member, row.member),
                                                Property(&DecodingError::reason, row.reason))))
            << row.json;
    }
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
}

TEST(HelperMessages, OnlyASuccessfulPingOfThisVersionIsUsable) {
    EXPECT_TRUE(isUsableHelper({true, "", 1}));
    EXPECT_FALSE(isUsableHelper({true, "", 2}));
    EXPECT_FALSE(isUsableHelper({true, "", 0}));
    EXPECT_FALSE(isUsableHelper({false, "", 1}));
}

} // namespace
} // namespace ventaro
