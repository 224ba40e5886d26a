#include "JsonObject.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <optional>

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

/// Collects the members of the outermost object, or of those in the outermost array. What lies
/// deeper is only counted, so that neither depth nor size costs more than the text itself.
class MemberCollector : public nlohmann::json_sax<json> {
public:
    enum class Outermost { object, array };

    explicit MemberCollector(Outermost outermost)
        : objectDepth_(outermost == Outermost::array ? 1 : 0) {}

    std::vector<JsonObjectReader::Members> objects;
    std::optional<DecodingError> error;

    bool null() override { return store(JsonObjectReader::Other{}); }
    bool boolean(bool value) override { return store(value); }
    bool number_integer(number_integer_t value) override { return store(value); }
    bool number_unsigned(number_unsigned_t value) override { return store(value); }
    bool number_float(number_float_t value, const string_t& text) override {
        const bool isInteger = text.find_first_of(".eE") == string_t::npos;
        return isInteger ? store(JsonObjectReader::HugeInteger{value}) : store(value);
    }
    bool string(string_t& value) override { return store(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override {
        if (depth_ == objectDepth_) {
            objects.emplace_back();
            return enter();
        }
        return store(JsonObjectReader::Other{}) && enter();
    }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t /*size*/) override {
        return (depth_ < objectDepth_ || store(JsonObjectReader::Other{})) && enter();
    }
    bool end_array() override { return leave(); }
    bool key(string_t& name) override {
        if (depth_ == objectDepth_ + 1) {
            name_ = std::move(name);
        }
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& exception) override {
        constexpr int numberOverflow = 406;
        return exception.id == numberOverflow && depth_ > objectDepth_
                   ? fail(DecodingError::Reason::outOfRange, name_)
                   : fail(DecodingError::Reason::malformed, {});
    }

private:
    bool enter() {
        ++depth_;
        return true;
    }
    bool leave() {
        --depth_;
        return true;
    }
    bool store(JsonObjectReader::Value&& value) {
        if (depth_ <= objectDepth_) {
            return fail(DecodingError::Reason::malformed, {});
        }
        if (depth_ == objectDepth_ + 1) {
            const auto [entry, isNew] = objects.back().try_emplace(name_, std::move(value));
            if (!isNew) {
                entry->second = JsonObjectReader::Repeated{};
            }
        }
        return true;
    }
    bool fail(DecodingError::Reason reason, const std::string& member) {
        error.emplace(reason, member);
        return false;
    }

    const int objectDepth_; ///< the depth at which the objects stand
    int depth_ = 0;
    std::string name_;
};

std::vector<JsonObjectReader::Members> collect(std::string_view text,
                                               MemberCollector::Outermost outermost) {
    MemberCollector collector(outermost);
    const bool complete = json::sax_parse(text.begin(), text.end(), &collector);
    if (!complete) {
        throw collector.error.value_or(DecodingError(DecodingError::Reason::malformed, {}));
    }
    return std::move(collector.objects);
}

std::string quoted(std::string_view text) {
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace

EncodingError::EncodingError(std::string member)
    : std::runtime_error("Das Feld „" + member + "“ ist keine endliche Zahl."),
      member_(std::move(member)) {}

DecodingError::DecodingError(Reason reason, std::string member)
    : std::runtime_error(sentence(reason, member)), reason_(reason), member_(std::move(member)) {}

JsonObjectReader::JsonObjectReader(std::string_view text)
    : members_(std::move(collect(text, MemberCollector::Outermost::object).front())) {}

std::vector<JsonObjectReader> readJsonObjects(std::string_view text) {
    std::vector<JsonObjectReader> readers;
    for (auto& members : collect(text, MemberCollector::Outermost::array)) {
        readers.emplace_back(std::move(members));
    }
    return readers;
}

const JsonObjectReader::Value& JsonObjectReader::find(std::string_view member) const {
    const auto found = members_.find(member);
    if (found == members_.end()) {
        throw DecodingError(DecodingError::Reason::missing, std::string(member));
    }
    if (std::holds_alternative<Repeated>(found->second)) {
        throw DecodingError(DecodingError::Reason::repeated, std::string(member));
    }
    return found->second;
}

bool JsonObjectReader::boolean(std::string_view member) const {
    if (const auto* value = std::get_if<bool>(&find(member))) {
        return *value;
    }
    throw DecodingError(DecodingError::Reason::wrongType, std::string(member));
}

std::int64_t JsonObjectReader::integer(std::string_view member) const {
    const Value& value = find(member);
    if (const auto* signedValue = std::get_if<std::int64_t>(&value)) {
        return *signedValue;
    }
    if (const auto* unsignedValue = std::get_if<std::uint64_t>(&value)) {
        constexpr auto largest = std::numeric_limits<std::int64_t>::max();
        if (*unsignedValue > static_cast<std::uint64_t>(largest)) {
            throw DecodingError(DecodingError::Reason::outOfRange, std::string(member));
        }
        return static_cast<std::int64_t>(*unsignedValue);
    }
    if (std::holds_alternative<HugeInteger>(value)) {
        throw DecodingError(DecodingError::Reason::outOfRange, std::string(member));
    }
    throw DecodingError(DecodingError::Reason::wrongType, std::string(member));
}

double JsonObjectReader::number(std::string_view member) const {
    const Value& value = find(member);
    if (const auto* real = std::get_if<double>(&value)) {
        return *real;
    }
    if (const auto* huge = std::get_if<HugeInteger>(&value)) {
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
