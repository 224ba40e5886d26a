#include "NumberFormat.h"
#include "SystemHardwareInspector.h"

#include <QString>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace ventaro {

namespace {

using Rows = HardwareSectionData::Rows;

constexpr const char* missing = "–";

std::string text(const JsonObjectView& object, const char* key, const char* fallback = missing) {
    return object.string(key).value_or(fallback);
}

/// The first of two members that is there.
std::string text(const JsonObjectView& object, const char* key, const char* otherKey,
                 const char* fallback) {
    return object.string(key).value_or(text(object, otherKey, fallback));
}

HardwareSpecItem secret(const char* label, const std::optional<std::string>& value) {
    return {label, value.value_or(missing), value ? SpecKind::identifier : SpecKind::text};
}

std::string upperCased(const std::string& text) {
    return QString::fromStdString(text).toUpper().toStdString();
}

/// `text` without any occurrence of `part`.
std::string without(const char* part, const std::string& text) {
    return QString::fromStdString(text).remove(QLatin1String(part)).toStdString();
}

std::string atSpeed(const std::string& type, const std::string& speed) {
    return type + " @ " + speed;
}

std::string number(std::int64_t value) { return std::to_string(value); }

std::string hexadecimal(std::int64_t value) {
    constexpr int base = 16;
    std::array<char, 17> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<std::uint64_t>(value), base);
    return "0x" + upperCased({digits.data(), end.ptr});
}

} // namespace

HardwareSectionData
SystemHardwareInspector::buildSystemSection(const JsonObjectView& document) const {
    const JsonObjectView hw = document.firstObject("SPHardwareDataType");
    const std::string name = text(hw, "machine_name", "MacBook Pro");
    const auto identifier = hw.string("machine_model");
    const std::string model =
        identifier ? *identifier : sysctlString("hw.model").value_or("MacBookPro16,1");
    return {
        .title = "System & Logic Board",
        .subtitle = name + " (" + model + ")",
        .icon = "laptopcomputer",
        .accentColorName = "blue",
        .specs =
            {
                {"Modellname", name},
                {"Modell-Identifikator", model},
                {"Hersteller", "Apple Inc."},
                secret("Seriennummer", hw.string("serial_number")),
                {"Boot-ROM / iBridge", text(hw, "boot_rom_version")},
                {"OS Loader", text(hw, "os_loader_version")},
                {"macOS Version", host_.operatingSystemVersion()},
                secret("Hardware-UUID", hw.string("platform_UUID")),
            },
        .subCards = {},
    };
}

