#pragma once

#include <QColor>
#include <QList>
#include <QPointF>
#include <QQuickPaintedItem>

namespace ventaro {

/// The fan curve as a line over an area that fades towards the bottom. The given domain fills its
/// item but for a margin, so that a line along an edge keeps its width.
class CurveShape : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Temperature (°C) and percent, by ascending temperature.
    Q_PROPERTY(QList<QPointF> points MEMBER points_ NOTIFY changed)
    /// What the edges within the margin stand for.
    Q_PROPERTY(QRectF domain MEMBER domain_ NOTIFY changed)
    Q_PROPERTY(QColor lineColor MEMBER lineColor_ NOTIFY changed)
    Q_PROPERTY(qreal margin MEMBER margin CONSTANT)
    /// At 100 percent.
    Q_PROPERTY(QColor areaColor MEMBER areaColor_ NOTIFY changed)

public:
    explicit CurveShape(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    static constexpr qreal margin = 2;

    QList<QPointF> points_;
    QRectF domain_;
    QColor lineColor_;
    QColor areaColor_;
};

} // namespace ventaro
