#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace ventaro {

/// Draws the symbol `name` ("fan.fill") in `color` into the square that fits `area`. Nothing is
/// drawn for a name that there is no symbol of; the log says so. Main thread only.
void paintSymbol(QPainter& painter, const QString& name, const QColor& color, const QRectF& area);

} // namespace ventaro
