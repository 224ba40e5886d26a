#include "Faults.h"

#include "KeyTable.h"
#include "SMCService.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace ventaro {
namespace {

TEST(FaultLines, AreReadStrictly) {
    Faults faults;
    faults.addAll("# comment\n\n\tTC0P  late 1500 \r\nTC0P size 2\n\"FS! \" read-fails\n"
                  "F0Tg type \"flt \"\n#KEY info-fails 84\nservice gone\n");
    const KeyFaults& tc0p = *faults.find(SMCService::fourCharCode("TC0P"));
    EXPECT_EQ(tc0p.late, std::chrono::milliseconds(1500));
    EXPECT_EQ(tc0p.size, 2U) << "faults of a key add up";
    EXPECT_EQ(faults.find(SMCService::fourCharCode("FS! "))->readResult, 0x85);
    EXPECT_NE(faults.find(SMCService::fourCharCode("#KEY")), nullptr);
    EXPECT_TRUE(faults.isServiceGone());

    for (const char* line :
         {"TC0P", "TC0P explodes", "TC0 read-fails", "FS! read-fails", "TC0P read-fails 1FF",
          "TC0P read-fails 8", "TC0P late", "TC0P late -5", "TC0P late 5x", "TC0P size 999",
          "TC0P type ui8", "TC0P value 0", "TC0P value xy", "TC0P late 1 2", "\"TC0P late 1",
          "service", "service broken"}) {
        Faults other;
        EXPECT_THROW(other.add(line), std::invalid_argument) << line;
    }
    Faults untouched;
    try {
        untouched.addAll("TC0P late 5\nTC0P nonsense\n");
        ADD_FAILURE();
    } catch (const std::invalid_argument& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("line 2: "));
    }
    EXPECT_EQ(untouched.find(SMCService::fourCharCode("TC0P")), nullptr);
}

TEST(KeyTables, BadRowsNameTheirLine) {
    for (const char* row :
         {"F0Ac flt  85   4 0000", "F0Ac flt  8x   4 00000000", "F0Ac flt  85",
          "F0Ac flt  85   4 0000000", "F0Ac flt  85   4 !", "F0Ac flt  85 -04 00"}) {
        try {
            const KeyTable table("# comment\n" + std::string(row) + "\n");
            ADD_FAILURE() << row;
        } catch (const std::runtime_error& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with("key table, line 2: ")) << row;
        }
    }
    EXPECT_THROW(KeyTable("FNum ui8  80   1 02\nFNum ui8  80   1 02\n"), std::runtime_error);
}

} // namespace
} // namespace ventaro
