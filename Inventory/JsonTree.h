#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ventaro {

/// A JSON value from outside, as far as one is read from it. What is none of these (null, a truth
/// value, a number that is no 64-bit integer) is only there.
class JsonNode {
public:
    using Object = std::map<std::string, JsonNode, std::less<>>;
    using Array = std::vector<JsonNode>;
    struct Other {};
    using Value = std::variant<Other, std::int64_t, std::string, Array, Object>;

    JsonNode() = default;
    explicit JsonNode(Value value) : value_(std::move(value)) {}

    Value& value() { return value_; }
    const Value& value() const { return value_; }

private:
    Value value_;
};

/// One object of such a value, read leniently: a member that is missing or of another type has no
/// value. A view; the tree must outlive it.
class JsonObjectView {
public:
    /// Of an object without members.
    JsonObjectView();
    explicit JsonObjectView(const JsonNode::Object& members) : members_(&members) {}

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
    const JsonNode* find(std::string_view key) const;

    const JsonNode::Object* members_;
};

/// Parses a text whose outermost value is an object and keeps the members that `isWanted`, at any
/// depth, and of each array the first element and the objects, 256 at most: neither size nor depth
/// of the rest costs memory. An object without members if the text is anything else.
JsonNode::Object parseJsonTree(std::string_view text,
                               const std::function<bool(std::string_view key)>& isWanted);

} // namespace ventaro
