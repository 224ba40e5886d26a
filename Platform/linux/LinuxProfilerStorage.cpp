#include "LinuxProfilerParts.h"

#include <sys/statvfs.h>

#include <array>
#include <charconv>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

namespace ventaro {

using nlohmann::json;
namespace fs = std::filesystem;

namespace {

constexpr double sectorSize = 512; // bytes, whatever the device's own is

struct Mount {
    std::string point;
    std::string fileSystem;
};

using Mounts = std::map<std::string, Mount>;

/// A text in which some characters stand as a backslash, `lead` and digits to `base`: "\\040" in
/// the kernel's tables, "\\x20" in udev's.
std::string unescaped(std::string_view text, std::string_view lead, std::size_t digits, int base) {
    std::string plain;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const std::string_view rest = text.substr(index);
        const auto code = rest.starts_with(lead) && rest.size() >= lead.size() + digits
                              ? parseInteger(rest.substr(lead.size(), digits), base)
                              : std::nullopt;
        plain += code && *code > 0 && *code < 256 ? static_cast<char>(*code) : text[index];
        index += code ? lead.size() + digits - 1 : 0;
    }
    return plain;
}

/// What is mounted where, by device number ("259:1") and by device file ("/dev/nvme0n1p1"): some
/// file systems have numbers of their own.
Mounts mounts(const HostTree& host) {
    constexpr std::size_t octalDigits = 3;
    constexpr int octal = 8;
    Mounts found;
    std::istringstream lines(host.bytes("/proc/self/mountinfo").value_or(""));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string ignored;
        std::string number;
        std::string device;
        Mount mount;
        words >> ignored >> ignored >> number >> ignored >> mount.point;
        for (std::string word; word != "-" && words >> word;) {
        }
        words >> mount.fileSystem >> device;
        mount.point = unescaped(mount.point, "\\", octalDigits, octal);
        found.try_emplace(number, mount);
        found.try_emplace(device, mount);
    }
    return found;
}

/// Where a block device is mounted, itself or what lies on it (an encrypted or logical volume).
const Mount* findMount(const HostTree& host, const fs::path& block, const Mounts& mounted,
                       int depth = 0) {
    constexpr int deepest = 4;
    for (const std::string& name :
         {host.text(block / "dev").value_or(""), "/dev/" + block.filename().string()}) {
        if (const auto found = mounted.find(name); found != mounted.end()) {
            return &found->second;
        }
    }
    for (const auto& holder : host.entries(block / "holders")) {
        const Mount* mount = depth < deepest
                                 ? findMount(host, fs::path("/sys/class/block") / holder.filename(),
                                             mounted, depth + 1)
                                 : nullptr;
        if (mount != nullptr) {
            return mount;
        }
    }
    return nullptr;
}

/// The first of these properties that udev has found out about a block device.
std::optional<std::string> udevProperty(const HostTree& host, const std::string& device,
                                        std::initializer_list<const char*> names) {
    constexpr std::size_t hexadecimalDigits = 2;
    constexpr int hexadecimal = 16;
    const std::string lines = "\n" + host.bytes("/run/udev/data/b" + device).value_or("");
    for (const char* name : names) {
        const std::string head = std::string("\nE:") + name + "=";
        if (const std::size_t at = lines.find(head); at != std::string::npos) {
            const std::size_t begin = at + head.size();
            return unescaped(std::string_view(lines).substr(begin, lines.find('\n', begin) - begin),
                             "\\x", hexadecimalDigits, hexadecimal);
        }
    }
    return std::nullopt;
}

std::optional<std::string> sizeOf(const HostTree& host, const fs::path& block) {
    const auto sectors = host.number(block / "size");
    return sectors ? std::optional(describeSize(static_cast<double>(*sectors) * sectorSize))
                   : std::nullopt;
}

std::optional<std::string> freeSpace(const HostTree& host, const std::string& mountPoint) {
    struct statvfs status {};
    if (::statvfs(host.resolve(mountPoint).c_str(), &status) != 0) {
        return std::nullopt;
    }
    return describeSize(static_cast<double>(status.f_bavail) *
                        static_cast<double>(status.f_frsize));
}

json describeVolume(const HostTree& host, const fs::path& partition, const Mounts& mounted) {
    const std::string name = partition.filename();
    const std::string device = host.text(partition / "dev").value_or("");
    const auto label = udevProperty(host, device, {"ID_FS_LABEL_ENC", "ID_PART_ENTRY_NAME"});
    json volume = {{"_name", label.value_or(name)}, {"bsd_name", name}};
    addMember(volume, "size", sizeOf(host, partition));
    if (const Mount* mount = findMount(host, partition, mounted)) {
        volume["file_system"] = mount->fileSystem;
        addMember(volume, "free_space", freeSpace(host, mount->point));
    } else {
        addMember(volume, "file_system", udevProperty(host, device, {"ID_FS_TYPE"}));
    }
    return volume;
}

json describeDrive(const HostTree& host, const fs::path& block, const Mounts& mounted) {
    const std::string name = block.filename();
    const fs::path controller = block / "device";
    const fs::path link = controller / "device";
    json drive = {{"bsd_name", name}};
    addMember(drive, "device_model", host.text(controller / "model"));
    addMember(drive, "device_serial", host.text(controller / "serial"));
    addMember(drive, "device_revision", host.text(controller / "firmware_rev"));
    addMember(drive, "size", sizeOf(host, block));
    const auto width = host.number(link / "current_link_width");
    if (width && *width > 0) { // otherwise both are not known
        const std::string speed = host.text(link / "current_link_speed").value_or("");
        drive["spnvme_linkwidth"] = "x" + std::to_string(*width);
        drive["spnvme_linkspeed"] = speed.substr(0, speed.find(" PCIe")); // "8.0 GT/s PCIe"
    }
    if (const auto largest = host.number(block / "queue/discard_max_bytes")) {
        drive["spnvme_trim_support"] = *largest > 0 ? "Yes" : "No";
    }
    json volumes = json::array();
    for (const auto& partition : host.entries(block, name + "p")) {
        volumes.push_back(describeVolume(host, partition, mounted));
    }
    drive["volumes"] = volumes;
    return drive;
}

} // namespace

std::string describeSize(double bytes) {
    constexpr std::array<const char*, 5> units{" B", " KB", " MB", " GB", " TB"};
    constexpr double step = 1000;
    constexpr int decimals = 2;
    std::size_t unit = 0;
    for (; bytes >= step && unit + 1 < units.size(); ++unit) {
        bytes /= step;
    }
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), bytes,
                                   std::chars_format::fixed, decimals);
    std::string text(digits.data(), end.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    text.erase(text.find_last_not_of('.') + 1);
    return text + units[unit];
}

json profileStorage(const HostTree& host) {
    const Mounts mounted = mounts(host);
    json drives = json::array();
    for (const auto& block : host.entries("/sys/block", "nvme")) {
        drives.push_back(describeDrive(host, block, mounted));
    }
    return json::array({{{"_items", drives}}});
}

} // namespace ventaro
