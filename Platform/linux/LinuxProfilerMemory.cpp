#include "LinuxProfilerParts.h"

#include <algorithm>
#include <string>

namespace ventaro {

using nlohmann::json;

namespace {

/// One structure of the firmware's tables (SMBIOS, DSP0134): a formatted part, then its texts, each
/// ending in a zero byte. What lies beyond its end has no value.
class FirmwareStructure {
public:
    explicit FirmwareStructure(const std::string& bytes) : bytes_(bytes) {}

    std::size_t length() const { return bytes_.size() > 1 ? byteAt(1) : 0; }
    std::size_t byte(std::size_t offset) const { return offset < length() ? byteAt(offset) : 0; }
    std::size_t word(std::size_t offset) const { return byte(offset) | byte(offset + 1) << 8U; }
    std::size_t doubleWord(std::size_t offset) const {
        return word(offset) | word(offset + 2) << 16U;
    }
    /// The text whose number, from 1, stands at `offset`.
    std::optional<std::string> text(std::size_t offset) const {
        std::size_t begin = length();
        for (std::size_t number = byte(offset); number > 1 && begin < bytes_.size(); --number) {
            begin = std::min(bytes_.find('\0', begin), bytes_.size() - 1) + 1;
        }
        if (byte(offset) == 0 || begin >= bytes_.size()) {
            return std::nullopt;
        }
        std::string text = bytes_.c_str() + begin;
        text.erase(text.find_last_not_of(' ') + 1);
        return text.empty() ? std::nullopt : std::optional(text);
    }

private:
    std::size_t byteAt(std::size_t offset) const {
        return offset < bytes_.size() ? static_cast<unsigned char>(bytes_[offset]) : 0;
    }

    const std::string& bytes_;
};

/// In MiB; 0 for an empty slot.
std::size_t moduleSize(const FirmwareStructure& module) {
    constexpr std::size_t sizeField = 0x0C;
    constexpr std::size_t extendedSizeField = 0x1C;
    constexpr std::size_t unknown = 0xFFFF;
    constexpr std::size_t isExtended = 0x7FFF;
    constexpr std::size_t inKilobytes = 0x8000;
    const std::size_t size = module.word(sizeField);
    if (size == unknown) {
        return 0;
    }
    if (size == isExtended) {
        return module.doubleWord(extendedSizeField) & 0x7FFFFFFFU;
    }
    return (size & inKilobytes) != 0 ? (size & ~inKilobytes) / 1024 : size;
}

std::optional<std::string> moduleType(const FirmwareStructure& module) {
    constexpr std::size_t typeField = 0x12;
    switch (module.byte(typeField)) {
    case 0x18:
        return "DDR3";
    case 0x1A:
        return "DDR4";
    case 0x1D:
        return "LPDDR3";
    case 0x1E:
        return "LPDDR4";
    case 0x22:
        return "DDR5";
    case 0x23:
        return "LPDDR5";
    default:
        return std::nullopt;
    }
}

std::optional<std::string> unlessPlaceholder(std::optional<std::string> text) {
    return text && !isPlaceholder(*text) ? text : std::nullopt;
}

/// In MT/s; 0 if it is not known.
std::size_t moduleSpeed(const FirmwareStructure& module) {
    constexpr std::size_t isExtended = 0xFFFF;
    constexpr std::size_t speed = 0x15;
    constexpr std::size_t configuredSpeed = 0x20;
    constexpr std::size_t extendedSpeed = 0x54;
    constexpr std::size_t extendedConfiguredSpeed = 0x58;
    const auto read = [&](std::size_t field, std::size_t extendedField) {
        const std::size_t rate = module.word(field);
        return rate == isExtended ? module.doubleWord(extendedField) : rate;
    };
    const std::size_t configured = read(configuredSpeed, extendedConfiguredSpeed);
    return configured != 0 ? configured : read(speed, extendedSpeed);
}

json describe(const FirmwareStructure& module, std::size_t megabytes) {
    constexpr std::size_t locator = 0x10;
    constexpr std::size_t bankLocator = 0x11;
    constexpr std::size_t manufacturer = 0x17;
    constexpr std::size_t partNumber = 0x1A;
    const auto bank = unlessPlaceholder(module.text(bankLocator));
    const auto slot = unlessPlaceholder(module.text(locator));
    json object = {{"dimm_size", describeMemory(static_cast<std::int64_t>(megabytes))}};
    addMember(object, "_name",
              bank && slot ? std::optional(*bank + "/" + *slot) : (slot ? slot : bank));
    if (const std::size_t rate = moduleSpeed(module); rate != 0) {
        object["dimm_speed"] = std::to_string(rate) + " MHz";
    }
    addMember(object, "dimm_type", moduleType(module));
    addMember(object, "dimm_manufacturer", unlessPlaceholder(module.text(manufacturer)));
    addMember(object, "dimm_part_number", unlessPlaceholder(module.text(partNumber)));
    return object;
}

/// What udev has read of the firmware's tables, which only root may; "MEMORY_DEVICE_0_SIZE=...".
json modulesFromUdev(const HostTree& host) {
    constexpr std::int64_t megabyte = 1 << 20U;
    constexpr int mostSlots = 64;
    const std::string lines = "\n" + host.bytes("/run/udev/data/+dmi:id").value_or("");
    json modules = json::array();
    for (int slot = 0; slot < mostSlots; ++slot) {
        const auto property = [&](const char* name) -> std::optional<std::string> {
            const std::string head = "\nE:MEMORY_DEVICE_" + std::to_string(slot) + "_" + name + "=";
            const std::size_t at = lines.find(head);
            if (at == std::string::npos) {
                return std::nullopt;
            }
            const std::size_t begin = at + head.size();
            return unlessPlaceholder(lines.substr(begin, lines.find('\n', begin) - begin));
        };
        const auto bytes = parseInteger(property("SIZE").value_or(""));
        if (!bytes || *bytes <= 0) {
            continue;
        }
        json object = {{"dimm_size", describeMemory(*bytes / megabyte)}};
        addMember(object, "_name", property("LOCATOR"));
        if (const auto rate = property("CONFIGURED_SPEED_MTS")) {
            object["dimm_speed"] = *rate + " MHz";
        }
        addMember(object, "dimm_type", property("TYPE"));
        addMember(object, "dimm_manufacturer", property("MANUFACTURER"));
        addMember(object, "dimm_part_number", property("PART_NUMBER"));
        modules.push_back(object);
    }
    return modules;
}

} // namespace

json profileMemory(const HostTree& host) {
    json modules = json::array();
    // Structures of type 17, a memory device each.
    for (const auto& entry : host.entries("/sys/firmware/dmi/entries", "17-")) {
        const auto bytes = host.bytes(entry / "raw");
        if (!bytes) {
            continue;
        }
        const FirmwareStructure module(*bytes);
        if (const std::size_t megabytes = moduleSize(module); megabytes != 0) {
            modules.push_back(describe(module, megabytes));
        }
    }
    if (modules.empty()) {
        modules = modulesFromUdev(host);
    }
    return json::array({{{"_items", modules}}});
}

} // namespace ventaro
