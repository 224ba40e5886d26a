#include "Faults.h"

#include "KeyTable.h"
#include "SMCService.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace ventaro {
namespace {

using testing::StartsWith;
using testing::ThrowsMessage;

const KeyFaults* find(const Faults& faults, const char* key) {
    return faults.find(SMCService::fourCharCode(key));
}

TEST(FaultLines, AreReadStrictly) {
    Faults faults;
    faults.addAll("# comment\n\n\tTC0P  late 1500 \r\nTC0P size 2\n\"FS! \" read-fails\n"
                  "F0Tg type \"flt \"\n#KEY info-fails 84\nservice gone\n");
    EXPECT_EQ(find(faults, "TC0P")->late, std::chrono::milliseconds(1500));
    EXPECT_EQ(find(faults, "TC0P")->size, 2U) << "faults of a key add up";
    EXPECT_EQ(find(faults, "FS! ")->readResult, 0x85);
    EXPECT_NE(find(faults, "#KEY"), nullptr);
    EXPECT_TRUE(faults.isServiceGone());
    for (const char* line :
         {"TC0P", "TC0P explodes", "TC0 read-fails", "FS! read-fails", "TC0P read-fails 1FF",
          "TC0P read-fails 8", "TC0P late", "TC0P late -5", "TC0P late 5x", "TC0P size 999",
          "TC0P type ui8", "TC0P value 0", "TC0P value xy", "TC0P read-fails 85 1", "\"TC0P late 1",
          "service", "service broken"}) {
        EXPECT_THROW(Faults().add(line), std::invalid_argument) << line;
    }
    Faults untouched;
    EXPECT_THAT([&] { untouched.addAll("TC0P late 5\nTC0P nonsense\n"); },
                ThrowsMessage<std::invalid_argument>(StartsWith("line 2: ")));
    EXPECT_EQ(find(untouched, "TC0P"), nullptr);
}

TEST(KeyTables, BadRowsNameTheirLine) {
    for (const char* row : {"F0Ac flt  85   4 0000", "F0Ac flt  8x   4 00000000", "F0Ac flt  85",
                            "F0Ac flt  85   4 0000000", "F0Ac flt  85   4 !", "F0Ac flt  85 -04 00",
                            "FNum ui8  80   1 03"}) { // which occurs twice
        EXPECT_THAT([&] { KeyTable("FNum ui8  80   1 02\n# comment\n" + std::string(row)); },
                    ThrowsMessage<std::runtime_error>(StartsWith("key table, line 3: ")))
            << row;
    }
}

} // namespace
} // namespace ventaro
