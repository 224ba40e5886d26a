#pragma once

#include <sys/types.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ventaro {

/// A file or folder that could not be made. `what()` is a German sentence naming it and the reason.
class FileError : public std::runtime_error {
public:
    FileError(const std::filesystem::path& path, int errorNumber);
    int errorNumber() const { return errorNumber_; } ///< errno

private:
    int errorNumber_;
};

/// Puts `text` at `path` with exactly `mode`, whatever the umask: whoever opens the path sees the
/// old file or the whole new one. Never follows a symbolic link at `path`. Not synchronised with
/// the disk. Throws FileError; then the old file is untouched.
void writeFileAtomically(const std::filesystem::path& path, std::string_view text, mode_t mode);

/// Makes the folder and those above it, as far as they are missing. Throws FileError.
void createFolders(const std::filesystem::path& folder);

} // namespace ventaro
