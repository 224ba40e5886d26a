#include "SystemProfiler.h"

#include "EmbeddedFiles.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace ventaro {

int systemProfiler(const std::vector<std::string>& arguments) {
    constexpr int indentation = 2;
    const auto profile = nlohmann::ordered_json::parse(EmbeddedFiles::profile);
    auto document = nlohmann::ordered_json::object();
    for (const std::string& argument : arguments) {
        if (const auto found = profile.find(argument); found != profile.end()) {
            document[argument] = *found;
        }
    }
    if (std::find(arguments.begin(), arguments.end(), "-json") == arguments.end()) {
        std::fputs("system_profiler: only -json is known on this machine\n", stderr);
        return EXIT_FAILURE;
    }
    std::puts(document.dump(indentation).c_str());
    return EXIT_SUCCESS;
}

} // namespace ventaro
