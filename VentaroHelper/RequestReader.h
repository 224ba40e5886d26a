#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ventaro {

/// Finds the end of one JSON object in a stream that has no terminator, byte by byte: nothing is
/// looked at twice, and what is no object, too long or too deep is seen before anything parses it.
class RequestReader {
public:
    enum class State {
        incomplete,
        complete,
        notAnObject, ///< the first byte that is not white space is no brace
        tooLong,     ///< no end within the longest request
        tooDeep,
    };

    /// The deepest nesting of objects and arrays that is read.
    static constexpr int maximumDepth = 8;

    /// Takes the next bytes; those after the end of the object are ignored. Once the state is no
    /// longer `incomplete`, it stays.
    State feed(std::span<const char> bytes);

    /// What has been received of the object so far, the whole of it when `complete`.
    std::string_view text() const { return text_; }

private:
    State take(char byte);

    std::string text_;
    State state_ = State::incomplete;
    int depth_ = 0;
    bool inString_ = false;
    bool escaped_ = false;
};

} // namespace ventaro
