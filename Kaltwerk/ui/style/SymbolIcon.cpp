#include "SymbolIcon.h"

#include "Symbol.h"

namespace ventaro {

SymbolIcon::SymbolIcon(QQuickItem* parent) : QQuickPaintedItem(parent) {
    constexpr qreal usualSize = 16;
    setImplicitSize(usualSize, usualSize);
}

void SymbolIcon::setName(const QString& name) {
    if (name_ != name) {
        name_ = name;
        update();
        Q_EMIT nameChanged();
    }
}

void SymbolIcon::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        update();
        Q_EMIT colorChanged();
    }
}

void SymbolIcon::setSize(qreal size) {
    if (size != implicitWidth()) {
        setImplicitSize(size, size);
        Q_EMIT sizeChanged();
    }
}

void SymbolIcon::paint(QPainter* painter) {
    if (!name_.isEmpty()) {
        paintSymbol(*painter, name_, color_, boundingRect());
    }
}

} // namespace ventaro
