#include "BlankHost.h"

#include <gtest/gtest.h>

#include <random>

namespace ventaro {
namespace {

std::string flat(const HardwareSectionData::Rows& rows, const std::string& indent) {
    std::string text;
    for (const HardwareSpecItem& row : rows) {
        text += indent + row.label + ": " + row.value + "\n";
    }
    return text;
}

std::string flat(const std::vector<HardwareSectionData>& sections) {
    std::string text;
    for (const HardwareSectionData& section : sections) {
        text += "# " + section.title + " | " + section.subtitle + " | " + section.icon + " | " +
                section.accentColorName + "\n" + flat(section.specs, "");
        for (const auto& card : section.subCards) {
            text += "-\n" + flat(card, "  ");
        }
    }
    return text;
}

TEST(HardwareInventory, AMachineThatTellsNothingIsTheOneOf2019) {
    BlankHost host;
    const auto sections = SystemHardwareInspector(host).loadAllHardwareSections();
    EXPECT_EQ(host.command, "/usr/sbin/system_profiler SPHardwareDataType SPMemoryDataType "
                            "SPDisplaysDataType SPNVMeDataType SPPowerDataType -json");
    EXPECT_EQ(flat(sections),
              R"(# System & Logic Board | MacBook Pro (MacBookPro16,1) | laptopcomputer | blue
Modellname: MacBook Pro
Modell-Identifikator: MacBookPro16,1
Hersteller: Apple Inc.
Seriennummer: –
Boot-ROM / iBridge: –
OS Loader: –
macOS Version: Version 0
Hardware-UUID: –
# Prozessor (CPU) | Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz | cpu.fill | orange
Modell: Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz
Hersteller: GenuineIntel (Intel Coffee Lake-H Refresh, 14nm++)
Kerne / Threads: 8 Physische Kerne / 16 Threads (Hyper-Threading)
Basis-Taktfrequenz: 2.30 GHz
Max. Turbo-Takt: Bis zu 4,80 GHz (Turbo Boost 2.0)
L1 Cache (pro Kern): 32 KB Instruction + 32 KB Data
L2 Cache (pro Kern): 256 KB
L3 Smart Cache: 16 MB Shared
Architektur & Stepping: x86_64 · Family 6, Model 158, Stepping 13
Microcode-Version: 0x0
TDP (Design): 45 W (cTDP-down 35 W)
# Arbeitsspeicher (RAM) | 64 GB DDR4 @ 2667 MHz (Micron) | memorychip.fill | green
Gesamtkapazität: 64 GB (0 × 64 GB Dual-Channel)
Speichertyp: DDR4 SO-DIMM (On-Board verlötet)
Taktfrequenz (Speed): 2667 MHz (PC4-21300)
Hersteller: Micron
Teilenummer (Part #): –
Speicher-Kanäle: Dual-Channel (128-Bit Busbreite)
# Grafikkarten (Dual-GPU & Display) | AMD Radeon Pro 5500M + Intel UHD Graphics 630 | display.2 | purple
Grafik-Architektur: Automatischer Dual-GPU-Wechsel (Apple GMUX 5.0.0)
Dedizierte GPU (dGPU): AMD Radeon Pro 5500M (Navi 14, 7nm RDNA, 4 GB GDDR6)
Integrierte GPU (iGPU): Intel UHD Graphics 630 (1536 MB Shared DDR4)
# Festspeicher (NVMe SSD) | APPLE SSD AP1024N · 1 TB PCIe x4 (8.0 GT/s) | internaldrive.fill | cyan
SSD Modell: APPLE SSD AP1024N
Controller / Hersteller: Apple T2 Security Chip NVMe Controller (Apple Inc.)
Kapazität: 1 TB
PCIe Anbindung: PCIe 3.0 x4 @ 8.0 GT/s (~3,2 GB/s Bandbreite)
Firmware-Revision: –
Seriennummer: –
S.M.A.R.T. Status: Verified
TRIM-Unterstützung: Yes
BSD-Gerätename: disk0
# Akku & Stromversorgung | SMP (Simplo Technology) bq40z451 · 0 Ladezyklen · 8892 mAh (100% Health) | battery.100percent.bolt | mint
Akku-Controller / Modell: bq40z451
Hersteller: SMP (Simplo Technology)
Ladezyklen: 0 Zyklen (Apple Spezifikation: 1000)
Zustand (Health): Gut (~ 100% der 8790 mAh Design-Kapazität)
Full Charge Capacity: 8892 mAh (100 Wh Klasse)
Aktueller Ladestand: 100 % (Nein)
Firmware-Version: –
Seriennummer: –
)");
    const auto again = SystemHardwareInspector(host).loadAllHardwareSections();
    EXPECT_EQ(flat(again), flat(sections));
    EXPECT_NE(again[0].id, sections[0].id);
    EXPECT_NE(again[0].specs[0].id, sections[0].specs[0].id);
}

/// A document in which every member has a value of its own.
const std::string fullDocument = R"({
"SPHardwareDataType":[{"machine_name":"H1","machine_model":"H2","serial_number":"H3",
  "boot_rom_version":"H4","os_loader_version":"H5","platform_UUID":"H6"},{"machine_name":"no"}],
"SPMemoryDataType":[{"_items":[
  {"_name":"M1","dimm_size":"M2","dimm_type":"M3","dimm_speed":"M4","dimm_manufacturer":"M5",
   "dimm_part_number":"M6","dimm_status":"m7 übel"},
  {"dimm_manufacturer":"N5"}]}],
"SPDisplaysDataType":[
  {"sppci_model":"D1","_name":"no","spdisplays_vendor":"sppci_vendor_amd","spdisplays_vram":"D3",
   "spdisplays_vram_shared":"no","spdisplays_pcie_width":"x8","spdisplays_device-id":"D5",
   "spdisplays_revision-id":"D6","spdisplays_mtlgpufamilysupport":"spdisplays_metal3",
   "spdisplays_vbios-version":"D8","spdisplays_efi-version":"no","spdisplays_gmux-version":"D9",
   "spdisplays_ndrvs":[{"_name":"E1","_spdisplays_resolution":"E2","_spdisplays_pixels":"E3",
     "_spdisplays_displayport_device":{"spdisplays_displayport_current_bandwidth":" E4 "}}]},
  {"_name":"F1","spdisplays_vram_shared":"F3","spdisplays_efi-version":"F8",
   "spdisplays_ndrvs":[{}]},
  {}],
"SPNVMeDataType":[{"_items":[{"device_model":"S1","size":"S2","device_serial":"S3",
  "device_revision":"S4","spnvme_linkspeed":"S5","spnvme_linkwidth":"S6","smart_status":"S7",
  "spnvme_trim_support":"S8","bsd_name":"S9",
  "volumes":[{"_name":"V1","bsd_name":"V2","file_system":"V3","iocontent":"no","size":"V4",
    "free_space":"V5"},{"iocontent":"W3"}]}]}],
"SPPowerDataType":[{"_name":"spbattery_information"},{"_name":"spbattery_information",
  "sppower_battery_model_info":{"sppower_battery_manufacturer":"B1",
    "sppower_battery_device_name":"B2","sppower_battery_serial_number":"B3",
    "sppower_battery_firmware_version":"B4"},
  "sppower_battery_health_info":{"sppower_battery_cycle_count":58,"sppower_battery_health":"B5"},
  "sppower_battery_charge_info":{"sppower_battery_max_capacity":7000,
    "sppower_battery_state_of_charge":68,"sppower_battery_is_charging":"TRUE"}},
  {"_name":"sppower_ac_charger_information"}]})";

TEST(HardwareInventory, EveryMemberHasItsPlace) {
    BlankHost host;
    host.bytes["machdep.cpu.brand_string"] = std::string("  P1 \n\0rest", 11);
    host.kernel.emplace(R"(machdep.cpu.vendor string P2
machdep.cpu.family int32 23
machdep.cpu.model int64 24
machdep.cpu.stepping int64 25
machdep.cpu.core_count int32 6
machdep.cpu.thread_count int32 12
hw.cpufrequency_max int64 2625000000
hw.l1icachesize int64 65535
hw.l1dcachesize int64 49152
hw.l2cachesize int64 524288
hw.l3cachesize int64 12582912
machdep.cpu.microcode_version int64 56833
hw.memsize int64 34359738368)");
    host.document = fullDocument;
    EXPECT_EQ(flat(SystemHardwareInspector(host).loadAllHardwareSections()),
              R"(# System & Logic Board | H1 (H2) | laptopcomputer | blue
Modellname: H1
Modell-Identifikator: H2
Hersteller: Apple Inc.
Seriennummer: H3
Boot-ROM / iBridge: H4
OS Loader: H5
macOS Version: Version 0
Hardware-UUID: H6
# Prozessor (CPU) | P1 | cpu.fill | orange
Modell: P1
Hersteller: P2 (Intel Coffee Lake-H Refresh, 14nm++)
Kerne / Threads: 6 Physische Kerne / 12 Threads (Hyper-Threading)
Basis-Taktfrequenz: 2.62 GHz
Max. Turbo-Takt: Dynamischer Turbo Boost
L1 Cache (pro Kern): 63 KB Instruction + 48 KB Data
L2 Cache (pro Kern): 512 KB
L3 Smart Cache: 12 MB Shared
Architektur & Stepping: x86_64 · Family 23, Model 24, Stepping 25
Microcode-Version: 0xDE01
TDP (Design): 45 W (cTDP-down 35 W)
# Arbeitsspeicher (RAM) | 32 GB DDR4 @ 2667 MHz (N5) | memorychip.fill | green
Gesamtkapazität: 32 GB (2 × 16 GB Dual-Channel)
Speichertyp: DDR4 SO-DIMM (On-Board verlötet)
Taktfrequenz (Speed): 2667 MHz (PC4-21300)
Hersteller: N5
Teilenummer (Part #): –
Speicher-Kanäle: Dual-Channel (128-Bit Busbreite)
-
  Modul-Bank / Kanal: M1
  Kapazität: M2
  Typ & Takt: M3 @ M4
  Hersteller: M5
  Teilenummer (Part #): M6
  Status: M7 ÜBEL
-
  Modul-Bank / Kanal: Slot
  Kapazität: –
  Typ & Takt: DDR4 @ 2667 MHz
  Hersteller: N5
  Teilenummer (Part #): –
  Status: OK
# Grafikkarten (Dual-GPU & Display) | D1 + F1 + GPU | display.2 | purple
Grafik-Architektur: Automatischer Dual-GPU-Wechsel (Apple GMUX 5.0.0)
Dedizierte GPU (dGPU): AMD Radeon Pro 5500M (Navi 14, 7nm RDNA, 4 GB GDDR6)
Integrierte GPU (iGPU): Intel UHD Graphics 630 (1536 MB Shared DDR4)
-
  GPU Modell: D1
  Hersteller: AMD
  VRAM Speicher: D3
  Bus / Anbindung: PCIe 3.0 x8
  Device-ID / Revision: D5 (Rev. D6)
  Metal Support: METAL3
  VBIOS / OptionROM: D8
  Apple GMUX Version: D9
  Aktives Display: E1 (Skaliert: E2, Puffer: E3, DP E4)
-
  GPU Modell: F1
  Hersteller: –
  VRAM Speicher: F3
  Bus / Anbindung: Integriert (CPU Bus)
  Device-ID / Revision: – (Rev. –)
  Metal Support: METAL 3
  VBIOS / OptionROM: F8
  Aktives Display: Retina Display (Skaliert: –, Puffer: 3072 x 1920, DP 5.40 Gbps)
-
  GPU Modell: GPU
  Hersteller: –
  VRAM Speicher: 1536 MB (Shared)
  Bus / Anbindung: Integriert (CPU Bus)
  Device-ID / Revision: – (Rev. –)
  Metal Support: METAL 3
# Festspeicher (NVMe SSD) | S1 · S2 PCIe S6 (S5) | internaldrive.fill | cyan
SSD Modell: S1
Controller / Hersteller: Apple T2 Security Chip NVMe Controller (Apple Inc.)
Kapazität: S2
PCIe Anbindung: PCIe 3.0 S6 @ S5 (~3,2 GB/s Bandbreite)
Firmware-Revision: S4
Seriennummer: S3
S.M.A.R.T. Status: S7
TRIM-Unterstützung: S8
BSD-Gerätename: S9
-
  Partition / Volume: V1 (V2)
  Dateisystem: V3
  Größe: V4
  Freier Speicher: V5
-
  Partition / Volume: Volume (–)
  Dateisystem: W3
  Größe: –
  Freier Speicher: APFS Container
# Akku & Stromversorgung | B1 B2 · 58 Ladezyklen · 7000 mAh (80% Health) | battery.100percent.bolt | mint
Akku-Controller / Modell: B2
Hersteller: B1
Ladezyklen: 58 Zyklen (Apple Spezifikation: 1000)
Zustand (Health): B5 (~ 80% der 8790 mAh Design-Kapazität)
Full Charge Capacity: 7000 mAh (100 Wh Klasse)
Aktueller Ladestand: 68 % (Ja (Lädt))
Firmware-Version: B4
Seriennummer: B3
)");
}

TEST(HardwareInventory, ValuesCountWithTheirJsonTypesOnly) {
    const auto battery = [](const std::string& charge) {
        return R"({"SPPowerDataType":[{"_name":"spbattery_information",)"
               R"("sppower_battery_charge_info":)" +
               charge + "}]}";
    };
    const std::pair<std::string, const char*> rows[] = {
        {R"({"SPHardwareDataType":[{"machine_name":7}]})", "Modellname: MacBook Pro\n"},
        {R"({"SPHardwareDataType":[{"machine_name":""}]})", "Modellname: \n"},
        {R"({"SPHardwareDataType":[{"machine_name":"a","machine_name":"b"}]})",
         "Modellname: MacBook Pro\n"},
        {R"({"SPHardwareDataType":[7,{"machine_name":"b"}]})", "Modellname: MacBook Pro\n"},
        {R"({"SPHardwareDataType":{"machine_name":"b"}})", "Modellname: MacBook Pro\n"},
        {R"([{"SPHardwareDataType":[{"machine_name":"b"}]}])", "Modellname: MacBook Pro\n"},
        {"{\"SPHardwareDataType\":[{\"machine_name\":\"\xff\"}]}", "Modellname: MacBook Pro\n"},
        {R"({"SPMemoryDataType":[{"_items":[null,{"_name":"A"},[{}],{"_name":"B"}]}]})",
         "(2 × 32 GB"},
        {R"({"SPDisplaysDataType":[{"spdisplays_pcie_width":"16"}]})", "Integriert (CPU Bus)"},
        {R"({"SPDisplaysDataType":[{"spdisplays_ndrvs":[3,{"_name":"X"}]}]})", "X (Skaliert"},
        {battery("{}"), "100 % (Netzbetrieb / Voll geladen)"},
        {battery(R"({"sppower_battery_is_charging":true})"), "Netzbetrieb / Voll geladen"},
        {battery(R"({"sppower_battery_is_charging":"FALSE"})"), "Netzbetrieb / Voll geladen"},
        {battery("[]"), "100 % (Nein)"},
        {battery(R"({"sppower_battery_max_capacity":9000})"), "9000 mAh (100% Health)"},
        {battery(R"({"sppower_battery_max_capacity":7000.0})"), "8892 mAh (100% Health)"},
        {battery(R"({"sppower_battery_max_capacity":true})"), "8892 mAh"},
        {battery(R"({"sppower_battery_max_capacity":18446744073709551615})"), "8892 mAh"},
        {battery(R"({"sppower_battery_max_capacity":-9223372036854775808})"),
         "-9223372036854775808 mAh"},
    };
    for (const auto& [document, line] : rows) {
        BlankHost host;
        host.document = document;
        const std::string text = flat(SystemHardwareInspector(host).loadAllHardwareSections());
        EXPECT_NE(text.find(line), std::string::npos) << document << "\n" << text;
    }
}

TEST(HardwareInventory, KernelValuesAreTextsAndIntegers) {
    BlankHost host;
    const SystemHardwareInspector inspector(host);
    EXPECT_EQ(inspector.sysctlString("none"), std::nullopt);
    EXPECT_EQ(inspector.sysctlInt64("none"), std::nullopt);
    const std::pair<std::string, std::optional<std::string>> texts[] = {
        {"", std::nullopt},
        {std::string("\0", 1), ""},
        {std::string(" \u00a0a b\t\0c", 9), "a b"},
        {"x\xffy", "x\uFFFDy"},
    };
    for (const auto& [bytes, text] : texts) {
        host.bytes["text"] = bytes;
        EXPECT_EQ(inspector.sysctlString("text"), text);
    }
    const std::pair<std::string, std::optional<std::int64_t>> numbers[] = {
        {std::string("\7\0\0\0", 4), 7},
        {"\xf9" + std::string(7, '\xff'), -7},
        {"123456789", std::nullopt}, // nine bytes do not fit
    };
    for (const auto& [bytes, number] : numbers) {
        host.bytes["number"] = bytes;
        EXPECT_EQ(inspector.sysctlInt64("number"), number);
    }
}

TEST(HardwareInventory, AnyDocumentGivesSixSections) {
    std::mt19937 random(7);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    const std::string pieces[] = {
        "{",   "}",  "[",  "]",           ",",    ":",  "null", "true", "-1",   "1e999",
        "7.5", "\"", "\\", "\"_items\":", "[[[[", "{}", "\xc3", "[{}]", "\"x\""};
    constexpr int mutants = 12000;
    for (int mutant = 0; mutant < mutants; ++mutant) {
        std::string document = fullDocument;
        for (std::size_t change = below(4) + 1; change > 0; --change) {
            const std::size_t at = below(document.size());
            const std::string& piece = pieces[below(std::size(pieces))];
            switch (below(4)) {
            case 0: // the value of a member becomes another one
                if (const std::size_t colon = document.find(':', at); colon != std::string::npos) {
                    const std::size_t end = document.find_first_of(",}", colon);
                    document.replace(colon + 1, end - colon - 1, piece);
                }
                break;
            case 1: // a member is lost
                if (const std::size_t comma = document.find(',', at); comma != std::string::npos) {
                    document.erase(comma, document.find_first_of(",}", comma + 1) - comma);
                }
                break;
            case 2:
                document.insert(at, piece);
                break;
            default:
                document.erase(at, below(20));
            }
        }
        BlankHost host;
        host.document = document;
        ASSERT_EQ(SystemHardwareInspector(host).loadAllHardwareSections().size(), 6U) << document;
    }
    constexpr std::size_t huge = 50000000;
    const std::string absurd[] = {
        "",
        "no JSON",
        std::string(huge, '['),
        "{\"SPPowerDataType\":" + std::string(huge, '['),
        R"({"SPHardwareDataType":[{"serial_number":")" + std::string(huge, 'x') + "\"}]}",
    };
    for (const std::string& document : absurd) {
        BlankHost host;
        host.document = document;
        EXPECT_EQ(SystemHardwareInspector(host).loadAllHardwareSections().size(), 6U);
    }
    std::string processors = "{\"SPDisplaysDataType\":[{}";
    for (int count = 0; count < 1000000; ++count) {
        processors += count % 2 == 0 ? ",{}" : ",0";
    }
    BlankHost host;
    host.document = processors + "]}";
    EXPECT_LE(SystemHardwareInspector(host).loadAllHardwareSections()[3].subCards.size(), 256U);
}

} // namespace
} // namespace ventaro
