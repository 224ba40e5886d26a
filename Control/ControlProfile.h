#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ventaro {

/// What decides about the fans' speeds.
enum class ControlProfile { systemAuto, smartCurve, manual, silent, balanced, turbo };

constexpr std::array<ControlProfile, 6> allControlProfiles{
    ControlProfile::systemAuto, ControlProfile::smartCurve, ControlProfile::manual,
    ControlProfile::silent,     ControlProfile::balanced,   ControlProfile::turbo,
};

/// The German title, which is also the profile's identity.
std::string_view rawValue(ControlProfile profile);
/// The name of the case, as in `smartCurve`.
std::string_view caseName(ControlProfile profile);
/// The second line of the profile's card, German.
std::string_view subtitle(ControlProfile profile);
/// A symbol's name.
std::string_view iconName(ControlProfile profile);
/// The share of each fan's range that a preset asks for, 0 to 1; no value for the other profiles.
std::optional<double> presetFraction(ControlProfile profile);
/// By case name or title, exact; no value for any other text.
std::optional<ControlProfile> controlProfileFromName(std::string_view name);

/// Which temperature drives the curve.
enum class CurveSensorSource { maxCpuGpu, cpuPackage, gpuDie };

constexpr std::array<CurveSensorSource, 3> allCurveSensorSources{
    CurveSensorSource::maxCpuGpu, CurveSensorSource::cpuPackage, CurveSensorSource::gpuDie};

/// The German label, which is also what is stored.
std::string_view rawValue(CurveSensorSource source);
/// The name of the case, as in `cpuPackage`.
std::string_view caseName(CurveSensorSource source);
/// Exact and case-sensitive; no value for any other text.
std::optional<CurveSensorSource> curveSensorSourceFromRawValue(std::string_view raw);
std::optional<CurveSensorSource> curveSensorSourceFromCaseName(std::string_view name);

/// The temperature of `source`, in °C.
double temperatureOf(CurveSensorSource source, double cpu, double gpu);

} // namespace ventaro
