#include "SpinnerWheel.h"

#include <QPainter>

namespace ventaro {

void SpinnerWheel::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        update();
        Q_EMIT colorChanged();
    }
}

void SpinnerWheel::paint(QPainter* painter) {
    constexpr qreal strokePerSide = 2.6 / 24;
    constexpr qreal faint = 0.22;
    constexpr int quarter = 90 * 16; // Qt counts in sixteenths of a degree
    const qreal stroke = width() * strokePerSide;
    const QRectF ring = boundingRect().adjusted(stroke, stroke, -stroke, -stroke);
    QColor ringColor = color_;
    ringColor.setAlphaF(static_cast<float>(faint * color_.alphaF()));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(ringColor, stroke));
    painter->drawEllipse(ring);
    painter->setPen(QPen(color_, stroke, Qt::SolidLine, Qt::RoundCap));
    painter->drawArc(ring, quarter, -quarter);
}

} // namespace ventaro
