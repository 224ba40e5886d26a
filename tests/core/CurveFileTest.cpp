#include "CurveFile.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace ventaro {
namespace {

TEST(CurveFile, IsOnlyWrittenIfItCanBeReadAgain) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "curve.json";
    const CurveLimits limits{35, 95};
    const std::vector<CurvePoint> unreadable[] = {
        {},
        {{45, 0}, {60, 30}, {72, 60}, {96, 100}},
        {{45, 0}, {60, 30.5}, {72, 60}, {85, 100}},
        {{45, 0}, {60, std::nan("")}, {72, 60}, {85, 100}},
    };
    for (const auto& points : unreadable) {
        EXPECT_THROW(writeCurveFile(file, points, limits), CurveFileError);
        EXPECT_FALSE(std::filesystem::exists(file));
    }
    writeCurveFile(file, defaultCurve(), limits);
    EXPECT_EQ(readCurveFile(file, limits)[3].speedPercent, 100);
}

} // namespace
} // namespace ventaro
