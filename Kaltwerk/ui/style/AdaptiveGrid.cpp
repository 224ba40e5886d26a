#include "AdaptiveGrid.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

int adaptiveColumns(qreal width, qreal minimum, qreal spacing, int count) {
    const int fit =
        std::max(static_cast<int>(std::floor((width + spacing) / (minimum + spacing))), 1);
    const int rows = std::max((count + fit - 1) / fit, 1);
    return std::max((count + rows - 1) / rows, 1);
}

void AdaptiveGrid::setMinimumCellWidth(qreal width) {
    if (minimumCellWidth_ != width) {
        minimumCellWidth_ = width;
        polish();
        Q_EMIT minimumCellWidthChanged();
    }
}

void AdaptiveGrid::setSpacing(qreal spacing) {
    if (spacing_ != spacing) {
        spacing_ = spacing;
        polish();
        Q_EMIT spacingChanged();
    }
}

void AdaptiveGrid::componentComplete() {
    QQuickItem::componentComplete();
    updatePolish();
}

void AdaptiveGrid::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width() && isComponentComplete()) {
        // At once, so that whatever stands below knows its place before the frame.
        updatePolish();
    }
}

void AdaptiveGrid::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemChildAddedChange) {
        connect(data.item, &QQuickItem::implicitHeightChanged, this, &AdaptiveGrid::polish);
        connect(data.item, &QQuickItem::visibleChanged, this, &AdaptiveGrid::polish);
        polish();
    } else if (change == ItemChildRemovedChange) {
        disconnect(data.item, nullptr, this, nullptr);
        polish();
    }
    QQuickItem::itemChange(change, data);
}

QList<QQuickItem*> AdaptiveGrid::cells() const {
    QList<QQuickItem*> cells;
    for (QQuickItem* child : childItems()) {
        // A repeater is a child without a size of its own.
        if (child->isVisible() && !child->inherits("QQuickRepeater")) {
            cells.append(child);
        }
    }
    return cells;
}

void AdaptiveGrid::updatePolish() {
    const QList<QQuickItem*> items = cells();
    const int count = static_cast<int>(items.size());
    const int columns = adaptiveColumns(width(), minimumCellWidth_, spacing_, count);
    const qreal pitch = (width() + spacing_) / columns;
    qreal y = 0;
    for (int first = 0; first < count; first += columns) {
        const int end = std::min(first + columns, count);
        qreal height = 0;
        for (int index = first; index < end; ++index) {
            // Whole points, so that borders stay sharp; the columns differ by one at most.
            const int column = index - first;
            const qreal left = std::round(column * pitch);
            const qreal right = std::round((column + 1) * pitch - spacing_);
            items[index]->setPosition({left, y});
            items[index]->setWidth(std::max(right - left, 0.0));
            height = std::max(height, items[index]->implicitHeight());
        }
        for (int index = first; index < end; ++index) {
            items[index]->setHeight(height);
        }
        y += height + spacing_;
    }
    setImplicitHeight(count > 0 ? y - spacing_ : 0);
}

} // namespace ventaro
