#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace ventaro {

/// A faint ring with one quarter of it in full colour.
class SpinnerWheel : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit SpinnerWheel(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    const QColor& color() const { return color_; }
    void setColor(const QColor& color);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void colorChanged();

private:
    QColor color_;
};

} // namespace ventaro
