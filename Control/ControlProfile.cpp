#include "ControlProfile.h"

#include <algorithm>

namespace ventaro {

namespace {

struct ProfileRow {
    std::string_view caseName;
    std::string_view title;
    std::string_view iconName;
    std::string_view subtitle;
    std::optional<double> presetFraction;
};

// In the order of the cases.
constexpr std::array<ProfileRow, allControlProfiles.size()> profiles{{
    {"systemAuto", "System-Automatik", "apple.logo", "Standard macOS SMC-Steuerung", {}},
    {"smartCurve",
     "Temperatur-Kurve",
     "chart.xyaxis.line",
     "Dynamisch nach CPU/GPU-Temperatur",
     {}},
    {"manual", "Manuell", "slider.horizontal.3", "Individuelle RPM pro Lüfter", {}},
    {"silent", "Leise", "speaker.wave.1.fill", "Minimale Drehzahl (~20%)", 0.15},
    {"balanced", "Ausgewogen", "scale.3d", "Mittlere Kühlung (~50%)", 0.5},
    {"turbo", "Max / Turbo", "tornado", "Maximale Kühlleistung (100%)", 1.0},
}};

struct SourceRow {
    std::string_view caseName;
    std::string_view label;
};

constexpr std::array<SourceRow, allCurveSensorSources.size()> sources{{
    {"maxCpuGpu", "Max(CPU, Radeon GPU)"},
    {"cpuPackage", "CPU Package (TCXC)"},
    {"gpuDie", "AMD Radeon GPU (TGDD)"},
}};

/// The first case that `matches`; no value if none does.
template<typename Cases, typename Matches>
std::optional<typename Cases::value_type> findCase(const Cases& cases, Matches matches) {
    const auto found = std::find_if(cases.begin(), cases.end(), matches);
    return found == cases.end() ? std::nullopt : std::optional(*found);
}

const ProfileRow& row(ControlProfile profile) {
    return profiles[static_cast<std::size_t>(profile)];
}

const SourceRow& row(CurveSensorSource source) { return sources[static_cast<std::size_t>(source)]; }

} // namespace

std::string_view rawValue(ControlProfile profile) { return row(profile).title; }
std::string_view caseName(ControlProfile profile) { return row(profile).caseName; }
std::string_view subtitle(ControlProfile profile) { return row(profile).subtitle; }
std::string_view iconName(ControlProfile profile) { return row(profile).iconName; }

std::optional<double> presetFraction(ControlProfile profile) { return row(profile).presetFraction; }

std::optional<ControlProfile> controlProfileFromName(std::string_view name) {
    return findCase(allControlProfiles, [name](auto profile) {
        return name == caseName(profile) || name == rawValue(profile);
    });
}

std::string_view rawValue(CurveSensorSource source) { return row(source).label; }
std::string_view caseName(CurveSensorSource source) { return row(source).caseName; }

std::optional<CurveSensorSource> curveSensorSourceFromRawValue(std::string_view raw) {
    return findCase(allCurveSensorSources, [raw](auto source) { return raw == rawValue(source); });
}

std::optional<CurveSensorSource> curveSensorSourceFromCaseName(std::string_view name) {
    return findCase(allCurveSensorSources,
                    [name](auto source) { return name == caseName(source); });
}

double temperatureOf(CurveSensorSource source, double cpu, double gpu) {
    switch (source) {
    case CurveSensorSource::maxCpuGpu:
        return std::max(cpu, gpu);
    case CurveSensorSource::cpuPackage:
        return cpu;
    case CurveSensorSource::gpuDie:
        return gpu;
    }
    return cpu;
}

} // namespace ventaro
