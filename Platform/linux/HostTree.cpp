#include "HostTree.h"

#include <string.h>

#include <algorithm>
#include <charconv>
#include <fstream>

namespace ventaro {

namespace fs = std::filesystem;

fs::path HostTree::resolve(const fs::path& path) const { return root_ / path.relative_path(); }

std::optional<std::string> HostTree::bytes(const fs::path& path) const {
    constexpr std::size_t largest = 4 << 20U;
    constexpr std::size_t step = 65536;
    std::ifstream file(resolve(path), std::ios::binary);
    std::string bytes;
    std::error_code error;
    if (!file || fs::is_directory(resolve(path), error)) {
        return std::nullopt;
    }
    while (file && bytes.size() < largest) {
        const std::size_t size = bytes.size();
        bytes.resize(size + step);
        file.read(bytes.data() + size, static_cast<std::streamsize>(step));
        bytes.resize(size + static_cast<std::size_t>(file.gcount()));
    }
    return bytes;
}

std::optional<std::string> HostTree::text(const fs::path& path) const {
    constexpr std::string_view blanks(" \t\r\n\0", 5);
    const auto all = bytes(path);
    if (!all) {
        return std::nullopt;
    }
    const std::size_t begin = all->find_first_not_of(blanks);
    const std::size_t end = all->find_last_not_of(blanks);
    return begin == std::string::npos ? std::nullopt
                                      : std::optional(all->substr(begin, end - begin + 1));
}

std::optional<std::int64_t> HostTree::number(const fs::path& path) const {
    const auto digits = text(path);
    return digits ? parseInteger(*digits) : std::nullopt;
}

std::vector<fs::path> HostTree::entries(const fs::path& folder, std::string_view prefix) const {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator entry(resolve(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if (name.native().starts_with(prefix)) {
            found.push_back(folder / name);
        }
    }
    std::sort(found.begin(), found.end(), [](const fs::path& left, const fs::path& right) {
        return ::strverscmp(left.c_str(), right.c_str()) < 0;
    });
    return found;
}

std::optional<std::string> HostTree::linkTargetName(const fs::path& path) const {
    std::error_code error;
    const fs::path target = fs::read_symlink(resolve(path), error);
    return error ? std::nullopt : std::optional(target.filename().string());
}

std::optional<std::int64_t> parseInteger(std::string_view text, int base) {
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return result.ec == std::errc{} && result.ptr == text.data() + text.size()
               ? std::optional(value)
               : std::nullopt;
}

} // namespace ventaro
