#include "LinuxHostInformation.h"
#include "LinuxSession.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <cstring>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// A recorded tree of a host: its files, and links to other places.
class RecordedHost {
public:
    using Files = std::vector<std::pair<std::string, std::string>>;

    explicit RecordedHost(const Files& files, const Files& links = {}) {
        for (const auto& [path, text] : files) {
            fs::create_directories((folder_.path() / path).parent_path());
            writeFile(folder_.path() / path, text);
        }
        for (const auto& [path, target] : links) {
            fs::create_directories((folder_.path() / path).parent_path());
            fs::create_symlink(target, folder_.path() / path);
        }
    }
    json profile() {
        return json::parse(
            *host_.runProgram("/usr/sbin/system_profiler",
                              {"SPHardwareDataType", "SPMemoryDataType", "-json",
                               "SPDisplaysDataType", "SPNVMeDataType", "SPPowerDataType"}));
    }
    std::string text(const char* name) {
        const auto bytes = host_.kernelValue(name);
        return bytes ? std::string(bytes->begin(), bytes->end() - 1) : "(none)";
    }
    std::int64_t number(const char* name) {
        const auto bytes = host_.kernelValue(name);
        std::int64_t value = -1;
        if (bytes && bytes->size() == sizeof value) {
            std::memcpy(&value, bytes->data(), sizeof value);
        }
        return value;
    }
    LinuxHostInformation& host() { return host_; }

private:
    TemporaryFolder folder_;
    LinuxHostInformation host_{HostTree(folder_.path())};
};

std::string firmwareModule(std::uint16_t megabytes) {
    std::string bytes(0x28, '\0');
    bytes[0] = 17;
    bytes[1] = 0x28;
    bytes[0x0C] = static_cast<char>(megabytes & 0xFF);
    bytes[0x0D] = static_cast<char>(megabytes >> 8);
    bytes[0x10] = 1; // slot
    bytes[0x11] = 2; // bank
    bytes[0x12] = 0x1A;
    bytes[0x15] = static_cast<char>(0x80); // 3200 MT/s, of which 2667 are used
    bytes[0x16] = 0x0C;
    bytes[0x17] = 3;
    bytes[0x1A] = 4;
    bytes[0x20] = static_cast<char>(0x6B);
    bytes[0x21] = 0x0A;
    return bytes + std::string("ChannelA\0BANK 0\0Samsung\0M471A2K43  \0\0", 37);
}

const std::string edid = std::string(54, '\1') + std::string("\0\0\0\xFE\0abc\n         ", 18) +
                         std::string("\0\0\0\xFC\0LP160\n       ", 18) + std::string(36, '\0');

