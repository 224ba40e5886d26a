#include "LinuxHostInformation.h"
#include "LinuxSession.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <cstring>
#include <sstream>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// "one=first|other=second" as pairs.
std::vector<std::pair<std::string, std::string>> pairsIn(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> pairs;
    std::istringstream words(text);
    for (std::string word; std::getline(words, word, '|');) {
        pairs.emplace_back(word.substr(0, word.find('=')), word.substr(word.find('=') + 1));
    }
    return pairs;
}

/// A recorded tree of a host.
struct RecordedHost {
    /// A folder in each line of `tree`, "sys/folder: file=text|file=text".
    explicit RecordedHost(const std::string& tree) {
        std::istringstream lines(tree);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t colon = line.find(": ");
            for (const auto& [file, text] : pairsIn(line.substr(colon + 2))) {
                write(line.substr(0, colon) + "/" + file, text + "\n");
            }
        }
    }
    void write(const fs::path& path, const std::string& text) {
        fs::create_directories((folder.path() / path).parent_path());
        writeFile(folder.path() / path, text);
    }
    json profile() {
        return json::parse(
            *host.runProgram("/usr/sbin/system_profiler",
                             {"SPHardwareDataType", "SPMemoryDataType", "-json",
                              "SPDisplaysDataType", "SPNVMeDataType", "SPPowerDataType"}));
    }
    /// Compares kernel values with those in "name=value|name=value"; "" stands for none.
    void expectValues(const std::string& values) {
        for (const auto& [name, expected] : pairsIn(values)) {
            const auto bytes = host.kernelValue(name);
            std::int64_t number = 0;
            std::string shown = bytes ? std::string(bytes->begin(), bytes->end()) : " ";
            if (bytes && bytes->size() == sizeof number && shown.find('\0') < sizeof number - 1) {
                std::memcpy(&number, bytes->data(), sizeof number);
                shown = std::to_string(number) + '\0';
            }
            EXPECT_EQ(shown.substr(0, shown.size() - 1), expected) << name;
        }
    }

    const TemporaryFolder folder;
    LinuxHostInformation host{HostTree(folder.path())};
};

/// What the firmware tells of a memory module: DDR4 of 3200 MT/s, of which 2667 are used, with the
/// numbers of four texts.
std::string firmwareModule(int gigabytes) {
    std::string bytes("\x11\x28\0\0\0\0\0\0\0\0\0\0\0\0\0\0\1\2\x1A\0\0\x80\x0C\3\0\0\4\0\0\0\0\0"
                      "\x6B\x0A\0\0\0\0\0\0ChannelA\0BANK 0\0Samsung\0M471A2K43  \0\0",
                      0x28 + 37);
    bytes[0x0D] = static_cast<char>(gigabytes * 4);
    return bytes;
}

