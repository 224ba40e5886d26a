#pragma once

#include <QSize>
#include <filesystem>
#include <optional>

namespace ventaro {

/// Keeps a window's size, in points, from one run to the next.
class WindowSizeFile {
public:
    explicit WindowSizeFile(std::filesystem::path path) : path_(std::move(path)) {}
    /// No value if nothing usable has been kept.
    std::optional<QSize> read() const;
    /// Never throws; the log says so if the size cannot be kept.
    void write(QSize size) const;

private:
    std::filesystem::path path_;
};

/// `size`, or what of it fits between `minimum` and `available`; the minimum where both do not fit.
QSize fittedSize(QSize size, QSize minimum, QSize available);

} // namespace ventaro