RecordedHost notebook() {
    const std::string cpu =
        "vendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: 158\n"
        "model name\t: Intel(R) Core(TM) i7\nstepping\t: 13\nmicrocode\t: 0xf4\n"
        "cpu MHz\t\t: 800.0\nphysical id\t: 0\n";
    std::string cpus;
    for (const char* core : {"0", "1", "0", "1"}) {
        cpus += "processor\t: 0\n" + cpu + "core id\t\t: " + core + "\n\n";
    }
    const std::string sys = "sys/";
    const std::string block = sys + "block/nvme0n1/";
    const std::string nvme = block + "device/";
    const std::string gpu = sys + "bus/pci/devices/0000:00:02.0/";
    const std::string dgpu = sys + "bus/pci/devices/0000:01:00.0/";
    const std::string battery = sys + "class/power_supply/BAT0/";
    const std::string cache = sys + "devices/system/cpu/cpu0/cache/";
    return RecordedHost(
        {{"proc/cpuinfo", cpus},
         {sys + "devices/system/cpu/cpu0/cpufreq/base_frequency", "2300000\n"},
         {cache + "index0/level", "1\n"},
         {cache + "index0/type", "Data\n"},
         {cache + "index0/size", "48K\n"},
         {cache + "index3/level", "3\n"},
         {cache + "index3/type", "Unified\n"},
         {cache + "index3/size", "16M\n"},
         {sys + "devices/system/memory/block_size_bytes", "8000000\n"},
         {sys + "devices/system/memory/memory0/state", "online\n"},
         {sys + "devices/system/memory/memory32/state", "online\n"},
         {sys + "class/dmi/id/product_name", "20XW\n"},
         {sys + "class/dmi/id/sys_vendor", "LENOVO\n"},
         {sys + "class/dmi/id/product_version", "ThinkPad X1\n"},
         {sys + "class/dmi/id/product_serial", "Default string\n"},
         {sys + "class/dmi/id/bios_version", "N32ET75W (1.51 )\n"},
         {sys + "firmware/efi/efivars/LoaderInfo-4a67b082-0a4c-41cf-b6c7-440b29bb8c4f",
          std::string("\6\0\0\0s\0d\0-\0b\0\0\0", 14)},
         {sys + "firmware/dmi/entries/17-0/raw", firmwareModule(16384)},
         {sys + "firmware/dmi/entries/17-1/raw", firmwareModule(0)},
         {sys + "firmware/dmi/entries/17-2/raw", "\x11"},
         {"usr/share/misc/pci.ids", "# names\n10de  NVIDIA Corporation\n\t9bc4  Wrong One\n"
                                    "8086  Intel Corporation\n\t9bc4  UHD Graphics\n\t\t1028  x\n"},
         {gpu + "class", "0x030000\n"},
         {gpu + "vendor", "0x8086\n"},
         {gpu + "device", "0x9bc4\n"},
         {gpu + "revision", "0x05\n"},
         {dgpu + "class", "0x030200\n"},
         {dgpu + "vendor", "0x1002\n"},
         {dgpu + "device", "0x7340\n"},
         {dgpu + "current_link_width", "8\n"},
         {dgpu + "mem_info_vram_total", "4278190080\n"},
         {sys + "bus/pci/devices/0000:00:1f.0/class", "0x060100\n"},
         {sys + "class/drm/card0-eDP-1/status", "connected\n"},
         {sys + "class/drm/card0-eDP-1/modes", "3840x2400\n1920x1200\n"},
         {sys + "class/drm/card0-eDP-1/edid", edid},
         {sys + "class/drm/card0-DP-1/status", "disconnected\n"},
         {nvme + "model", "Samsung SSD 980   \n"},
         {nvme + "serial", "S64  \n"},
         {nvme + "firmware_rev", "2B4QFXO7\n"},
         {nvme + "device/current_link_speed", "16.0 GT/s PCIe\n"},
         {nvme + "device/current_link_width", "4\n"},
         {block + "size", "1953525168\n"},
         {block + "queue/discard_max_bytes", "2199023255040\n"},
         {block + "nvme0n1p1/size", "1048576\n"},
         {block + "nvme0n1p1/dev", "259:1\n"},
         {block + "nvme0n1p2/size", "1952472527\n"},
         {block + "nvme0n1p2/dev", "259:2\n"},
         {"run/udev/data/b259:1",
          "S:disk\nE:ID_FS_TYPE=vfat\nE:ID_PART_ENTRY_NAME=EFI\\x20System\n"},
         {block + "nvme0n1p2/holders/dm-0/x", ""}, // an encrypted volume
         {"sys/class/block/dm-0/dev", "254:0\n"},
         {"sys/class/block/dm-0/holders/dm-1/x", ""},
         {"sys/class/block/dm-1/dev", "254:1\n"},
         {block + "nvme0n1p10/dev", "259:10\n"},
         {"proc/self/mountinfo",
          "29 1 254:1 / /my\\040home rw,noatime shared:1 - ext4 /dev/mapper/home rw\n"
          "30 1 0:29 / /my\\040home rw - btrfs /dev/nvme0n1p10 rw\n"},
         {"my home/file", ""},
         {battery + "type", "Battery\n"},
         {sys + "class/power_supply/hidpp_battery_0/type", "Battery\n"},
         {sys + "class/power_supply/hidpp_battery_0/scope", "Device\n"},
         {battery + "manufacturer", "SMP\n"},
         {battery + "cycle_count", "214\n"},
         {battery + "energy_full", "51300000\n"},
         {battery + "voltage_min_design", "11580000\n"},
         {battery + "capacity", "87\n"},
         {battery + "status", "Charging\n"},
         {"etc/os-release", "NAME=x\nPRETTY_NAME=\"Debian GNU/Linux 12\"\n"}},
        {{"sys/class/drm/card0/device", "../../../0000:00:02.0"}});
}

