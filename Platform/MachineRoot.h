#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace ventaro {

/// The folder below which the machine's absolute paths live: "/" on a real machine, a folder of its
/// own for each simulated MacBook. Immutable.
class MachineRoot {
public:
    /// The environment variable that names the folder.
    static constexpr const char* environmentVariable = "VENTARO_MACHINE_ROOT";

    /// The real machine's root, "/".
    MachineRoot();
    /// `folder` must be an absolute path; throws std::invalid_argument, with an English sentence,
    /// if not.
    explicit MachineRoot(const std::filesystem::path& folder);

    /// Where `absolutePath`, a path of the machine ("/var/run/..."), really lies. Throws
    /// std::invalid_argument for a path that is not absolute or that contains "..".
    std::filesystem::path resolve(std::string_view absolutePath) const;

    /// `text`, which may contain resolved paths, with these as the machine knows them.
    std::string withoutFolder(std::string text) const;

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

} // namespace ventaro
