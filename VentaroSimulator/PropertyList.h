#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ventaro {

/// What launchd reads of a job's property list.
struct LaunchdJobDescription {
    std::string label;
    std::vector<std::string> programArguments; ///< the first is the program, a path of the machine
    bool runAtLoad = false;
    bool keepAlive = false;
    std::string standardOutPath; ///< a path of the machine; empty: nowhere
    std::string standardErrorPath;
};

/// Reads an XML property list. Throws std::runtime_error naming what is wrong.
LaunchdJobDescription readLaunchdPropertyList(const std::filesystem::path& file);

} // namespace ventaro
