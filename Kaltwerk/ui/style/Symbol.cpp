#include "Symbol.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QSvgRenderer>
#include <algorithm>

namespace ventaro {

namespace {

/// The drawing of a symbol; empty if there is none.
QByteArray drawingOf(const QString& name) {
    static QHash<QString, QByteArray> drawings;
    auto known = drawings.find(name);
    if (known == drawings.end()) {
        QFile file(QStringLiteral(":/ventaro/icons/%1.svg").arg(name));
        if (!file.open(QIODevice::ReadOnly)) {
            qWarning().noquote() << "There is no symbol" << name;
        }
        known = drawings.insert(name, file.isOpen() ? file.readAll() : QByteArray());
    }
    return known.value();
}

} // namespace

void paintSymbol(QPainter& painter, const QString& name, const QColor& color, const QRectF& area) {
    QByteArray drawing = drawingOf(name);
    if (drawing.isEmpty()) {
        return;
    }
    // The renderer does not know the colour of its surroundings.
    drawing.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(drawing);
    const qreal side = std::min(area.width(), area.height());
    QRectF square(0, 0, side, side);
    square.moveCenter(area.center());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(painter.opacity() * color.alphaF());
    renderer.render(&painter, square);
    painter.restore();
}

} // namespace ventaro
