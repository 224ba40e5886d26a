#pragma once

#include "ChartLine.h"

#include <QPointer>
#include <QQmlListProperty>
#include <QQuickPaintedItem>
#include <QRectF>

namespace ventaro {

/// A chart's lines, smoothed and all in one picture: the given domain fills the item, and what lies
/// beyond it is cut off at the edges.
class LinePlot : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The last one is on top.
    Q_PROPERTY(QQmlListProperty<ventaro::ChartLine> lines READ lines NOTIFY linesChanged)
    /// Milliseconds since 1970 and values that the edges stand for.
    Q_PROPERTY(QRectF domain MEMBER domain_ NOTIFY domainChanged)

public:
    explicit LinePlot(QQuickItem* parent = nullptr);

    QQmlListProperty<ChartLine> lines();
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void linesChanged();
    void domainChanged();

private:
    void append(ChartLine* line);

    QList<QPointer<ChartLine>> lines_;
    QRectF domain_;
};

} // namespace ventaro