TEST(LinuxHost, ANotebookTellsWhatItIs) {
    RecordedHost recorded(testData("notebook.txt"));
    std::string cpus;
    for (const char* core : {"0", "1", "0", "1"}) {
        cpus += "processor\t: 0\nvendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: 158\n"
                "model name\t: Intel(R) Core(TM) i7\nstepping\t: 13\nmicrocode\t: 0xf4\n"
                "cpu MHz\t\t: 800.0\nphysical id\t: 0\ncore id\t\t: ";
        cpus += std::string(core) + "\n\n";
    }
    recorded.write("proc/cpuinfo", cpus);
    recorded.write("proc/self/mountinfo", // an encrypted volume, and a file system's own number
                   "29 1 254:1 / /my\\040home rw,noatime shared:1 - ext4 /dev/mapper/home rw\n"
                   "30 1 0:29 / /my\\040home rw - btrfs /dev/nvme0n1p10 rw\n");
    recorded.write("sys/firmware/efi/efivars/LoaderInfo-4a67b082-0a4c-41cf-b6c7-440b29bb8c4f",
                   std::string("\6\0\0\0s\0d\0-\0b\0\0\0", 14));
    recorded.write("sys/firmware/dmi/entries/17-0/raw", firmwareModule(16));
    recorded.write("sys/firmware/dmi/entries/17-1/raw", firmwareModule(0));
    recorded.write("sys/firmware/dmi/entries/17-2/raw", "\x11");
    recorded.write("sys/class/drm/card0-eDP-1/modes", "3840x2400\n1920x1200\n");
    recorded.write("sys/class/drm/card0-eDP-1/edid",
                   std::string(54, '\1') + std::string("\0\0\0\xFE\0abc\n         ", 18) +
                       std::string("\0\0\0\xFC\0LP160\n       ", 18) + std::string(36, '\0'));
    fs::create_directories(recorded.folder.path() / "sys/class/drm/card0");
    fs::create_symlink("../../../0000:00:02.0",
                       recorded.folder.path() / "sys/class/drm/card0/device");
    recorded.write("usr/share/misc/pci.ids",
                   "# names\n10de  NVIDIA Corporation\n\t9bc4  Wrong One\n"
                   "8086  Intel Corporation\n\t9bc4  UHD Graphics\n\t\t1028  x\n");
    recorded.write("run/udev/data/b259:1",
                   "S:disk\nE:ID_FS_TYPE=vfat\nE:ID_PART_ENTRY_NAME=EFI\\x20System\n");
    recorded.write("etc/os-release", "NAME=x\nPRETTY_NAME=\"Debian GNU/Linux 12\"\n");

    recorded.expectValues( // block_size_bytes itself is no block
        "machdep.cpu.brand_string=Intel(R) Core(TM) i7|machdep.cpu.vendor=GenuineIntel|"
        "machdep.cpu.family=6|machdep.cpu.stepping=13|machdep.cpu.core_count=2|"
        "machdep.cpu.thread_count=4|machdep.cpu.microcode_version=244|"
        "hw.cpufrequency_max=2300000000|hw.l1dcachesize=49152|hw.l1icachesize=|"
        "hw.l3cachesize=16777216|hw.memsize=268435456|hw.model=20XW");
    EXPECT_EQ(recorded.host.operatingSystemVersion(), "Debian GNU/Linux 12");
    json profile = recorded.profile();
    json& volumes = profile["SPNVMeDataType"][0]["_items"][0]["volumes"];
    for (const std::size_t volume : {1U, 2U}) {
        EXPECT_TRUE(volumes[volume]["free_space"].is_string()) << "of this test's file system";
        volumes[volume].erase("free_space");
    }
    EXPECT_EQ(profile, json::parse(testData("notebook_profile.json")));
}

TEST(LinuxHost, AVirtualMachineAndAnEmptyHostLeaveOutWhatTheyDoNotHave) {
    RecordedHost machine(R"(sys/class/dmi/id: product_name=Standard PC (Q35)
sys/class/dmi/id: product_serial=to be filled by o.e.m.
sys/devices/system/cpu/cpu0/cache/index0: level=1|type=Data|size=99999999999999999M
sys/bus/pci/devices/0000:00:01.0: class=0x030000|vendor=0x1234|device=0x1111
sys/class/power_supply/AC: online=1
)");
    machine.write("proc/cpuinfo", "processor\t: 0\nmodel name\t: QEMU\ncpu MHz\t: 2595.124\n"
                                  "cpu cores\t: 1\nbroken\n:\n: x\n");
    machine.write("sys/firmware/dmi/entries/17-0/raw", std::string("\x11\xff\0\0", 4));
    machine.write("run/udev/data/+dmi:id",
                  "E:MEMORY_DEVICE_0_SIZE=4294967296\nE:MEMORY_DEVICE_0_TYPE=DDR5\n"
                  "E:MEMORY_DEVICE_0_MANUFACTURER=Unknown\nE:MEMORY_DEVICE_1_SIZE=0\n");
    machine.expectValues("hw.cpufrequency_max=2595124000|machdep.cpu.core_count=1|hw.memsize=|"
                         "machdep.cpu.vendor=|hw.l1dcachesize=");
    EXPECT_EQ(machine.profile(), json::parse(R"JSON({
"SPHardwareDataType":[{"machine_name":"Standard PC (Q35)","machine_model":"Standard PC (Q35)"}],
"SPMemoryDataType":[{"_items":[{"dimm_size":"4 GB","dimm_type":"DDR5"}]}],
"SPDisplaysDataType":[{"_name":"PCI 1234:1111","spdisplays_device-id":"0x1111",
  "spdisplays_ndrvs":[]}],"SPNVMeDataType":[{"_items":[]}],"SPPowerDataType":[]})JSON"));

    RecordedHost empty("");
    EXPECT_EQ(empty.profile(), json::parse(R"({"SPHardwareDataType":[{}],
"SPMemoryDataType":[{"_items":[]}],"SPDisplaysDataType":[],"SPNVMeDataType":[{"_items":[]}],
"SPPowerDataType":[]})"));
    empty.expectValues("machdep.cpu.thread_count=");
    EXPECT_EQ(empty.host.runProgram("/bin/ls", {}), std::nullopt);
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
