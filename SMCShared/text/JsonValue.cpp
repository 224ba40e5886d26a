#include "JsonValue.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <utility>

namespace ventaro {

namespace {

using nlohmann::json;

/// A foreign member name may be as long as the text; a sentence takes its beginning.
std::string shortened(const std::string& member) {
    constexpr std::size_t most = 40;
    if (member.size() <= most) {
        return member;
    }
    std::size_t end = most;
    while ((static_cast<unsigned char>(member[end]) & 0xC0U) == 0x80U) { // inside a UTF-8 sequence
        --end;
    }
    return member.substr(0, end) + "…";
}

std::string sentence(DecodingError::Reason reason, const std::string& member) {
    const std::string field = "Das Feld „" + shortened(member) + "“ ";
    switch (reason) {
    case DecodingError::Reason::malformed:
        return "Der Text ist kein gültiges JSON-Objekt.";
    case DecodingError::Reason::missing:
        return field + "fehlt.";
    case DecodingError::Reason::wrongType:
        return field + "hat den falschen Typ.";
    case DecodingError::Reason::outOfRange:
        return field + "liegt außerhalb des Wertebereichs.";
    case DecodingError::Reason::unknownValue:
        return field + "hat einen unbekannten Wert.";
    case DecodingError::Reason::repeated:
        return field + "kommt mehrfach vor.";
    }
    return {};
}

/// Builds the value from the parser's events. What is not wanted is only counted.
class ValueBuilder final : public nlohmann::json_sax<json> {
public:
    explicit ValueBuilder(const JsonScope& scope) : scope_(scope) {}

    JsonValue root;
    std::optional<DecodingError> error;

    bool null() override { return add(JsonValue::Other{}); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override {
        return std::in_range<std::int64_t>(value) ? add(static_cast<std::int64_t>(value))
                                                  : add(value);
    }
    bool number_float(number_float_t value, const string_t& text) override {
        const bool isInteger = text.find_first_of(".eE") == string_t::npos;
        return isInteger ? add(JsonValue::HugeInteger{value}) : add(value);
    }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return enter(JsonValue::Object()); }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t /*size*/) override { return enter(JsonValue::Array()); }
    bool end_array() override { return leave(); }
    bool key(string_t& name) override {
        if (skipped_ == 0) {
            isNextWanted_ = scope_.isWanted(name);
            key_ = std::move(name);
        }
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& exception) override {
        constexpr int numberOverflow = 406;
        if (exception.id == numberOverflow && !key_.empty()) {
            error.emplace(DecodingError::Reason::outOfRange, key_);
        } else {
            error.emplace(DecodingError::Reason::malformed, std::string());
        }
        return false;
    }

private:
    /// Where a value goes; null if it is not wanted.
    JsonValue* place(bool isObject) {
        if (open_.empty()) {
            return &root;
        }
        JsonValue::Content& parent = open_.back()->content();
        if (auto* array = std::get_if<JsonValue::Array>(&parent)) {
            const bool isKept = array->empty() || scope_.elements == JsonScope{0}.elements ||
                                (isObject && array->size() < scope_.elements);
            return isKept ? &array->emplace_back() : nullptr;
        }
        if (!isNextWanted_) {
            return nullptr;
        }
        const auto [member, isNew] =
            std::get<JsonValue::Object>(parent).try_emplace(key_, JsonValue());
        if (!isNew) {
            member->second.content() = JsonValue::Repeated{};
        }
        return isNew ? &member->second : nullptr;
    }
    bool add(JsonValue::Content content) {
        if (JsonValue* value = skipped_ == 0 ? place(false) : nullptr) {
            value->content() = std::move(content);
        }
        return true;
    }
    bool enter(JsonValue::Content content) {
        const bool isObject = std::holds_alternative<JsonValue::Object>(content);
        JsonValue* value = skipped_ == 0 ? place(isObject) : nullptr;
        if (value == nullptr || open_.size() >= scope_.depth) {
            ++skipped_;
            return true;
        }
        value->content() = std::move(content);
        open_.push_back(value); // stays put while it is open: only its children grow
        return true;
    }
    bool leave() {
        if (skipped_ > 0) {
            --skipped_;
        } else {
            open_.pop_back();
        }
        return true;
    }

    const JsonScope& scope_;
    std::vector<JsonValue*> open_;
    std::size_t skipped_ = 0; ///< open objects and arrays that are not wanted
    std::string key_;
    bool isNextWanted_ = false;
};

} // namespace

DecodingError::DecodingError(Reason reason, std::string member)
    : std::runtime_error(sentence(reason, member)), reason_(reason), member_(std::move(member)) {}

JsonValue parseJson(std::string_view text, const JsonScope& scope) {
    ValueBuilder builder(scope);
    if (!json::sax_parse(text.begin(), text.end(), &builder)) {
        throw builder.error.value_or(DecodingError(DecodingError::Reason::malformed, {}));
    }
    return std::move(builder.root);
}

} // namespace ventaro