HardwareSectionData
SystemHardwareInspector::buildCPUSection(const JsonObjectView& /*document*/) const {
    constexpr std::int64_t kilobyte = 1024;
    constexpr std::int64_t megabyte = 1024 * kilobyte;
    constexpr double gigahertz = 1e9;
    const auto value = [this](const char* name, std::int64_t fallback, std::int64_t unit = 1) {
        const auto known = sysctlInt64(name);
        return number(known ? *known / unit : fallback);
    };
    const std::string brand = sysctlString("machdep.cpu.brand_string")
                                  .value_or("Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz");
    const std::string vendor = sysctlString("machdep.cpu.vendor").value_or("GenuineIntel");
    const std::string family = value("machdep.cpu.family", 6);
    const std::string model = value("machdep.cpu.model", 158);
    const std::string stepping = value("machdep.cpu.stepping", 13);
    const std::string cores = value("machdep.cpu.core_count", 8);
    const std::string threads = value("machdep.cpu.thread_count", 16);
    const auto frequency = sysctlInt64("hw.cpufrequency_max");
    const double baseClock = frequency ? static_cast<double>(*frequency) / gigahertz : 2.3;
    const std::string instructionCache = value("hw.l1icachesize", 32, kilobyte);
    const std::string dataCache = value("hw.l1dcachesize", 32, kilobyte);
    const std::string secondCache = value("hw.l2cachesize", 256, kilobyte);
    const std::string thirdCache = value("hw.l3cachesize", 16, megabyte);
    const std::int64_t microcode = sysctlInt64("machdep.cpu.microcode_version").value_or(0);
    const bool isTarget = brand.find("9880H") != std::string::npos;
    return {
        .title = "Prozessor (CPU)",
        .subtitle = brand,
        .icon = "cpu.fill",
        .accentColorName = "orange",
        .specs =
            {
                {"Modell", brand},
                {"Hersteller", vendor + " (Intel Coffee Lake-H Refresh, 14nm++)"},
                {"Kerne / Threads",
                 cores + " Physische Kerne / " + threads + " Threads (Hyper-Threading)"},
                {"Basis-Taktfrequenz", formatFixed(baseClock, 2) + " GHz"},
                {"Max. Turbo-Takt",
                 isTarget ? "Bis zu 4,80 GHz (Turbo Boost 2.0)" : "Dynamischer Turbo Boost"},
                {"L1 Cache (pro Kern)",
                 instructionCache + " KB Instruction + " + dataCache + " KB Data"},
                {"L2 Cache (pro Kern)", secondCache + " KB"},
                {"L3 Smart Cache", thirdCache + " MB Shared"},
                {"Architektur & Stepping",
                 "x86_64 · Family " + family + ", Model " + model + ", Stepping " + stepping},
                {"Microcode-Version", hexadecimal(microcode)},
                {"TDP (Design)", "45 W (cTDP-down 35 W)"},
            },
        .subCards = {},
    };
}

HardwareSectionData SystemHardwareInspector::buildRAMSection(const JsonObjectView& document) const {
    constexpr std::int64_t gigabyte = 1073741824;
    const auto memory = sysctlInt64("hw.memsize");
    const std::int64_t total = memory ? *memory / gigabyte : 64;
    const auto modules = document.firstObject("SPMemoryDataType").objects("_items");
    // The last module stands for all.
    std::string type = "DDR4";
    std::string speed = "2667 MHz";
    std::string manufacturer = "Micron";
    std::string partNumber = missing;
    std::vector<Rows> cards;
    for (const JsonObjectView& module : modules) {
        type = text(module, "dimm_type", "DDR4");
        speed = text(module, "dimm_speed", "2667 MHz");
        manufacturer = text(module, "dimm_manufacturer");
        partNumber = text(module, "dimm_part_number");
        cards.push_back({
            {"Modul-Bank / Kanal", text(module, "_name", "Slot")},
            {"Kapazität", text(module, "dimm_size")},
            {"Typ & Takt", atSpeed(type, speed)},
            {"Hersteller", manufacturer},
            {"Teilenummer (Part #)", partNumber},
            {"Status", upperCased(text(module, "dimm_status", "ok"))},
        });
    }
    const auto count = static_cast<std::int64_t>(modules.size());
    return {
        .title = "Arbeitsspeicher (RAM)",
        .subtitle = number(total) + " GB " + atSpeed(type, speed) + " (" + manufacturer + ")",
        .icon = "memorychip.fill",
        .accentColorName = "green",
        .specs =
            {
                {"Gesamtkapazität", number(total) + " GB (" + number(count) + " × " +
                                        number(total / std::max<std::int64_t>(count, 1)) +
                                        " GB Dual-Channel)"},
                {"Speichertyp", type + " SO-DIMM (On-Board verlötet)"},
                {"Taktfrequenz (Speed)", speed + " (PC4-21300)"},
                {"Hersteller", manufacturer},
                {"Teilenummer (Part #)", partNumber},
                {"Speicher-Kanäle", "Dual-Channel (128-Bit Busbreite)"},
            },
        .subCards = std::move(cards),
    };
}

