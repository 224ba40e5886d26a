#include "Symbol.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdlib>
#include <iostream>

namespace {

using namespace ventaro;

constexpr int columns = 4;
constexpr int cellWidth = 250;
constexpr int cellHeight = 64;
constexpr int margin = 16;
constexpr qreal scale = 2;

struct Look {
    QColor ground;
    QColor ink;
};

/// Each symbol large, in the size that most views use, and with its name.
void paintSymbols(QPainter& painter, const QStringList& names, const Look& look, int top) {
    constexpr int large = 40;
    constexpr int usual = 16;
    constexpr int gap = 10;
    for (qsizetype index = 0; index < names.size(); ++index) {
        const QRect cell(margin + static_cast<int>(index % columns) * cellWidth,
                         top + static_cast<int>(index / columns) * cellHeight, cellWidth,
                         cellHeight);
        const int middle = cell.center().y();
        int x = cell.left();
        for (const int size : {large, usual}) {
            paintSymbol(painter, names[index], look.ink,
                        QRectF(x, middle - size / 2.0, size, size));
            x += size + gap;
        }
        painter.setPen(look.ink);
        painter.drawText(QRect(x, cell.top(), cell.right() - x, cell.height()),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWrapAnywhere, names[index]);
    }
}

QImage iconSheet(const QStringList& names) {
    const Look looks[] = {{QColor(0xFFFFFF), QColor(0x1B1C20)},
                          {QColor(0x1E2024), QColor(0xF1F2F4)}};
    const int rows = (static_cast<int>(names.size()) + columns - 1) / columns;
    const QSize half(columns * cellWidth + 2 * margin, rows * cellHeight + 2 * margin);
    QImage sheet(QSize(half.width(), 2 * half.height()) * scale, QImage::Format_RGB32);
    sheet.setDevicePixelRatio(scale);
    QPainter painter(&sheet);
    int top = 0;
    for (const Look& look : looks) {
        painter.fillRect(QRect(QPoint(0, top), half), look.ground);
        paintSymbols(painter, names, look, top + margin);
        top += half.height();
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
