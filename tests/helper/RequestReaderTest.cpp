#include "RequestReader.h"

#include "HelperIPC.h"

#include <gtest/gtest.h>

namespace ventaro {
namespace {

using namespace std::string_literals;
using State = RequestReader::State;

/// However the stream is cut, the decision and what is kept of `text` are the same.
void expectDecision(const std::string& text, State state, const std::string& kept) {
    for (const std::size_t piece : {1UL, 2UL, 3UL, 7UL, text.size() + 1}) {
        RequestReader reader;
        for (std::size_t at = 0; at < text.size(); at += piece) {
            reader.feed(std::string_view(text).substr(at, piece));
        }
        EXPECT_EQ(reader.feed({}), state) << piece << text.substr(0, 60);
        EXPECT_EQ(reader.text(), kept) << piece << text.substr(0, 60);
    }
}

TEST(RequestReading, DecidesByWhatArrived) {
    const std::string limit(maximumHelperMessageSize - 2, ' ');
    for (const std::string& object :
         {R"({"action":"ping"})"s, " \t\r\n{}"s, R"({"a":"}"})"s, R"({"a":"\"}"})"s,
          R"({"a":"\\"})"s, R"({"a":[{"b":"]"}]})"s, "{\"a\":\"ü\"}"s, "{" + limit + "}"}) {
        expectDecision(object, State::complete, object);
        expectDecision(object + "}x", State::complete, object);
    }
    for (const char* text : {R"({"a":"{)", R"({"a":"\")", "", "  ", "{[[[[[[["}) {
        expectDecision(text, State::incomplete, text);
    }
    for (const std::string& text : {"[]"s, "}"s, "\"{}\""s, "\0"s}) {
        expectDecision(text, State::notAnObject, text.substr(0, 1));
    }
    expectDecision("{ " + limit + "}", State::tooLong, "{ " + limit);
    expectDecision(limit + "  " + "{}", State::tooLong, limit + "  ");
    expectDecision("{[[[[[[[[", State::tooDeep, "{[[[[[[[[");
    expectDecision("{{{{{{{{{", State::tooDeep, "{{{{{{{{{");
}

} // namespace
} // namespace ventaro
