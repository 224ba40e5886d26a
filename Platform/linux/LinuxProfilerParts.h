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

/// Whether a text of the firmware is what makers leave where they had nothing to say.
bool isPlaceholder(const std::string& text);

/// "16 GB", or "1536 MB" if it is no whole number of them.
std::string describeMemory(std::int64_t megabytes);

/// As macOS writes a size: decimal units, at most two decimals, "500.28 GB".
std::string describeSize(double bytes);

} // namespace ventaro
