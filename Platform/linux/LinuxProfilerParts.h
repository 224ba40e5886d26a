#pragma once

#include "HostTree.h"

#include <nlohmann/json.hpp>

#include <optional>

namespace ventaro {

/// The parts of a Linux host's profile, each the array that stands under its data type. Private to
/// the profiler.
nlohmann::json profileMemory(const HostTree& host);
nlohmann::json profileDisplays(const HostTree& host);
nlohmann::json profileStorage(const HostTree& host);

/// Adds a member if it has a value.
template<typename T>
void addMember(nlohmann::json& object, const char* name, const std::optional<T>& value) {
    if (value) {
        object[name] = *value;
    }
}

/// As macOS writes a size: decimal units, at most two decimals, "500.28 GB".
std::string describeSize(double bytes);

} // namespace ventaro
