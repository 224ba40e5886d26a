#include "LinuxProfilerParts.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace ventaro {

using nlohmann::json;
namespace fs = std::filesystem;

namespace {

/// The text of a PCI file such as "vendor" without its "0x".
std::string pciNumber(const HostTree& host, const fs::path& file) {
    const std::string text = host.text(file).value_or("");
    return text.starts_with("0x") ? text.substr(2) : text;
}

/// The database of PCI names: a line per vendor ("10de  NVIDIA Corporation"), below it a line per
/// device, set in by a tabulator.
class PciNames {
public:
    explicit PciNames(const HostTree& host) {
        for (const char* file :
             {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids", "/usr/share/pci.ids"}) {
            if (auto bytes = host.bytes(file)) {
                names_ = "\n" + *bytes;
                return;
            }
        }
    }
    std::optional<std::string> vendor(const std::string& id) const {
        return nameAt(vendorLine(id), 1);
    }
    std::optional<std::string> device(const std::string& vendorId, const std::string& id) const {
        const std::size_t begin = vendorLine(vendorId);
        const std::size_t found = names_.find("\n\t" + id + "  ", begin);
        for (std::size_t line = begin; line < found;) { // still the same vendor's?
            line = names_.find('\n', line + 1);
            const char first = line + 1 < names_.size() ? names_[line + 1] : '\0';
            if (line < found && first != '\t' && first != '#') {
                return std::nullopt;
            }
        }
        return nameAt(found, 2);
    }

private:
    std::size_t vendorLine(const std::string& id) const { return names_.find("\n" + id + "  "); }
    std::optional<std::string> nameAt(std::size_t line, std::size_t indent) const {
        constexpr std::size_t idAndBlanks = 6;
        if (line == std::string::npos) {
            return std::nullopt;
        }
        const std::size_t begin = line + indent + idAndBlanks;
        return names_.substr(begin, names_.find('\n', begin) - begin);
    }

    std::string names_;
};

/// The monitor's name out of its EDID: one of four descriptors of 18 bytes.
std::optional<std::string> monitorName(const std::string& edid) {
    constexpr std::size_t firstDescriptor = 54;
    constexpr std::size_t descriptorSize = 18;
    constexpr std::size_t textOffset = 5;
    constexpr std::string_view nameHead("\0\0\0\xFC\0", 5);
    for (std::size_t index = 0; index < 4; ++index) {
        const std::size_t begin = firstDescriptor + index * descriptorSize;
        if (edid.size() >= begin + descriptorSize &&
            std::string_view(edid).substr(begin, nameHead.size()) == nameHead) {
            std::string text = edid.substr(begin + textOffset, descriptorSize - textOffset);
            text.erase(std::min(text.find('\n'), text.size()));
            std::erase_if(text, [](char character) { return character < ' ' || character > '~'; });
            text.erase(text.find_last_not_of(' ') + 1);
            return text.empty() ? std::nullopt : std::optional(text);
        }
    }
    return std::nullopt;
}

/// "2560x1440" as "2560 x 1440".
std::optional<std::string> resolution(const std::optional<std::string>& modes) {
    if (!modes) {
        return std::nullopt;
    }
    std::string first = modes->substr(0, modes->find('\n'));
    if (const std::size_t cross = first.find('x'); cross != std::string::npos) {
        first.replace(cross, 1, " x ");
    }
    return first;
}

/// The displays at the connectors of the graphics card at this PCI address.
json connectedDisplays(const HostTree& host, const std::string& address) {
    json displays = json::array();
    for (const auto& card : host.entries("/sys/class/drm", "card")) {
        const std::string name = card.filename();
        const bool isConnector = name.find('-') != std::string::npos;
        if (isConnector || host.linkTargetName(card / "device") != address) {
            continue;
        }
        for (const auto& connector : host.entries("/sys/class/drm", name + "-")) {
            if (host.text(connector / "status") != "connected") {
                continue;
            }
            const std::string plug = connector.filename().string().substr(name.size() + 1);
            const auto size = resolution(host.text(connector / "modes"));
            json display = {
                {"_name", monitorName(host.bytes(connector / "edid").value_or("")).value_or(plug)}};
            addMember(display, "_spdisplays_resolution", size);
            addMember(display, "_spdisplays_pixels", size);
            displays.push_back(display);
        }
    }
    return displays;
}

std::optional<std::string> videoMemory(const HostTree& host, const fs::path& device) {
    constexpr std::int64_t megabyte = 1 << 20U;
    const auto bytes = host.number(device / "mem_info_vram_total");
    return bytes && *bytes > 0 ? std::optional(describeMemory(*bytes / megabyte)) : std::nullopt;
}

json describe(const HostTree& host, const fs::path& device, const PciNames& names) {
    const std::string vendor = pciNumber(host, device / "vendor");
    const std::string id = pciNumber(host, device / "device");
    const std::string revision = pciNumber(host, device / "revision");
    json object = {{"_name", "PCI " + vendor + ":" + id}};
    addMember(object, "spdisplays_vendor", names.vendor(vendor));
    addMember(object, "sppci_model", names.device(vendor, id));
    if (!id.empty()) {
        object["spdisplays_device-id"] = "0x" + id;
    }
    if (!revision.empty()) {
        object["spdisplays_revision-id"] = "0x" + revision;
    }
    if (const auto width = host.number(device / "current_link_width"); width && *width > 0) {
        object["spdisplays_pcie_width"] = "x" + std::to_string(*width);
    }
    addMember(object, "spdisplays_vram", videoMemory(host, device));
    addMember(object, "spdisplays_vbios-version", host.text(device / "vbios_version"));
    object["spdisplays_ndrvs"] = connectedDisplays(host, device.filename());
    return object;
}

} // namespace

json profileDisplays(const HostTree& host) {
    constexpr std::string_view displayClass = "0x03";
    std::optional<PciNames> names; // read when there is something to be named
    json processors = json::array();
    for (const auto& device : host.entries("/sys/bus/pci/devices")) {
        if (host.text(device / "class").value_or("").starts_with(displayClass)) {
            if (!names) {
                names.emplace(host);
            }
            processors.push_back(describe(host, device, *names));
        }
    }
    return processors;
}

} // namespace ventaro
