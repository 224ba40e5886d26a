#include "SavedSettings.h"

#include "JsonObject.h"

#include <string>
#include <string_view>

namespace ventaro {

namespace {

std::string settingsKey(const char* suffix) { return std::string("com.ventaro.pref.") + suffix; }

template<typename T>
void load(const DefaultsStore& store, const char* suffix, T& field) {
    if (const auto value = store.value<T>(settingsKey(suffix))) {
        field = *value;
    }
}

std::string_view asText(const DefaultsData& data) {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

} // namespace

SavedSettings loadedSettings(const DefaultsStore& store, SavedSettings settings) {
    load(store, "startMinimized", settings.startMinimized);
    load(store, "manualRPMFan0", settings.manualRPMFan0);
    load(store, "manualRPMFan1", settings.manualRPMFan1);
    load(store, "linkFans", settings.linkFans);
    load(store, "resetOnQuit", settings.resetOnQuit);
    const auto source = store.value<std::string>(settingsKey("curveSensorSource"));
    if (const auto known = source ? curveSensorSourceFromRawValue(*source) : std::nullopt) {
        settings.curveSensorSource = *known;
    }
    if (const auto data = store.value<DefaultsData>(settingsKey("curvePoints"))) {
        try {
            auto points = decodeCurvePoints(asText(*data));
            if (points.size() == storedCurveSize) {
                settings.curvePoints = std::move(points);
            }
        } catch (const DecodingError&) {
            // The next save replaces it.
        }
    }
    return settings;
}

void saveSettings(DefaultsStore& store, const SavedSettings& settings) {
    std::vector<DefaultsStore::Entry> entries{
        {settingsKey("manualRPMFan0"), settings.manualRPMFan0},
        {settingsKey("manualRPMFan1"), settings.manualRPMFan1},
        {settingsKey("linkFans"), settings.linkFans},
        {settingsKey("resetOnQuit"), settings.resetOnQuit},
        {settingsKey("startMinimized"), settings.startMinimized},
        {settingsKey("curveSensorSource"), std::string(rawValue(settings.curveSensorSource))},
    };
    try {
        const std::string points = encodeJson(settings.curvePoints);
        entries.emplace_back(settingsKey("curvePoints"),
                             DefaultsData(points.begin(), points.end()));
    } catch (const EncodingError&) {
        // The other settings are kept all the same.
    }
    store.store(entries);
}

} // namespace ventaro
