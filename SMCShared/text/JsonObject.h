#pragma once

#include "JsonValue.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ventaro {

/// A value that JSON cannot carry. `what()` is a German sentence.
class EncodingError : public std::runtime_error {
public:
    explicit EncodingError(std::string member);
    const std::string& member() const { return member_; }

private:
    std::string member_;
};

/// The members of one JSON object, read strictly: every accessor throws DecodingError for a member
/// that is missing, repeated or of another JSON type (null is one, true and 1.0 are no integers).
/// Members nobody asks for are ignored. Immutable.
class JsonObjectReader {
public:
    /// `text` must be exactly one JSON object.
    explicit JsonObjectReader(std::string_view text);

    bool has(std::string_view member) const { return members_.find(member) != members_.end(); }
    bool boolean(std::string_view member) const;
    std::int64_t integer(std::string_view member) const;
    double number(std::string_view member) const;
    const std::string& string(std::string_view member) const;

    explicit JsonObjectReader(JsonValue::Object members) : members_(std::move(members)) {}

private:
    const JsonValue::Content& find(std::string_view member) const;

    JsonValue::Object members_;
};

/// `text` must be exactly one JSON array of objects; throws DecodingError for anything else.
std::vector<JsonObjectReader> readJsonObjects(std::string_view text);

/// Builds one compact JSON object, members in the order of the calls. Member names are plain ASCII.
class JsonObjectWriter {
public:
    JsonObjectWriter& boolean(std::string_view member, bool value);
    JsonObjectWriter& integer(std::string_view member, std::int64_t value);
    /// Throws EncodingError for a value that is not finite.
    JsonObjectWriter& number(std::string_view member, double value);
    /// Bytes that are not UTF-8 are replaced by U+FFFD.
    JsonObjectWriter& string(std::string_view member, std::string_view value);

    /// `json` is a whole JSON value and stands there as it is.
    JsonObjectWriter& raw(std::string_view member, std::string_view json);

    /// The finished object.
    std::string text() const { return text_ + '}'; }

private:
    void key(std::string_view member);

    std::string text_ = "{";
};

} // namespace ventaro
