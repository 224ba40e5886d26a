#include "WindowSizeFile.h"

#include "AtomicFile.h"

#include <sys/stat.h>

#include <QDebug>
#include <charconv>
#include <fstream>
#include <string>

namespace ventaro {

std::optional<QSize> WindowSizeFile::read() const {
    constexpr std::size_t longest = 16;
    std::string text(longest, '\0');
    std::ifstream file(path_);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    const char* end = text.data() + file.gcount();
    int width = 0;
    int height = 0;
    auto part = std::from_chars(text.data(), end, width);
    if (part.ec != std::errc{} || part.ptr == end || *part.ptr != 'x') {
        return std::nullopt;
    }
    part = std::from_chars(part.ptr + 1, end, height);
    const bool isWhole = part.ec == std::errc{} && part.ptr + 1 == end && *part.ptr == '\n';
    return isWhole && width > 0 && height > 0 ? std::optional(QSize(width, height)) : std::nullopt;
}

void WindowSizeFile::write(QSize size) const {
    try {
        createFolders(path_.parent_path());
        writeFileAtomically(
            path_, std::to_string(size.width()) + 'x' + std::to_string(size.height()) + '\n',
            S_IRUSR | S_IWUSR);
    } catch (const std::exception& error) {
        qWarning("The window's size is not kept: %s", error.what());
    }
}

QSize fittedSize(QSize size, QSize minimum, QSize available) {
    return size.boundedTo(available).expandedTo(minimum);
}

} // namespace ventaro
