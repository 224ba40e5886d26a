#include "Symbol.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdlib>
#include <iostream>

namespace {

using namespace ventaro;

/// Each symbol large, in the size that most views use, and with its name; light and dark.
QImage iconSheet(const QStringList& names) {
    constexpr int columns = 4;
    constexpr int margin = 16;
    constexpr qreal scale = 2;
    constexpr QSize cellSize(250, 64);
    const std::pair<QColor, QColor> looks[] = {{0xFFFFFF, 0x1B1C20}, {0x1E2024, 0xF1F2F4}};
    const int rows = (static_cast<int>(names.size()) + columns - 1) / columns;
    QRect half(0, 0, columns * cellSize.width() + 2 * margin,
               rows * cellSize.height() + 2 * margin);
    QImage sheet(QSize(half.width(), 2 * half.height()) * scale, QImage::Format_RGB32);
    sheet.setDevicePixelRatio(scale);
    QPainter painter(&sheet);
    for (const auto& [ground, ink] : looks) {
        painter.fillRect(half, ground);
        painter.setPen(ink);
        for (int index = 0; index < names.size(); ++index) {
            const QPoint place(index % columns * cellSize.width(),
                               index / columns * cellSize.height());
            const QRect cell(half.topLeft() + QPoint(margin, margin) + place, cellSize);
            const int middle = cell.center().y();
            paintSymbol(painter, names[index], ink, QRectF(cell.x(), middle - 20, 40, 40));
            paintSymbol(painter, names[index], ink, QRectF(cell.x() + 50, middle - 8, 16, 16));
            painter.drawText(cell.adjusted(76, 0, 0, 0),
                             Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWrapAnywhere, names[index]);
        }
        half.moveTop(half.height());
    }
    return sheet;
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QFont font(QStringLiteral("Inter"));
    constexpr int textSize = 11;
    font.setPixelSize(textSize);
    QGuiApplication::setFont(font);
    QStringList names = QDir(QStringLiteral(":/ventaro/icons")).entryList({"*.svg"}, QDir::Files);
    names.replaceInStrings(QStringLiteral(".svg"), QString());
    if (argc != 2 || names.isEmpty() || !iconSheet(names).save(QString::fromLocal8Bit(argv[1]))) {
        std::cerr << "Usage: icon_sheet PICTURE\n";
        return EXIT_FAILURE;
    }
    std::cout << names.size() << " symbols in " << argv[1] << '\n';
    return EXIT_SUCCESS;
}
