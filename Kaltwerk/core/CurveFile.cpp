#include "CurveFile.h"

#include "AtomicFile.h"
#include "JsonObject.h"
#include "NumberFormat.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <string>

namespace ventaro {

namespace {

constexpr std::size_t largestFile = 65536; // bytes, far more than four points take

std::string readText(const std::filesystem::path& file) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        throw CurveFileError("Die Datei lässt sich nicht lesen.");
    }
    std::ifstream stream(file, std::ios::binary);
    std::string text(largestFile + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (stream.bad() || !stream.is_open()) {
        throw CurveFileError("Die Datei lässt sich nicht lesen.");
    }
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (text.size() > largestFile) {
        throw CurveFileError("Die Datei ist zu groß für eine Temperatur-Kurve.");
    }
    return text;
}

void check(double value, double least, double most, const std::string& what) {
    if (!(value >= least && value <= most) || value != std::round(value)) {
        throw CurveFileError(what + " muss eine ganze Zahl von " + formatWhole(least) + " bis " +
                             formatWhole(most) + " sein.");
    }
}

void check(const std::vector<CurvePoint>& points, const CurveLimits& limits) {
    for (const CurvePoint& point : points) {
        check(point.temperature, limits.coolest, limits.hottest, "Jede Temperatur (°C)");
        check(point.speedPercent, 0, 100, "Jede Lüfterleistung (%)");
    }
    if (points.size() != storedCurveSize) {
        throw CurveFileError("Eine Temperatur-Kurve hat genau vier Stützpunkte.");
    }
}

} // namespace

void writeCurveFile(const std::filesystem::path& file, const std::vector<CurvePoint>& points,
                    const CurveLimits& limits) {
    constexpr mode_t mode = 0644;
    check(points, limits);
    std::string text = "[";
    for (const CurvePoint& point : points) {
        text += text.size() > 1 ? ",\n " : "";
        text += JsonObjectWriter()
                    .number("temperature", point.temperature)
                    .number("speedPercent", point.speedPercent)
                    .text();
    }
    writeFileAtomically(file, text + "]\n", mode);
}

std::vector<CurvePoint> readCurveFile(const std::filesystem::path& file,
                                      const CurveLimits& limits) {
    const std::string text = readText(file);
    std::vector<CurvePoint> points;
    try {
        for (const JsonObjectReader& object : readJsonObjects(text)) {
            points.emplace_back(object.number("temperature"), object.number("speedPercent"));
        }
    } catch (const DecodingError& error) {
        throw CurveFileError("Die Datei enthält keine Temperatur-Kurve. " +
                             (error.reason() == DecodingError::Reason::malformed
                                  ? "Sie müsste eine Liste von Stützpunkten sein."
                                  : std::string(error.what())));
    }
    check(points, limits);
    return points;
}

} // namespace ventaro