TEST(LinuxHost, ANotebookTellsWhatItIs) {
    RecordedHost recorded = notebook();
    EXPECT_EQ(recorded.text("machdep.cpu.brand_string"), "Intel(R) Core(TM) i7");
    EXPECT_EQ(recorded.text("machdep.cpu.vendor"), "GenuineIntel");
    EXPECT_EQ(recorded.number("machdep.cpu.family"), 6);
    EXPECT_EQ(recorded.number("machdep.cpu.stepping"), 13);
    EXPECT_EQ(recorded.number("machdep.cpu.core_count"), 2);
    EXPECT_EQ(recorded.number("machdep.cpu.thread_count"), 4);
    EXPECT_EQ(recorded.number("machdep.cpu.microcode_version"), 0xF4);
    EXPECT_EQ(recorded.number("hw.cpufrequency_max"), 2300000000);
    EXPECT_EQ(recorded.number("hw.l1dcachesize"), 48 * 1024);
    EXPECT_EQ(recorded.number("hw.l1icachesize"), -1);
    EXPECT_EQ(recorded.number("hw.l3cachesize"), 16 << 20);
    EXPECT_EQ(recorded.number("hw.memsize"), 2 * 0x8000000) << "block_size_bytes itself is none";
    EXPECT_EQ(recorded.text("hw.model"), "20XW");
    EXPECT_EQ(recorded.host().operatingSystemVersion(), "Debian GNU/Linux 12");

    json profile = recorded.profile();
    json& volumes = profile["SPNVMeDataType"][0]["_items"][0]["volumes"];
    for (const std::size_t volume : {1U, 2U}) {
        EXPECT_TRUE(volumes[volume]["free_space"].is_string()) << "of this test's file system";
        volumes[volume].erase("free_space");
    }
    EXPECT_EQ(profile, json::parse(R"JSON({
"SPHardwareDataType":[{"machine_name":"ThinkPad X1","machine_model":"20XW",
  "boot_rom_version":"N32ET75W (1.51 )","os_loader_version":"sd-b"}],
"SPMemoryDataType":[{"_items":[{"_name":"BANK 0/ChannelA","dimm_size":"16 GB","dimm_type":"DDR4",
  "dimm_speed":"2667 MHz","dimm_manufacturer":"Samsung","dimm_part_number":"M471A2K43"}]}],
"SPDisplaysDataType":[
  {"_name":"PCI 8086:9bc4","sppci_model":"UHD Graphics","spdisplays_vendor":"Intel Corporation",
   "spdisplays_device-id":"0x9bc4","spdisplays_revision-id":"0x05",
   "spdisplays_ndrvs":[{"_name":"LP160","_spdisplays_resolution":"3840 x 2400",
     "_spdisplays_pixels":"3840 x 2400"}]},
  {"_name":"PCI 1002:7340","spdisplays_device-id":"0x7340",
   "spdisplays_pcie_width":"x8","spdisplays_vram":"4080 MB","spdisplays_ndrvs":[]}],
"SPNVMeDataType":[{"_items":[{"bsd_name":"nvme0n1","device_model":"Samsung SSD 980",
  "device_serial":"S64","device_revision":"2B4QFXO7","size":"1 TB","spnvme_linkspeed":"16.0 GT/s",
  "spnvme_linkwidth":"x4","spnvme_trim_support":"Yes","volumes":[
    {"_name":"EFI System","bsd_name":"nvme0n1p1","size":"536.87 MB","file_system":"vfat"},
    {"_name":"nvme0n1p2","bsd_name":"nvme0n1p2","size":"999.67 GB","file_system":"ext4"},
    {"_name":"nvme0n1p10","bsd_name":"nvme0n1p10","file_system":"btrfs"}]}]}],
"SPPowerDataType":[{"_name":"spbattery_information",
  "sppower_battery_model_info":{"sppower_battery_manufacturer":"SMP"},
  "sppower_battery_health_info":{"sppower_battery_cycle_count":214},
  "sppower_battery_charge_info":{"sppower_battery_max_capacity":4430,
    "sppower_battery_state_of_charge":87,"sppower_battery_is_charging":"TRUE"}}]})JSON"));
}

