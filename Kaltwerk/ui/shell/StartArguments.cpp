#include "StartArguments.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace ventaro {

namespace {

constexpr const char* help =
    "Usage: Ventaro [--minimized]\n"
    "Shows temperatures and fans of a MacBook Pro and sets the fans' speeds.\n\n"
    "  --minimized, --background  start in the status item alone, without a window\n"
    "  --help                     print this and end\n"
    "  --version                  print the version and end\n\n"
    "A second start brings the window of the running program to the front. The options of Qt,\n"
    "such as \"-platform\", are understood too; other arguments are ignored.\n";

} // namespace

std::string textInsteadOfStart(int argc, const char* const* argv, const std::string& version) {
    const std::vector<std::string_view> given(argv + std::min(argc, 1), argv + argc);
    const auto isGiven = [&given](std::string_view argument) {
        return std::find(given.begin(), given.end(), argument) != given.end();
    };
    if (isGiven("--help")) {
        return help;
    }
    return isGiven("--version") ? "Ventaro " + version + '\n' : std::string();
}

QStringList unknownArguments(const QStringList& arguments) {
    QStringList unknown = arguments.mid(1);
    unknown.removeAll(QStringLiteral("--minimized"));
    unknown.removeAll(QStringLiteral("--background"));
    return unknown;
}

} // namespace ventaro
