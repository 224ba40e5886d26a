#include "RequestReader.h"

#include "HelperIPC.h"

namespace ventaro {

RequestReader::State RequestReader::feed(std::span<const char> bytes) {
    for (const char byte : bytes) {
        if (state_ != State::incomplete) {
            break;
        }
        if (text_.size() == maximumHelperMessageSize) {
            state_ = State::tooLong;
            break;
        }
        text_ += byte;
        state_ = take(byte);
    }
    return state_;
}

RequestReader::State RequestReader::take(char byte) {
    if (inString_) {
        if (escaped_) {
            escaped_ = false;
        } else if (byte == '\\') {
            escaped_ = true;
        } else if (byte == '"') {
            inString_ = false;
        }
        return State::incomplete;
    }
    switch (byte) {
    case ' ':
    case '\t':
    case '\n':
    case '\r':
        return State::incomplete;
    case '{':
        return ++depth_ > maximumDepth ? State::tooDeep : State::incomplete;
    default:
        break;
    }
    if (depth_ == 0) {
        return State::notAnObject;
    }
    switch (byte) {
    case '"':
        inString_ = true;
        return State::incomplete;
    case '[':
        return ++depth_ > maximumDepth ? State::tooDeep : State::incomplete;
    case '}':
    case ']':
        return --depth_ == 0 ? State::complete : State::incomplete;
    default:
        return State::incomplete;
    }
}

} // namespace ventaro
