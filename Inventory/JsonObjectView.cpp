#include "JsonObjectView.h"

namespace ventaro {

namespace {

const JsonValue::Object noMembers;

} // namespace

JsonObjectView::JsonObjectView() : members_(&noMembers) {}

const JsonValue* JsonObjectView::find(std::string_view key) const {
    const auto found = members_->find(key);
    return found == members_->end() ? nullptr : &found->second;
}

bool JsonObjectView::has(std::string_view key) const { return find(key) != nullptr; }

std::optional<std::string> JsonObjectView::string(std::string_view key) const {
    const JsonValue* node = find(key);
    const auto* text = node != nullptr ? std::get_if<std::string>(&node->content()) : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<std::int64_t> JsonObjectView::integer(std::string_view key) const {
    const JsonValue* node = find(key);
    const auto* number = node != nullptr ? std::get_if<std::int64_t>(&node->content()) : nullptr;
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

std::optional<JsonObjectView> JsonObjectView::object(std::string_view key) const {
    const JsonValue* node = find(key);
    const auto* members =
        node != nullptr ? std::get_if<JsonValue::Object>(&node->content()) : nullptr;
    return members != nullptr ? std::optional(JsonObjectView(*members)) : std::nullopt;
}

std::vector<JsonObjectView> JsonObjectView::objects(std::string_view key) const {
    std::vector<JsonObjectView> views;
    const JsonValue* node = find(key);
    if (const auto* array =
            node != nullptr ? std::get_if<JsonValue::Array>(&node->content()) : nullptr) {
        for (const JsonValue& element : *array) {
            if (const auto* members = std::get_if<JsonValue::Object>(&element.content())) {
                views.emplace_back(*members);
            }
        }
    }
    return views;
}

JsonObjectView JsonObjectView::firstObject(std::string_view key) const {
    const JsonValue* node = find(key);
    const auto* array = node != nullptr ? std::get_if<JsonValue::Array>(&node->content()) : nullptr;
    const auto* members = array != nullptr && !array->empty()
                              ? std::get_if<JsonValue::Object>(&array->front().content())
                              : nullptr;
    return members != nullptr ? JsonObjectView(*members) : JsonObjectView();
}

} // namespace ventaro
