#include "CompetingPrograms.h"

#include <algorithm>
#include <string_view>

namespace ventaro {

namespace {

/// The texts looked for are plain letters, so that lowering those is enough.
char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool contains(std::string_view text, std::string_view wanted) {
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(),
                       [](char left, char right) { return lowered(left) == right; }) != text.end();
}

} // namespace

bool isCompetingFanControl(const RunningApplication& application) {
    return contains(application.localizedName, "macs fan control") ||
           contains(application.bundleIdentifier, "macsfancontrol") ||
           contains(application.bundleIdentifier, "tgpro");
}

} // namespace ventaro
