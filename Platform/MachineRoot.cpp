#include "MachineRoot.h"

#include <stdexcept>

namespace ventaro {

MachineRoot::MachineRoot() : folder_("/") {}

MachineRoot::MachineRoot(const std::filesystem::path& folder) : folder_(folder.lexically_normal()) {
    if (!folder.is_absolute()) {
        throw std::invalid_argument("the machine root \"" + folder.string() +
                                    "\" is not an absolute path");
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

} // namespace ventaro