TEST(LinuxHost, AVirtualMachineAndAnEmptyHostLeaveOutWhatTheyDoNotHave) {
    RecordedHost machine(
        {{"proc/cpuinfo", "processor\t: 0\nmodel name\t: QEMU\ncpu MHz\t: 2595.124\n"
                          "cpu cores\t: 1\nbroken\n:\n: x\n"},
         {"sys/class/dmi/id/product_name", "Standard PC (Q35)\n"},
         {"sys/class/dmi/id/product_serial", "to be filled by o.e.m.\n"},
         {"sys/devices/system/cpu/cpu0/cache/index0/level", "1\n"},
         {"sys/firmware/dmi/entries/17-0/raw", std::string("\x11\xff\0\0", 4)},
         {"sys/bus/pci/devices/0000:00:01.0/class", "0x030000"},
         {"run/udev/data/+dmi:id",
          "E:MEMORY_DEVICE_0_SIZE=4294967296\nE:MEMORY_DEVICE_0_TYPE=DDR5\n"
          "E:MEMORY_DEVICE_0_MANUFACTURER=Unknown\n"
          "E:MEMORY_DEVICE_1_SIZE=0\n"},
         {"sys/devices/system/cpu/cpu0/cache/index0/type", "Data"},
         {"sys/devices/system/cpu/cpu0/cache/index0/size", "99999999999999999M"},
         {"sys/class/power_supply/AC/online", "1"}});
    EXPECT_EQ(machine.number("hw.cpufrequency_max"), 2595124000);
    EXPECT_EQ(machine.number("machdep.cpu.core_count"), 1);
    EXPECT_EQ(machine.number("hw.memsize"), -1);
    EXPECT_EQ(machine.text("machdep.cpu.vendor"), "(none)");
    const json profile = machine.profile();
    EXPECT_EQ(profile["SPHardwareDataType"][0]["machine_name"], "Standard PC (Q35)");
    EXPECT_EQ(profile["SPDisplaysDataType"].size(), 1U);
    EXPECT_FALSE(profile["SPHardwareDataType"][0].contains("serial_number"));
    EXPECT_EQ(profile["SPMemoryDataType"][0]["_items"],
              json::parse(R"([{"dimm_size":"4 GB","dimm_type":"DDR5"}])"));
    EXPECT_EQ(machine.number("hw.l1dcachesize"), -1) << "no such number";
    EXPECT_TRUE(profile["SPPowerDataType"].empty());

    RecordedHost empty({});
    EXPECT_EQ(empty.profile(), json::parse(R"({"SPHardwareDataType":[{}],
"SPMemoryDataType":[{"_items":[]}],"SPDisplaysDataType":[],"SPNVMeDataType":[{"_items":[]}],
"SPPowerDataType":[]})"));
    EXPECT_EQ(empty.number("machdep.cpu.thread_count"), -1);
    EXPECT_EQ(empty.host().runProgram("/bin/ls", {}), std::nullopt);
}

TEST(LinuxSession, KeepsToTheConfigurationFolder) {
    ::setenv("HOME", "/home/somebody", 1);
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(makeLinuxSession().loginItem.file,
              "/home/somebody/.config/autostart/com.ventaro.app.desktop");
    ::setenv("XDG_CONFIG_HOME", "/configuration", 1);
    EXPECT_EQ(makeLinuxSession().loginItem.file,
              "/configuration/autostart/com.ventaro.app.desktop");
    EXPECT_EQ(makeLinuxSession().loginItem.mechanism, LoginMechanism::xdgAutostart);
}

} // namespace
} // namespace ventaro
