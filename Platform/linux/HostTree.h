#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventaro {

/// The part of a host's file tree in which the kernel describes the machine, below a root: "/", or
/// a folder with a recorded tree. What cannot be read has no value.
class HostTree {
public:
    explicit HostTree(std::filesystem::path root = "/") : root_(std::move(root)) {}

    /// Where `path` ("/sys/...") really lies.
    std::filesystem::path resolve(const std::filesystem::path& path) const;
    /// All bytes of the file, up to 4 MiB.
    std::optional<std::string> bytes(const std::filesystem::path& path) const;
    /// The file's text without white space at its ends; no value if nothing is left.
    std::optional<std::string> text(const std::filesystem::path& path) const;
    /// The file's text as a decimal number.
    std::optional<std::int64_t> number(const std::filesystem::path& path) const;
    /// The entries of a folder whose names begin with `prefix`, as paths like `folder`, in the
    /// order of their names, in which p2 stands before p10.
    std::vector<std::filesystem::path> entries(const std::filesystem::path& folder,
                                               std::string_view prefix = {}) const;
    /// The name that the target of a symbolic link ends in.
    std::optional<std::string> linkTargetName(const std::filesystem::path& path) const;

private:
    const std::filesystem::path root_;
};

/// A whole decimal number; no value for anything else.
std::optional<std::int64_t> parseInteger(std::string_view text, int base = 10);

} // namespace ventaro
