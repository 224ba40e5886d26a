#include "GradientTile.h"

#include <QLinearGradient>
#include <QPainter>

namespace ventaro {

GradientTile::GradientTile(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &GradientTile::changed, this, [this] { update(); });
}

void GradientTile::paint(QPainter* painter) {
    const QRectF area = boundingRect();
    QLinearGradient gradient(area.topLeft(), area.bottomRight());
    gradient.setColorAt(0, from_);
    gradient.setColorAt(1, to_);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(gradient);
    painter->drawRoundedRect(area, radius_, radius_);
}

} // namespace ventaro
