#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ventaro {

/// A text that is not the record it should be. `what()` is a German sentence naming the member.
class DecodingError : public std::runtime_error {
public:
    enum class Reason { malformed, missing, wrongType, outOfRange, unknownValue, repeated };

    DecodingError(Reason reason, std::string member);
    Reason reason() const { return reason_; }
    /// The member at fault; empty if the text is no JSON object at all.
    const std::string& member() const { return member_; }

private:
    Reason reason_;
    std::string member_;
};

/// A JSON value from outside.
class JsonValue {
public:
    using Object = std::map<std::string, JsonValue, std::less<>>;
    using Array = std::vector<JsonValue>;
    struct Other {};    ///< null, or what lies deeper than is read
    struct Repeated {}; ///< a member that stands there more than once
    /// An integer that no 64 bits hold.
    struct HugeInteger {
        double value;
    };
    using Content = std::variant<Other, Repeated, bool, std::int64_t, std::uint64_t, HugeInteger,
                                 double, std::string, Array, Object>;

    Content& content() { return content_; }
    const Content& content() const { return content_; }

private:
    Content content_;
};

/// What of a text is kept, so that neither size nor depth of the rest costs memory.
struct JsonScope {
    std::size_t depth; ///< of objects and arrays in each other
    /// Of each array; with a limit, objects only, and the first element whatever it is.
    std::size_t elements = std::numeric_limits<std::size_t>::max();
    /// Of all objects.
    std::function<bool(std::string_view member)> isWanted = [](std::string_view) { return true; };
};

/// `text` must be exactly one JSON value. Throws DecodingError.
JsonValue parseJson(std::string_view text, const JsonScope& scope);

} // namespace ventaro
