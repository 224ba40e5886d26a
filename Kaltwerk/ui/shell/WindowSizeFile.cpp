#include "WindowSizeFile.h"

#include "AtomicFile.h"

#include <sys/stat.h>

#include <QDebug>
#include <QFile>
#include <QRegularExpression>
#include <string>

namespace ventaro {

std::optional<QSize> WindowSizeFile::read() const {
    constexpr qint64 longest = 16;
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    static const QRegularExpression form(QStringLiteral(R"(\A([0-9]+)x([0-9]+)\n\z)"));
    const auto parts = form.match(QString::fromLatin1(file.read(longest)));
    const QSize size(parts.captured(1).toInt(), parts.captured(2).toInt()); // 0 beyond an int
    return size.isEmpty() ? std::nullopt : std::optional(size);
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
