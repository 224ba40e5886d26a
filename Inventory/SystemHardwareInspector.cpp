#include "SystemHardwareInspector.h"

#include "Platform.h"
#include "UserSession.h"

#include <QString>
#include <algorithm>
#include <array>
#include <cstring>

namespace ventaro {

namespace {

/// Every member of the profiler's document that a section reads.
constexpr std::array<std::string_view, 60> wantedKeys{
    "SPHardwareDataType",
    "SPMemoryDataType",
    "SPDisplaysDataType",
    "SPNVMeDataType",
    "SPPowerDataType",
    "_items",
    "_name",
    "_spdisplays_displayport_device",
    "_spdisplays_pixels",
    "_spdisplays_resolution",
    "boot_rom_version",
    "bsd_name",
    "device_model",
    "device_revision",
    "device_serial",
    "dimm_manufacturer",
    "dimm_part_number",
    "dimm_size",
    "dimm_speed",
    "dimm_status",
    "dimm_type",
    "file_system",
    "free_space",
    "iocontent",
    "machine_model",
    "machine_name",
    "os_loader_version",
    "platform_UUID",
    "serial_number",
    "size",
    "smart_status",
    "spdisplays_device-id",
    "spdisplays_displayport_current_bandwidth",
    "spdisplays_efi-version",
    "spdisplays_gmux-version",
    "spdisplays_mtlgpufamilysupport",
    "spdisplays_ndrvs",
    "spdisplays_pcie_width",
    "spdisplays_revision-id",
    "spdisplays_vbios-version",
    "spdisplays_vendor",
    "spdisplays_vram",
    "spdisplays_vram_shared",
    "spnvme_linkspeed",
    "spnvme_linkwidth",
    "spnvme_trim_support",
    "sppci_model",
    "sppower_battery_charge_info",
    "sppower_battery_cycle_count",
    "sppower_battery_device_name",
    "sppower_battery_firmware_version",
    "sppower_battery_health",
    "sppower_battery_health_info",
    "sppower_battery_is_charging",
    "sppower_battery_manufacturer",
    "sppower_battery_max_capacity",
    "sppower_battery_model_info",
    "sppower_battery_serial_number",
    "sppower_battery_state_of_charge",
    "volumes",
};

} // namespace

SystemHardwareInspector& SystemHardwareInspector::shared() {
    static auto* inspector =
        new SystemHardwareInspector(*Platform::current().session->hostInformation);
    return *inspector;
}

ProfilerDocument SystemHardwareInspector::parseProfilerDocument(std::string_view json) {
    // Deeper and longer than any document goes that is meant.
    const JsonScope scope{.depth = 32, .elements = 256, .isWanted = [](std::string_view key) {
                              return std::find(wantedKeys.begin(), wantedKeys.end(), key) !=
                                     wantedKeys.end();
                          }};
    try {
        JsonValue document = parseJson(json, scope);
        auto* members = std::get_if<ProfilerDocument>(&document.content());
        return members != nullptr ? std::move(*members) : ProfilerDocument();
    } catch (const DecodingError&) {
        return {};
    }
}

ProfilerDocument SystemHardwareInspector::fetchSystemProfilerJSON() const {
    const auto output =
        host_.runProgram("/usr/sbin/system_profiler",
                         {"SPHardwareDataType", "SPMemoryDataType", "SPDisplaysDataType",
                          "SPNVMeDataType", "SPPowerDataType", "-json"});
    return output ? parseProfilerDocument(*output) : ProfilerDocument();
}

std::vector<HardwareSectionData> SystemHardwareInspector::loadAllHardwareSections() const {
    return buildSections(fetchSystemProfilerJSON());
}

std::vector<HardwareSectionData>
SystemHardwareInspector::buildSections(const ProfilerDocument& document) const {
    const JsonObjectView view(document);
    return {buildSystemSection(view), buildCPUSection(view), buildRAMSection(view),
            buildGPUSection(view),    buildSSDSection(view), buildBatterySection(view)};
}

std::optional<std::string> SystemHardwareInspector::sysctlString(std::string_view name) const {
    const auto bytes = host_.kernelValue(name);
    if (!bytes || bytes->empty()) {
        return std::nullopt;
    }
    const std::string text(bytes->begin(), std::find(bytes->begin(), bytes->end(), 0));
    return QString::fromStdString(text).trimmed().toStdString();
}

std::optional<std::int64_t> SystemHardwareInspector::sysctlInt64(std::string_view name) const {
    const auto bytes = host_.kernelValue(name);
    std::int64_t value = 0;
    if (!bytes || bytes->size() > sizeof value) {
        return std::nullopt; // as the kernel refuses a value that does not fit
    }
    if (!bytes->empty()) {
        std::memcpy(&value, bytes->data(), bytes->size());
    }
    return value;
}

} // namespace ventaro
