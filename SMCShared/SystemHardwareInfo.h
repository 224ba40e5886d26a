#pragma once

#include "UUID.h"

#include <string>
#include <utility>
#include <vector>

namespace ventaro {

/// One row of the hardware inventory; identified by `id`.
struct HardwareSpecItem {
    HardwareSpecItem(std::string itemLabel, std::string itemValue)
        : label(std::move(itemLabel)), value(std::move(itemValue)) {}

    UUID id = UUID::random();
    std::string label; ///< German
    std::string value;

    bool operator==(const HardwareSpecItem&) const = default;
};

/// One section of the hardware inventory; identified by `id`.
struct HardwareSectionData {
    UUID id = UUID::random();
    std::string title;
    std::string subtitle;
    std::string icon;            ///< name of a system symbol
    std::string accentColorName; ///< "blue", "orange", "green", "purple", "cyan" or "mint"
    std::vector<HardwareSpecItem> specs;
    /// Groups of rows shown as cards of their own, one per module, processor or volume.
    std::vector<std::vector<HardwareSpecItem>> subCards;

    bool operator==(const HardwareSectionData&) const = default;
};

/// Builds the hardware inventory of a machine.
class HardwareInspector {
public:
    virtual ~HardwareInspector() = default;
    /// A fresh inventory. May take seconds; any thread. Never throws.
    virtual std::vector<HardwareSectionData> loadAllHardwareSections() = 0;
};

} // namespace ventaro
