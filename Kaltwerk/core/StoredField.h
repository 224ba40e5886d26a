#pragma once

#include <utility>

namespace ventaro {

/// Puts `value` into `field` and has `owner` tell of it, if it differs from what the field held.
template<typename Owner, typename T, typename U = T>
void store(Owner* owner, T& field, U&& value, void (Owner::*changed)()) {
    if (field == value) {
        return;
    }
    field = std::forward<U>(value);
    (owner->*changed)();
}

} // namespace ventaro
