#pragma once

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QString>

namespace ventaro {

/// One line of text whose digits all take the width of the widest, so that a live number does not
/// dance. As wide as its text; never elided.
class TabularText : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)

public:
    explicit TabularText(QQuickItem* parent = nullptr);

    const QString& text() const { return text_; }
    const QColor& color() const { return color_; }
    const QFont& font() const { return font_; }
    void setText(const QString& text);
    void setColor(const QColor& color);
    void setFont(const QFont& font);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void textChanged();
    void colorChanged();
    void fontChanged();

private:
    void measure();

    QString text_;
    QColor color_;
    QFont font_;
};

/// The width of `text` in points when every digit takes the width of the widest.
qreal tabularWidth(const QString& text, const QFont& font);
/// Draws `text` that way, from the point (`x`, `baseline`).
void paintTabularText(QPainter& painter, const QString& text, qreal x, qreal baseline);

} // namespace ventaro
