#pragma once

#include "JsonValue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventaro {

/// One object of a JSON value, read leniently: a member that is missing or of another type has no
/// value. A view; the tree must outlive it.
class JsonObjectView {
public:
    /// Of an object without members.
    JsonObjectView();
    explicit JsonObjectView(const JsonValue::Object& members) : members_(&members) {}

    bool isEmpty() const { return members_->empty(); }
    bool has(std::string_view key) const;
    std::optional<std::string> string(std::string_view key) const;
    std::optional<std::int64_t> integer(std::string_view key) const;
    /// No value if there is no object under `key`.
    std::optional<JsonObjectView> object(std::string_view key) const;
    /// The objects among the elements of the array under `key`, in order.
    std::vector<JsonObjectView> objects(std::string_view key) const;
    /// Element 0 of the array under `key`, or an object without members if that is no object.
    JsonObjectView firstObject(std::string_view key) const;

private:
    const JsonValue* find(std::string_view key) const;

    const JsonValue::Object* members_;
};

} // namespace ventaro
