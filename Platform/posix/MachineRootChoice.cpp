#include "MachineRootChoice.h"

#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

namespace ventaro {

MachineRootChoice chooseMachineRoot(const char* environmentValue, bool privileged) {
    if (environmentValue == nullptr || *environmentValue == '\0') {
        return {};
    }
    MachineRoot root{std::filesystem::path(environmentValue)};
    std::error_code error;
    if (!std::filesystem::is_directory(root.folder(), error)) {
        throw std::invalid_argument("the machine root \"" + root.folder().string() +
                                    "\" is no existing folder");
    }
    struct stat status {};
    if (privileged && (::stat(root.folder().c_str(), &status) != 0 ||
                       !mayTrustMachineRoot(::geteuid(), status.st_uid, status.st_mode))) {
        return {std::nullopt, "\"" + root.folder().string() + "\" does not belong to root alone"};
    }
    return {std::move(root), {}};
}

} // namespace ventaro
