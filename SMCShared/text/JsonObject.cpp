#include "JsonObject.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <optional>

namespace ventaro {

namespace {

using nlohmann::json;

/// `value` as this kind of content; throws if it is another one.
template<typename T>
T taken(JsonValue value) {
    if (auto* content = std::get_if<T>(&value.content())) {
        return std::move(*content);
    }
    throw DecodingError(DecodingError::Reason::malformed, {});
}

std::string quoted(std::string_view text) {
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace

EncodingError::EncodingError(std::string member)
    : std::runtime_error("Das Feld „" + member + "“ ist keine endliche Zahl."),
      member_(std::move(member)) {}

JsonObjectReader::JsonObjectReader(std::string_view text)
    : members_(taken<JsonValue::Object>(parseJson(text, {.depth = 1}))) {}

std::vector<JsonObjectReader> readJsonObjects(std::string_view text) {
    std::vector<JsonObjectReader> readers;
    for (JsonValue& element : taken<JsonValue::Array>(parseJson(text, {.depth = 2}))) {
        readers.emplace_back(taken<JsonValue::Object>(std::move(element)));
    }
    return readers;
}

const JsonValue::Content& JsonObjectReader::find(std::string_view member) const {
    const auto found = members_.find(member);
    if (found == members_.end()) {
        throw DecodingError(DecodingError::Reason::missing, std::string(member));
    }
    if (std::holds_alternative<JsonValue::Repeated>(found->second.content())) {
        throw DecodingError(DecodingError::Reason::repeated, std::string(member));
    }
    return found->second.content();
}

bool JsonObjectReader::boolean(std::string_view member) const {
    if (const auto* value = std::get_if<bool>(&find(member))) {
        return *value;
    }
    throw DecodingError(DecodingError::Reason::wrongType, std::string(member));
}

std::int64_t JsonObjectReader::integer(std::string_view member) const {
    const JsonValue::Content& value = find(member);
    if (const auto* signedValue = std::get_if<std::int64_t>(&value)) {
        return *signedValue;
    }
    if (std::holds_alternative<std::uint64_t>(value) ||
        std::holds_alternative<JsonValue::HugeInteger>(value)) {
        throw DecodingError(DecodingError::Reason::outOfRange, std::string(member));
    }
    throw DecodingError(DecodingError::Reason::wrongType, std::string(member));
}

double JsonObjectReader::number(std::string_view member) const {
    const JsonValue::Content& value = find(member);
    if (const auto* real = std::get_if<double>(&value)) {
        return *real;
    }
    if (const auto* huge = std::get_if<JsonValue::HugeInteger>(&value)) {
        return huge->value;
    }
    if (const auto* signedValue = std::get_if<std::int64_t>(&value)) {
        return static_cast<double>(*signedValue);
    }
    if (const auto* unsignedValue = std::get_if<std::uint64_t>(&value)) {
        return static_cast<double>(*unsignedValue);
    }
    throw DecodingError(DecodingError::Reason::wrongType, std::string(member));
}

const std::string& JsonObjectReader::string(std::string_view member) const {
    if (const auto* value = std::get_if<std::string>(&find(member))) {
        return *value;
    }
    throw DecodingError(DecodingError::Reason::wrongType, std::string(member));
}

void JsonObjectWriter::key(std::string_view member) {
    if (text_.size() > 1) {
        text_ += ',';
    }
    // Members are named by this program, in plain letters.
    text_ += '"';
    text_ += member;
    text_ += "\":";
}

JsonObjectWriter& JsonObjectWriter::boolean(std::string_view member, bool value) {
    key(member);
    text_ += value ? "true" : "false";
    return *this;
}

JsonObjectWriter& JsonObjectWriter::integer(std::string_view member, std::int64_t value) {
    key(member);
    text_ += std::to_string(value);
    return *this;
}

JsonObjectWriter& JsonObjectWriter::number(std::string_view member, double value) {
    if (!std::isfinite(value)) {
        throw EncodingError(std::string(member));
    }
    key(member);
    text_ += json(value).dump();
    return *this;
}

JsonObjectWriter& JsonObjectWriter::string(std::string_view member, std::string_view value) {
    key(member);
    text_ += quoted(value);
    return *this;
}

JsonObjectWriter& JsonObjectWriter::raw(std::string_view member, std::string_view json) {
    key(member);
    text_ += json;
    return *this;
}

} // namespace ventaro
