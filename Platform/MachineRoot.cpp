#include "MachineRoot.h"

#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

namespace ventaro {

MachineRoot::MachineRoot() : folder_("/") {}

MachineRoot::MachineRoot(const std::filesystem::path& folder) : folder_(folder.lexically_normal()) {
    std::error_code error;
    if (!folder.is_absolute() || !std::filesystem::is_directory(folder, error)) {
        throw std::invalid_argument("the machine root \"" + folder.string() +
                                    "\" is not the absolute path of an existing folder");
    }
}

std::filesystem::path MachineRoot::resolve(std::string_view absolutePath) const {
    const std::filesystem::path path(absolutePath);
    if (!path.is_absolute()) {
        throw std::invalid_argument("\"" + path.string() + "\" is not an absolute path");
    }
    for (const auto& component : path) {
        if (component == "..") {
            throw std::invalid_argument("\"" + path.string() + "\" leads out of the machine");
        }
    }
    return folder_ / path.relative_path();
}

std::string MachineRoot::withoutFolder(std::string text) const {
    const std::string folder = (folder_ / "").string();
    for (std::size_t place = 0; (place = text.find(folder, place)) != std::string::npos; ++place) {
        text.replace(place, folder.size(), "/");
    }
    return text;
}

MachineRootChoice chooseMachineRoot(const char* environmentValue, bool privileged) {
    if (environmentValue == nullptr || *environmentValue == '\0') {
        return {};
    }
    MachineRoot root{std::filesystem::path(environmentValue)};
    struct stat status {};
    if (privileged && (::stat(root.folder().c_str(), &status) != 0 ||
                       !mayTrustMachineRoot(::geteuid(), status.st_uid, status.st_mode))) {
        return {std::nullopt, "\"" + root.folder().string() + "\" does not belong to root alone"};
    }
    return {std::move(root), {}};
}

} // namespace ventaro
