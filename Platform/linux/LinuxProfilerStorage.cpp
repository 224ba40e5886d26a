#include "LinuxProfilerParts.h"

#include <sys/statvfs.h>

#include <array>
#include <charconv>
#include <map>
#include <sstream>
#include <string>

namespace ventaro {

using nlohmann::json;
namespace fs = std::filesystem;

namespace {

constexpr double sectorSize = 512; // bytes, whatever the device's own is

struct Mount {
    std::string point;
    std::string fileSystem;
};

/// What is mounted where, by device number ("259:1").
std::map<std::string, Mount> mounts(const HostTree& host) {
    std::map<std::string, Mount> found;
    std::istringstream lines(host.bytes("/proc/self/mountinfo").value_or(""));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string ignored;
        std::string device;
        Mount mount;
        words >> ignored >> ignored >> device >> ignored >> mount.point;
        for (std::string word; word != "-" && words >> word;) {
        }
        words >> mount.fileSystem;
        found.try_emplace(device, mount);
    }
    return found;
}

/// A property that udev has found out about a block device.
std::optional<std::string> udevProperty(const HostTree& host, const std::string& device,
                                        const std::string& name) {
    const std::string head = "E:" + name + "=";
    std::istringstream lines(host.bytes("/run/udev/data/b" + device).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(head)) {
            return line.substr(head.size());
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

json describeVolume(const HostTree& host, const fs::path& partition,
                    const std::map<std::string, Mount>& mounted) {
    const std::string name = partition.filename();
    const std::string device = host.text(partition / "dev").value_or("");
    const auto mount = mounted.find(device);
    auto label = udevProperty(host, device, "ID_FS_LABEL");
    if (!label) {
        label = udevProperty(host, device, "ID_PART_ENTRY_NAME");
    }
    json volume = {{"_name", label.value_or(name)}, {"bsd_name", name}};
    addMember(volume, "size", sizeOf(host, partition));
    if (mount != mounted.end()) {
        volume["file_system"] = mount->second.fileSystem;
        addMember(volume, "free_space", freeSpace(host, mount->second.point));
    } else {
        addMember(volume, "file_system", udevProperty(host, device, "ID_FS_TYPE"));
    }
    return volume;
}

json describeDrive(const HostTree& host, const fs::path& controller, const std::string& name) {
    const fs::path block = fs::path("/sys/block") / name;
    json drive = {{"bsd_name", name}};
    addMember(drive, "device_model", host.text(controller / "model"));
    addMember(drive, "device_serial", host.text(controller / "serial"));
    addMember(drive, "device_revision", host.text(controller / "firmware_rev"));
    addMember(drive, "size", sizeOf(host, block));
    if (const auto speed = host.text(controller / "device/current_link_speed")) {
        drive["spnvme_linkspeed"] = speed->substr(0, speed->find(" PCIe")); // "8.0 GT/s PCIe"
    }
    if (const auto width = host.text(controller / "device/current_link_width")) {
        drive["spnvme_linkwidth"] = "x" + *width;
    }
    if (const auto largest = host.number(block / "queue/discard_max_bytes")) {
        drive["spnvme_trim_support"] = *largest > 0 ? "Yes" : "No";
    }
    const auto mounted = mounts(host);
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
    json drives = json::array();
    for (const auto& controller : host.entries("/sys/class/nvme", "nvme")) {
        const std::string name = controller.filename();
        for (const auto& block : host.entries("/sys/block", name + "n")) {
            drives.push_back(describeDrive(host, controller, block.filename()));
        }
    }
    return json::array({{{"_items", drives}}});
}

} // namespace ventaro