namespace {

std::string describeDisplay(const JsonObjectView& display) {
    const auto port = display.object("_spdisplays_displayport_device").value_or(JsonObjectView());
    const std::string bandwidth =
        QString::fromStdString(text(port, "spdisplays_displayport_current_bandwidth", "5.40 Gbps"))
            .trimmed()
            .toStdString();
    return text(display, "_name", "Retina Display") +
           " (Skaliert: " + text(display, "_spdisplays_resolution") +
           ", Puffer: " + text(display, "_spdisplays_pixels", "3072 x 1920") + ", DP " + bandwidth +
           ")";
}

std::string graphicsName(const JsonObjectView& gpu) {
    return text(gpu, "sppci_model", "_name", "GPU");
}

Rows graphicsCard(const JsonObjectView& gpu) {
    const std::string vendor = without("sppci_vendor_", text(gpu, "spdisplays_vendor"));
    const std::string width = text(gpu, "spdisplays_pcie_width", "Built-In System Bus");
    const std::string metal =
        without("spdisplays_", text(gpu, "spdisplays_mtlgpufamilysupport", "METAL 3"));
    const std::string bios =
        text(gpu, "spdisplays_vbios-version", "spdisplays_efi-version", missing);
    const std::string mux = text(gpu, "spdisplays_gmux-version");
    const auto displays = gpu.objects("spdisplays_ndrvs");
    Rows rows{
        {"GPU Modell", graphicsName(gpu)},
        {"Hersteller", upperCased(vendor)},
        {"VRAM Speicher",
         text(gpu, "spdisplays_vram", "spdisplays_vram_shared", "1536 MB (Shared)")},
        {"Bus / Anbindung", width.starts_with("x") ? "PCIe 3.0 " + width : "Integriert (CPU Bus)"},
        {"Device-ID / Revision",
         text(gpu, "spdisplays_device-id") + " (Rev. " + text(gpu, "spdisplays_revision-id") + ")"},
        {"Metal Support", upperCased(metal)},
    };
    if (bios != missing) {
        rows.emplace_back("VBIOS / OptionROM", bios);
    }
    if (mux != missing) {
        rows.emplace_back("Apple GMUX Version", mux);
    }
    if (!displays.empty()) {
        rows.emplace_back("Aktives Display", describeDisplay(displays.front()));
    }
    return rows;
}

} // namespace

HardwareSectionData SystemHardwareInspector::buildGPUSection(const JsonObjectView& document) const {
    std::string names;
    std::vector<Rows> cards;
    for (const JsonObjectView& gpu : document.objects("SPDisplaysDataType")) {
        names += cards.empty() ? "" : " + ";
        names += graphicsName(gpu);
        cards.push_back(graphicsCard(gpu));
    }
    return {
        .title = "Grafikkarten (Dual-GPU & Display)",
        .subtitle = cards.empty() ? "AMD Radeon Pro 5500M + Intel UHD Graphics 630" : names,
        .icon = "display.2",
        .accentColorName = "purple",
        .specs =
            {
                {"Grafik-Architektur", "Automatischer Dual-GPU-Wechsel (Apple GMUX 5.0.0)"},
                {"Dedizierte GPU (dGPU)", "AMD Radeon Pro 5500M (Navi 14, 7nm RDNA, 4 GB GDDR6)"},
                {"Integrierte GPU (iGPU)", "Intel UHD Graphics 630 (1536 MB Shared DDR4)"},
            },
        .subCards = std::move(cards),
    };
}

