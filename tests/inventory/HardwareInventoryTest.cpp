#include "BlankHost.h"
#include "TestSupport.h"

#include <gmock/gmock.h>

#include <random>
#include <set>

namespace ventaro {
namespace {

using Rows = HardwareSectionData::Rows;
using testing::HasSubstr;

std::vector<HardwareSectionData> sectionsOf(const std::string& document) {
    BlankHost host;
    host.document = document;
    return SystemHardwareInspector(host).loadAllHardwareSections();
}

/// Every label with what each of the lists says about it: "Kapazität: M1 | M2". What all say stands
/// once, and nothing where a list has no such row.
std::string sideBySide(const std::vector<Rows>& lists) {
    constexpr std::size_t longest = 95;
    std::vector<std::string> labels;
    std::map<std::string, std::vector<std::string>> table;
    for (std::size_t list = 0; list < lists.size(); ++list) {
        for (const HardwareSpecItem& row : lists[list]) {
            auto& values = table[row.label];
            if (values.empty()) {
                labels.push_back(row.label);
                values.resize(lists.size());
            }
            values[list] += " " + row.value;
        }
    }
    std::string text;
    for (const std::string& label : labels) {
        auto& values = table[label];
        values.resize(std::set(values.begin(), values.end()).size() == 1 ? 1 : values.size());
        std::string line = label + ":" + values[0];
        std::string wrapped = line;
        for (std::size_t list = 1; list < values.size(); ++list) {
            line += " |" + values[list];
            wrapped += "\n    |" + values[list];
        }
        text += (line.size() <= longest ? line : wrapped) + "\n";
    }
    return text;
}

/// Its heading, then its rows.
Rows wholeOf(const HardwareSectionData& section) {
    Rows rows{{"#", section.title + ", " + section.icon + ", " + section.accentColorName},
              {"Untertitel", section.subtitle}};
    rows.insert(rows.end(), section.specs.begin(), section.specs.end());
    return rows;
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

// What a machine that tells nothing shows, the one of 2019, beside what one shows that tells all.
// The second one's cards follow their section's rows.
TEST(HardwareInventory, EveryMemberHasItsPlaceAndItsDefault) {
    BlankHost blank;
    const auto defaults = SystemHardwareInspector(blank).loadAllHardwareSections();
    EXPECT_EQ(blank.command, "/usr/sbin/system_profiler SPHardwareDataType SPMemoryDataType "
                             "SPDisplaysDataType SPNVMeDataType SPPowerDataType -json");
    BlankHost host;
    host.document = fullDocument;
    host.bytes["machdep.cpu.brand_string"] = std::string("  P1 \n\0rest", 11);
    std::string kernel = "machdep.cpu.vendor string P2";
    for (const char* value :
         {"machdep.cpu.family int32 23", "machdep.cpu.model int64 24",
          "machdep.cpu.stepping int64 25", "machdep.cpu.core_count int32 6",
          "machdep.cpu.thread_count int32 12", "hw.cpufrequency_max int64 2625000000",
          "hw.l1icachesize int64 65535", "hw.l1dcachesize int64 49152",
          "hw.l2cachesize int64 524288", "hw.l3cachesize int64 12582912",
          "machdep.cpu.microcode_version int64 56833", "hw.memsize int64 34359738368"}) {
        kernel += std::string("\n") + value;
    }
    host.kernel.emplace(kernel);
    const auto sections = SystemHardwareInspector(host).loadAllHardwareSections();
    std::string text;
    for (std::size_t at = 0; at < defaults.size(); ++at) {
        EXPECT_TRUE(defaults[at].subCards.empty());
        text += sideBySide({wholeOf(defaults[at]), wholeOf(sections.at(at))}) +
                sideBySide(sections.at(at).subCards);
    }
    EXPECT_EQ(text, R"(#: System & Logic Board, laptopcomputer, blue
Untertitel: MacBook Pro (MacBookPro16,1) | H1 (H2)
Modellname: MacBook Pro | H1
Modell-Identifikator: MacBookPro16,1 | H2
Hersteller: Apple Inc.
Seriennummer: – | H3
Boot-ROM / iBridge: – | H4
OS Loader: – | H5
macOS Version: Version 0
Hardware-UUID: – | H6
#: Prozessor (CPU), cpu.fill, orange
Untertitel: Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz | P1
Modell: Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz | P1
Hersteller: GenuineIntel (Intel Coffee Lake-H Refresh, 14nm++)
    | P2 (Intel Coffee Lake-H Refresh, 14nm++)
Kerne / Threads: 8 Physische Kerne / 16 Threads (Hyper-Threading)
    | 6 Physische Kerne / 12 Threads (Hyper-Threading)
Basis-Taktfrequenz: 2.30 GHz | 2.62 GHz
Max. Turbo-Takt: Bis zu 4,80 GHz (Turbo Boost 2.0) | Dynamischer Turbo Boost
L1 Cache (pro Kern): 32 KB Instruction + 32 KB Data | 63 KB Instruction + 48 KB Data
L2 Cache (pro Kern): 256 KB | 512 KB
L3 Smart Cache: 16 MB Shared | 12 MB Shared
Architektur & Stepping: x86_64 · Family 6, Model 158, Stepping 13
    | x86_64 · Family 23, Model 24, Stepping 25
Microcode-Version: 0x0 | 0xDE01
TDP (Design): 45 W (cTDP-down 35 W)
#: Arbeitsspeicher (RAM), memorychip.fill, green
Untertitel: 64 GB DDR4 @ 2667 MHz (Micron) | 32 GB DDR4 @ 2667 MHz (N5)
Gesamtkapazität: 64 GB (0 × 64 GB Dual-Channel) | 32 GB (2 × 16 GB Dual-Channel)
Speichertyp: DDR4 SO-DIMM (On-Board verlötet)
Taktfrequenz (Speed): 2667 MHz (PC4-21300)
Hersteller: Micron | N5
Teilenummer (Part #): –
Speicher-Kanäle: Dual-Channel (128-Bit Busbreite)
Modul-Bank / Kanal: M1 | Slot
Kapazität: M2 | –
Typ & Takt: M3 @ M4 | DDR4 @ 2667 MHz
Hersteller: M5 | N5
Teilenummer (Part #): M6 | –
Status: M7 ÜBEL | OK
#: Grafikkarten (Dual-GPU & Display), display.2, purple
Untertitel: AMD Radeon Pro 5500M + Intel UHD Graphics 630 | D1 + F1 + GPU
Grafik-Architektur: Automatischer Dual-GPU-Wechsel (Apple GMUX 5.0.0)
Dedizierte GPU (dGPU): AMD Radeon Pro 5500M (Navi 14, 7nm RDNA, 4 GB GDDR6)
Integrierte GPU (iGPU): Intel UHD Graphics 630 (1536 MB Shared DDR4)
GPU Modell: D1 | F1 | GPU
Hersteller: AMD | – | –
VRAM Speicher: D3 | F3 | 1536 MB (Shared)
Bus / Anbindung: PCIe 3.0 x8 | Integriert (CPU Bus) | Integriert (CPU Bus)
Device-ID / Revision: D5 (Rev. D6) | – (Rev. –) | – (Rev. –)
Metal Support: METAL3 | METAL 3 | METAL 3
VBIOS / OptionROM: D8 | F8 |
Apple GMUX Version: D9 | |
Aktives Display: E1 (Skaliert: E2, Puffer: E3, DP E4)
    | Retina Display (Skaliert: –, Puffer: 3072 x 1920, DP 5.40 Gbps)
    |
#: Festspeicher (NVMe SSD), internaldrive.fill, cyan
Untertitel: APPLE SSD AP1024N · 1 TB PCIe x4 (8.0 GT/s) | S1 · S2 PCIe S6 (S5)
SSD Modell: APPLE SSD AP1024N | S1
Controller / Hersteller: Apple T2 Security Chip NVMe Controller (Apple Inc.)
Kapazität: 1 TB | S2
PCIe Anbindung: PCIe 3.0 x4 @ 8.0 GT/s (~3,2 GB/s Bandbreite)
    | PCIe 3.0 S6 @ S5 (~3,2 GB/s Bandbreite)
Firmware-Revision: – | S4
Seriennummer: – | S3
S.M.A.R.T. Status: Verified | S7
TRIM-Unterstützung: Yes | S8
BSD-Gerätename: disk0 | S9
Partition / Volume: V1 (V2) | Volume (–)
Dateisystem: V3 | W3
Größe: V4 | –
Freier Speicher: V5 | APFS Container
#: Akku & Stromversorgung, battery.100percent.bolt, mint
Untertitel: SMP (Simplo Technology) bq40z451 · 0 Ladezyklen · 8892 mAh (100% Health)
    | B1 B2 · 58 Ladezyklen · 7000 mAh (80% Health)
Akku-Controller / Modell: bq40z451 | B2
Hersteller: SMP (Simplo Technology) | B1
Ladezyklen: 0 Zyklen (Apple Spezifikation: 1000) | 58 Zyklen (Apple Spezifikation: 1000)
Zustand (Health): Gut (~ 100% der 8790 mAh Design-Kapazität)
    | B5 (~ 80% der 8790 mAh Design-Kapazität)
Full Charge Capacity: 8892 mAh (100 Wh Klasse) | 7000 mAh (100 Wh Klasse)
Aktueller Ladestand: 100 % (Nein) | 68 % (Ja (Lädt))
Firmware-Version: – | B4
Seriennummer: – | B3
)");
    const auto again = SystemHardwareInspector(blank).loadAllHardwareSections();
    EXPECT_NE(again[0].id, defaults[0].id);
    EXPECT_NE(again[0].specs[0].id, defaults[0].specs[0].id);
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
        std::string text;
        for (const HardwareSectionData& section : sectionsOf(document)) {
            text += sideBySide({wholeOf(section)}) + sideBySide(section.subCards);
        }
        EXPECT_THAT(text, HasSubstr(line)) << document;
    }
}

TEST(HardwareInventory, KernelValuesAreTextsAndIntegers) {
    BlankHost host;
    const SystemHardwareInspector inspector(host);
    const std::tuple<std::string, std::optional<std::string>, std::optional<std::int64_t>> rows[] =
        {
            {"", std::nullopt, 0},
            {std::string("\0", 1), "", 0},
            {"1", "1", '1'},
            {std::string("A\0\0\1", 4), "A", 0x1000041},
            {"\xf9" + std::string(7, '\xff'), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD",
             -7},
            {std::string(" \u00a0a b\t\0c", 9), "a b", std::nullopt}, // nine bytes do not fit
        };
    for (const auto& [bytes, text, number] : rows) {
        host.bytes["value"] = bytes;
        EXPECT_EQ(inspector.sysctlString("value"), text);
        EXPECT_EQ(inspector.sysctlInt64("value"), number);
    }
    EXPECT_EQ(inspector.sysctlString("none"), std::nullopt);
    EXPECT_EQ(inspector.sysctlInt64("none"), std::nullopt);
}

TEST(HardwareInventory, AnyDocumentGivesSixSections) {
    std::mt19937 random(7);
    for (int mutant = 0; mutant < 12000; ++mutant) {
        const std::string document = damaged(fullDocument, random);
        ASSERT_EQ(sectionsOf(document).size(), 6U) << document;
    }
    constexpr std::size_t huge = 50000000;
    for (const std::string& absurd :
         {std::string(), std::string("no JSON"), std::string(huge, '['),
          "{\"SPPowerDataType\":" + std::string(huge, '['),
          R"({"SPHardwareDataType":[{"serial_number":")" + std::string(huge, 'x') + "\"}]}"}) {
        EXPECT_EQ(sectionsOf(absurd).size(), 6U);
    }
    std::string processors = "{\"SPDisplaysDataType\":[{}";
    for (int count = 0; count < 1000000; ++count) {
        processors += count % 2 == 0 ? ",{}" : ",0";
    }
    EXPECT_LE(sectionsOf(processors + "]}")[3].subCards.size(), 256U);
}

} // namespace
} // namespace ventaro
