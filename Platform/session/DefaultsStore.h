#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ventaro {

/// Binary data as a defaults store holds it.
using DefaultsData = std::vector<std::uint8_t>;
using DefaultsValue = std::variant<bool, double, std::string, DefaultsData>;

/// A user's settings: values of four types under keys. Main thread only.
class DefaultsStore {
public:
    using Entry = std::pair<std::string, DefaultsValue>;

    virtual ~DefaultsStore() = default;

    /// What `key` holds; no value if it holds nothing.
    virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
    /// Stores all entries, in this order. Never throws: what cannot be kept for later is still
    /// known to this object.
    virtual void store(const std::vector<Entry>& entries) = 0;

    /// What `key` holds, if it is of this type; no value otherwise.
    template<typename T>
    std::optional<T> value(std::string_view key) const {
        const auto held = object(key);
        const T* typed = held ? std::get_if<T>(&*held) : nullptr;
        return typed != nullptr ? std::optional<T>(*typed) : std::nullopt;
    }
};

} // namespace ventaro
