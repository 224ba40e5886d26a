#include "RequestReader.h"

#include "HelperIPC.h"

#include <gtest/gtest.h>

namespace ventaro {
namespace {

using State = RequestReader::State;

TEST(RequestReading, DecidesByWhatArrived) {
    const std::string limit(maximumHelperMessageSize - 2, ' ');
    struct Row {
        std::string text;
        State state;
        std::string object;
    };
    const Row rows[] = {
        {R"({"action":"ping"})", State::complete, R"({"action":"ping"})"},
        {R"({"action":"ping"}{"action)", State::complete, R"({"action":"ping"})"},
        {" \t\r\n{}", State::complete, " \t\r\n{}"},
        {R"({"a":"}"})", State::complete, R"({"a":"}"})"},
        {R"({"a":"\"}"})", State::complete, R"({"a":"\"}"})"},
        {R"({"a":"\\"}})", State::complete, R"({"a":"\\"})"},
        {R"({"a":[{"b":"]"}]}x)", State::complete, R"({"a":[{"b":"]"}]})"},
        {"{\"a\":\"ü\"}", State::complete, "{\"a\":\"ü\"}"},
        {R"({"a":"{)", State::incomplete, R"({"a":"{)"},
        {R"({"a":"\")", State::incomplete, R"({"a":"\")"},
        {"", State::incomplete, ""},
        {"  ", State::incomplete, "  "},
        {"[]", State::notAnObject, "["},
        {"}", State::notAnObject, "}"},
        {"\"{}\"", State::notAnObject, "\""},
        {std::string(1, '\0'), State::notAnObject, std::string(1, '\0')},
        {"{" + limit + "}", State::complete, "{" + limit + "}"},
        {"{ " + limit + "}", State::tooLong, "{ " + limit},
        {limit + "  " + "{}", State::tooLong, limit + "  "},
        {"{[[[[[[[", State::incomplete, "{[[[[[[["},
        {"{[[[[[[[[", State::tooDeep, "{[[[[[[[["},
        {"{{{{{{{{{", State::tooDeep, "{{{{{{{{{"},
    };
    for (const Row& row : rows) {
        RequestReader whole;
        EXPECT_EQ(whole.feed(row.text), row.state) << row.text.substr(0, 60);
        EXPECT_EQ(whole.text(), row.object) << row.text.substr(0, 60);
        // However the stream is cut, the decision is the same.
        for (const std::size_t piece : {1U, 2U, 3U, 7U}) {
            RequestReader cut;
            for (std::size_t at = 0; at < row.text.size(); at += piece) {
                cut.feed(std::string_view(row.text).substr(at, piece));
            }
            EXPECT_EQ(cut.feed({}), row.state) << piece << row.text.substr(0, 60);
            EXPECT_EQ(cut.text(), row.object) << piece << row.text.substr(0, 60);
        }
    }
}

} // namespace
} // namespace ventaro
