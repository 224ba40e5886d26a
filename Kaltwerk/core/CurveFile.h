#pragma once

#include "FanCurve.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

namespace ventaro {

/// Why a file is no curve; `what()` is a German sentence.
class CurveFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The temperatures that a point may have, °C.
struct CurveLimits {
    double coolest;
    double hottest;
};

/// Writes the points as JSON, in one piece or not at all. Throws FileError, and CurveFileError for
/// points that could not be read again.
void writeCurveFile(const std::filesystem::path& file, const std::vector<CurvePoint>& points,
                    const CurveLimits& limits);

/// The points of a file that `writeCurveFile` or a person has written, with new identities: exactly
/// four, within `limits` and 0 to 100 percent, in whole numbers. Throws CurveFileError.
std::vector<CurvePoint> readCurveFile(const std::filesystem::path& file, const CurveLimits& limits);

} // namespace ventaro
