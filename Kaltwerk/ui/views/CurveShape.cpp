#include "CurveShape.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>

namespace ventaro {

CurveShape::CurveShape(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &CurveShape::changed, this, [this] { update(); });
}

void CurveShape::paint(QPainter* painter) {
    constexpr qreal lineWidth = 2.5;
    constexpr qreal wholeFan = 100; // percent
    if (points_.isEmpty() || domain_.isEmpty()) {
        return;
    }
    const QRectF plot = boundingRect().marginsRemoved({margin, margin, margin, margin});
    const auto place = [&](const QPointF& value) {
        return plot.topLeft() +
               QPointF((value.x() - domain_.left()) / domain_.width() * plot.width(),
                       (domain_.bottom() - value.y()) / domain_.height() * plot.height());
    };
    QPolygonF line;
    for (const QPointF& point : points_) {
        line.append(place(point));
    }
    QPolygonF area = line;
    area.append({line.last().x(), plot.bottom()});
    area.append({line.first().x(), plot.bottom()});

    QColor clear = areaColor_;
    clear.setAlpha(0);
    QLinearGradient gradient(0, place({0, wholeFan}).y(), 0, place({0, 0}).y());
    gradient.setColorAt(0, areaColor_);
    gradient.setColorAt(1, clear);

    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(gradient);
    painter->drawPolygon(area);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(lineColor_, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(line);
}

} // namespace ventaro