HardwareSectionData SystemHardwareInspector::buildSSDSection(const JsonObjectView& document) const {
    const JsonObjectView drive = document.firstObject("SPNVMeDataType").firstObject("_items");
    const std::string model = text(drive, "device_model", "APPLE SSD AP1024N");
    const std::string size = text(drive, "size", "1 TB");
    const std::string speed = text(drive, "spnvme_linkspeed", "8.0 GT/s");
    const std::string width = text(drive, "spnvme_linkwidth", "x4");
    std::vector<Rows> cards;
    for (const JsonObjectView& volume : drive.objects("volumes")) {
        cards.push_back({
            {"Partition / Volume",
             text(volume, "_name", "Volume") + " (" + text(volume, "bsd_name") + ")"},
            {"Dateisystem", text(volume, "file_system", "iocontent", "APFS")},
            {"Größe", text(volume, "size")},
            {"Freier Speicher", text(volume, "free_space", "APFS Container")},
        });
    }
    return {
        .title = "Festspeicher (NVMe SSD)",
        .subtitle = model + " · " + size + " PCIe " + width + " (" + speed + ")",
        .icon = "internaldrive.fill",
        .accentColorName = "cyan",
        .specs =
            {
                {"SSD Modell", model},
                {"Controller / Hersteller", "Apple T2 Security Chip NVMe Controller (Apple Inc.)"},
                {"Kapazität", size},
                {"PCIe Anbindung", "PCIe 3.0 " + width + " @ " + speed + " (~3,2 GB/s Bandbreite)"},
                {"Firmware-Revision", text(drive, "device_revision")},
                secret("Seriennummer", drive.string("device_serial")),
                {"S.M.A.R.T. Status", text(drive, "smart_status", "Verified")},
                {"TRIM-Unterstützung", text(drive, "spnvme_trim_support", "Yes")},
                {"BSD-Gerätename", text(drive, "bsd_name", "disk0")},
            },
        .subCards = std::move(cards),
    };
}

HardwareSectionData
SystemHardwareInspector::buildBatterySection(const JsonObjectView& document) const {
    constexpr double designCapacity = 8790; // mAh
    constexpr double wholePercent = 100;
    JsonObjectView battery;
    for (const JsonObjectView& item : document.objects("SPPowerDataType")) {
        if (item.string("_name") == "spbattery_information") {
            battery = item;
        }
    }
    const auto part = [&](const char* key) {
        return battery.object(key).value_or(JsonObjectView());
    };
    const JsonObjectView m = part("sppower_battery_model_info");
    const JsonObjectView h = part("sppower_battery_health_info");
    const JsonObjectView c = part("sppower_battery_charge_info");
    const std::string manufacturer =
        text(m, "sppower_battery_manufacturer", "SMP (Simplo Technology)");
    const std::string device = text(m, "sppower_battery_device_name", "bq40z451");
    const std::string cycles = number(h.integer("sppower_battery_cycle_count").value_or(0));
    const std::int64_t capacity = c.integer("sppower_battery_max_capacity").value_or(8892);
    const double health = std::round(static_cast<double>(capacity) / designCapacity * wholePercent);
    const std::string percent = formatWhole(std::min(health, wholePercent));
    const bool isCharging = c.string("sppower_battery_is_charging") == "TRUE";
    const std::string charging = !battery.object("sppower_battery_charge_info")
                                     ? "Nein"
                                     : (isCharging ? "Ja (Lädt)" : "Netzbetrieb / Voll geladen");
    return {
        .title = "Akku & Stromversorgung",
        .subtitle = manufacturer + " " + device + " · " + cycles + " Ladezyklen · " +
                    number(capacity) + " mAh (" + percent + "% Health)",
        .icon = "battery.100percent.bolt",
        .accentColorName = "mint",
        .specs =
            {
                {"Akku-Controller / Modell", device},
                {"Hersteller", manufacturer},
                {"Ladezyklen", cycles + " Zyklen (Apple Spezifikation: 1000)"},
                {"Zustand (Health)", text(h, "sppower_battery_health", "Gut") + " (~ " + percent +
                                         "% der 8790 mAh Design-Kapazität)"},
                {"Full Charge Capacity", number(capacity) + " mAh (100 Wh Klasse)"},
                {"Aktueller Ladestand",
                 number(c.integer("sppower_battery_state_of_charge").value_or(100)) + " % (" +
                     charging + ")"},
                {"Firmware-Version", text(m, "sppower_battery_firmware_version")},
                secret("Seriennummer", m.string("sppower_battery_serial_number")),
            },
        .subCards = {},
    };
}

} // namespace ventaro
