#pragma once

#include <QQuickItem>

namespace ventaro {

/// Lays its visible children out in as many equally wide columns as fit at their minimum width,
/// spread over the rows so that no row is much shorter than the others. All cells of a row are as
/// high as its highest.
class AdaptiveGrid : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// In points. A grid narrower than this shows one column of its full width.
    Q_PROPERTY(qreal minimumCellWidth READ minimumCellWidth WRITE setMinimumCellWidth NOTIFY
                   minimumCellWidthChanged)
    Q_PROPERTY(qreal spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)

public:
    explicit AdaptiveGrid(QQuickItem* parent = nullptr) : QQuickItem(parent) {}

    qreal minimumCellWidth() const { return minimumCellWidth_; }
    qreal spacing() const { return spacing_; }
    void setMinimumCellWidth(qreal width);
    void setSpacing(qreal spacing);

Q_SIGNALS:
    void minimumCellWidthChanged();
    void spacingChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;

private:
    QList<QQuickItem*> cells() const;

    qreal minimumCellWidth_ = 100;
    qreal spacing_ = 8;
};

/// How many columns `count` cells get in `width`, each at least `minimum` wide, `spacing` apart; at
/// least 1.
int adaptiveColumns(qreal width, qreal minimum, qreal spacing, int count);

} // namespace ventaro
