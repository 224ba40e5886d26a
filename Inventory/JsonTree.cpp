#include "JsonTree.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <utility>

namespace ventaro {

namespace {

using nlohmann::json;

const JsonNode::Object noMembers;

/// Builds the tree of the wanted members. What lies in an unwanted one is only counted.
class TreeBuilder final : public nlohmann::json_sax<json> {
public:
    explicit TreeBuilder(const std::function<bool(std::string_view)>& isWanted)
        : isWanted_(isWanted) {}

    JsonNode root;

    bool null() override { return add({}); }
    bool boolean(bool /*value*/) override { return add({}); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override {
        constexpr auto largest =
            static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max());
        return value <= largest ? add(static_cast<std::int64_t>(value)) : add({});
    }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override {
        return add({});
    }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return enter(JsonNode::Object()); }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t /*size*/) override {
        return (!open_.empty() || skipped_ > 0) && enter(JsonNode::Array());
    }
    bool end_array() override { return leave(); }
    bool key(string_t& name) override {
        if (skipped_ == 0) {
            isNextWanted_ = isWanted_(name);
            key_ = std::move(name);
        }
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& /*exception*/) override {
        return false;
    }

private:
    /// Deeper than any document goes that is meant.
    static constexpr std::size_t deepest = 32;

    /// Where a value goes; null if it is not wanted.
    JsonNode* place(bool isObject) {
        constexpr std::size_t mostElements = 256;
        if (open_.empty()) {
            return &root;
        }
        JsonNode::Value& parent = open_.back()->value();
        if (auto* array = std::get_if<JsonNode::Array>(&parent)) {
            const bool isKept = array->empty() || (isObject && array->size() < mostElements);
            return isKept ? &array->emplace_back() : nullptr;
        }
        return isNextWanted_ ? &std::get<JsonNode::Object>(parent)[key_] : nullptr;
    }
    bool add(JsonNode::Value value) {
        if (skipped_ == 0) {
            if (JsonNode* node = place(false)) {
                node->value() = std::move(value);
            }
        }
        return true;
    }
    bool enter(JsonNode::Value value) {
        const bool isObject = std::holds_alternative<JsonNode::Object>(value);
        JsonNode* node = skipped_ == 0 && open_.size() < deepest ? place(isObject) : nullptr;
        if (node == nullptr) {
            ++skipped_;
            return true;
        }
        node->value() = std::move(value);
        open_.push_back(node); // stays put while it is open: only its children grow
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

    const std::function<bool(std::string_view)>& isWanted_;
    std::vector<JsonNode*> open_;
    std::size_t skipped_ = 0; ///< open objects and arrays that are not wanted
    std::string key_;
    bool isNextWanted_ = false;
};

} // namespace

JsonObjectView::JsonObjectView() : members_(&noMembers) {}

const JsonNode* JsonObjectView::find(std::string_view key) const {
    const auto found = members_->find(key);
    return found == members_->end() ? nullptr : &found->second;
}

bool JsonObjectView::has(std::string_view key) const { return find(key) != nullptr; }

std::optional<std::string> JsonObjectView::string(std::string_view key) const {
    const JsonNode* node = find(key);
    const auto* text = node != nullptr ? std::get_if<std::string>(&node->value()) : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<std::int64_t> JsonObjectView::integer(std::string_view key) const {
    const JsonNode* node = find(key);
    const auto* number = node != nullptr ? std::get_if<std::int64_t>(&node->value()) : nullptr;
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

std::optional<JsonObjectView> JsonObjectView::object(std::string_view key) const {
    const JsonNode* node = find(key);
    const auto* members = node != nullptr ? std::get_if<JsonNode::Object>(&node->value()) : nullptr;
    return members != nullptr ? std::optional(JsonObjectView(*members)) : std::nullopt;
}

std::vector<JsonObjectView> JsonObjectView::objects(std::string_view key) const {
    std::vector<JsonObjectView> views;
    const JsonNode* node = find(key);
    if (const auto* array =
            node != nullptr ? std::get_if<JsonNode::Array>(&node->value()) : nullptr) {
        for (const JsonNode& element : *array) {
            if (const auto* members = std::get_if<JsonNode::Object>(&element.value())) {
                views.emplace_back(*members);
            }
        }
    }
    return views;
}

JsonObjectView JsonObjectView::firstObject(std::string_view key) const {
    const JsonNode* node = find(key);
    const auto* array = node != nullptr ? std::get_if<JsonNode::Array>(&node->value()) : nullptr;
    const auto* members = array != nullptr && !array->empty()
                              ? std::get_if<JsonNode::Object>(&array->front().value())
                              : nullptr;
    return members != nullptr ? JsonObjectView(*members) : JsonObjectView();
}

JsonNode::Object parseJsonTree(std::string_view text,
                               const std::function<bool(std::string_view)>& isWanted) {
    TreeBuilder builder(isWanted);
    const bool complete = json::sax_parse(text.begin(), text.end(), &builder);
    auto* members = std::get_if<JsonNode::Object>(&builder.root.value());
    return complete && members != nullptr ? std::move(*members) : JsonNode::Object();
}

} // namespace ventaro
