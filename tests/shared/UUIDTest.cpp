#include "UUID.h"

#include <gtest/gtest.h>

namespace ventaro {
namespace {

TEST(UUIDs, AreUniqueAndReadWhatTheyWrite) {
    const UUID id = UUID::random();
    EXPECT_NE(id, UUID::random());
    EXPECT_EQ(UUID::parse(id.text()), id);
    EXPECT_EQ(id.text()[14], '4') << "the version";
    EXPECT_EQ(UUID::parse("0123abcd-0123-4567-89ab-0123456789ef")->text(),
              "0123ABCD-0123-4567-89AB-0123456789EF");
    for (const char* text :
         {"", "0123abcd-0123-4567-89ab-0123456789e", "0123abcd00123-4567-89ab-0123456789ef",
          "0123abcg-0123-4567-89ab-0123456789ef"}) {
        EXPECT_FALSE(UUID::parse(text)) << text;
    }
}

} // namespace
} // namespace ventaro
