#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>

namespace ventaro {

/// A symbol of the program's own set, in one colour.
class SymbolIcon : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// As in "fan.fill"; empty draws nothing.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// The side of the square, in points.
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged)

public:
    explicit SymbolIcon(QQuickItem* parent = nullptr);

    const QString& name() const { return name_; }
    const QColor& color() const { return color_; }
    qreal size() const { return implicitWidth(); }
    void setName(const QString& name);
    void setColor(const QColor& color);
    void setSize(qreal size);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void sizeChanged();

private:
    QString name_;
    QColor color_;
};

} // namespace ventaro
