#include "LinuxProfiler.h"

#include "LinuxProfilerParts.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <utility>

namespace ventaro {

using nlohmann::json;

namespace {

std::optional<std::string> dmiText(const HostTree& host, const char* field) {
    auto text = host.text(std::filesystem::path("/sys/class/dmi/id") / field);
    return text && !isPlaceholder(*text) ? text : std::nullopt;
}

/// The boot loader's name as it left it for the operating system: four bytes of attributes, then
/// UTF-16 of plain letters.
std::optional<std::string> bootLoader(const HostTree& host) {
    constexpr std::size_t attributes = 4;
    const auto bytes =
        host.bytes("/sys/firmware/efi/efivars/LoaderInfo-4a67b082-0a4c-41cf-b6c7-440b29bb8c4f");
    std::string name;
    for (std::size_t index = attributes; bytes && index < bytes->size(); index += 2) {
        if ((*bytes)[index] != '\0') {
            name += (*bytes)[index];
        }
    }
    return name.empty() ? std::nullopt : std::optional(name);
}

json hardware(const HostTree& host) {
    json overview = json::object();
    const auto product = dmiText(host, "product_name");
    // Lenovo's product names are order numbers.
    const bool isLenovo = host.text("/sys/class/dmi/id/sys_vendor") == "LENOVO";
    const auto version = isLenovo ? dmiText(host, "product_version") : std::nullopt;
    addMember(overview, "machine_name", version ? version : product);
    addMember(overview, "machine_model", product);
    addMember(overview, "serial_number", dmiText(host, "product_serial"));
    addMember(overview, "boot_rom_version", dmiText(host, "bios_version"));
    addMember(overview, "os_loader_version", bootLoader(host));
    addMember(overview, "platform_UUID", dmiText(host, "product_uuid"));
    return json::array({overview});
}

/// In mAh: the charge, or else the energy over the voltage the battery was made for.
std::optional<std::int64_t> fullCharge(const HostTree& host, const std::filesystem::path& battery) {
    constexpr std::int64_t micro = 1000000;
    constexpr std::int64_t milli = 1000;
    if (const auto charge = host.number(battery / "charge_full")) { // µAh
        return *charge / milli;
    }
    const auto energy = host.number(battery / "energy_full");         // µWh
    const auto voltage = host.number(battery / "voltage_min_design"); // µV
    return energy && voltage && *voltage > 0 && *energy >= 0 && *energy < micro * milli
               ? std::optional(*energy * milli / *voltage)
               : std::nullopt;
}

json power(const HostTree& host) {
    json items = json::array();
    for (const auto& battery : host.entries("/sys/class/power_supply")) {
        // Not the one of a mouse, nor an empty bay.
        if (host.text(battery / "type") != "Battery" || host.text(battery / "scope") == "Device" ||
            host.number(battery / "present") == 0) {
            continue;
        }
        json model = json::object();
        addMember(model, "sppower_battery_manufacturer", host.text(battery / "manufacturer"));
        addMember(model, "sppower_battery_device_name", host.text(battery / "model_name"));
        addMember(model, "sppower_battery_serial_number", host.text(battery / "serial_number"));
        json health = json::object();
        addMember(health, "sppower_battery_cycle_count", host.number(battery / "cycle_count"));
        json charge = json::object();
        addMember(charge, "sppower_battery_max_capacity", fullCharge(host, battery));
        addMember(charge, "sppower_battery_state_of_charge", host.number(battery / "capacity"));
        charge["sppower_battery_is_charging"] =
            host.text(battery / "status") == "Charging" ? "TRUE" : "FALSE";
        items.push_back({{"_name", "spbattery_information"},
                         {"sppower_battery_model_info", model},
                         {"sppower_battery_health_info", health},
                         {"sppower_battery_charge_info", charge}});
    }
    return items;
}

} // namespace

bool isPlaceholder(const std::string& text) {
    constexpr std::array<const char*, 9> placeholders{
        "To Be Filled By O.E.M.", "Default string", "Not Specified",
        "Not Applicable",         "O.E.M.",         "System Serial Number",
        "System Product Name",    "None",           "Unknown"};
    return std::any_of(placeholders.begin(), placeholders.end(), [&](const char* placeholder) {
        return ::strcasecmp(text.c_str(), placeholder) == 0;
    });
}

std::string describeMemory(std::int64_t megabytes) {
    constexpr std::int64_t gigabyte = 1024;
    return megabytes % gigabyte == 0 ? std::to_string(megabytes / gigabyte) + " GB"
                                     : std::to_string(megabytes) + " MB";
}

std::string linuxProfilerDocument(const HostTree& host, const std::vector<std::string>& dataTypes) {
    const std::pair<std::string_view, json (*)(const HostTree&)> sources[] = {
        {"SPHardwareDataType", hardware},
        {"SPMemoryDataType", profileMemory},
        {"SPDisplaysDataType", profileDisplays},
        {"SPNVMeDataType", profileStorage},
        {"SPPowerDataType", power},
    };
    json document = json::object();
    for (const auto& [name, read] : sources) {
        if (std::find(dataTypes.begin(), dataTypes.end(), name) != dataTypes.end()) {
            document[std::string(name)] = read(host);
        }
    }
    return document.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace ventaro
