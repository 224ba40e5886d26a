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
const std::string fullDocument = testData("full_document.json");

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
    EXPECT_EQ(text, testData("sections.txt"));
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
    for (int mutant = 0; mutant < 4000; ++mutant) {
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
