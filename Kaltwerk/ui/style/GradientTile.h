#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace ventaro {

/// A rounded square that runs from one colour at the upper left to another at the lower right.
class GradientTile : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor from MEMBER from_ NOTIFY changed)
    Q_PROPERTY(QColor to MEMBER to_ NOTIFY changed)
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY changed)

public:
    explicit GradientTile(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor from_;
    QColor to_;
    qreal radius_ = 0;
};

} // namespace ventaro
