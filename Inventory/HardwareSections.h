#pragma once

#include "UUID.h"

#include <string>
#include <utility>
#include <vector>

namespace ventaro {

/// What a value of the inventory is, whatever it is called.
enum class SpecKind {
    text,
    identifier, ///< tells this machine from all others: not for everybody's eyes
};

/// One row of the hardware inventory; identified by `id`.
struct HardwareSpecItem {
    HardwareSpecItem(std::string itemLabel, std::string itemValue,
                     SpecKind itemKind = SpecKind::text)
        : label(std::move(itemLabel)), value(std::move(itemValue)), kind(itemKind) {}

    UUID id = UUID::random();
    std::string label; ///< German
    std::string value;
    SpecKind kind;

    bool operator==(const HardwareSpecItem&) const = default;
};

/// One section of the hardware inventory; identified by `id`.
struct HardwareSectionData {
    using Rows = std::vector<HardwareSpecItem>;

    UUID id = UUID::random();
    std::string title;
    std::string subtitle;
    std::string icon;            ///< name of a system symbol
    std::string accentColorName; ///< "blue", "orange", "green", "purple", "cyan" or "mint"
    Rows specs;
    std::vector<Rows> subCards; ///< one per module, processor or volume

    bool operator==(const HardwareSectionData&) const = default;
};

} // namespace ventaro
