#include "TabularText.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <functional>

namespace ventaro {

namespace {

bool isDigit(QChar character) { return character >= u'0' && character <= u'9'; }

qreal digitWidth(const QFont& font) {
    static QHash<QFont, qreal> widths;
    auto known = widths.find(font);
    if (known == widths.end()) {
        const QFontMetricsF metrics(font);
        qreal widest = 0;
        for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
            widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
        }
        known = widths.insert(font, widest);
    }
    return known.value();
}

/// Calls `part` with each digit and each run of other characters, and with the place where it is
/// drawn; returns the width of all.
qreal layOut(const QString& text, const QFont& font,
             const std::function<void(qreal, const QString&)>& part) {
    const QFontMetricsF metrics(font);
    const qreal cell = digitWidth(font);
    qreal x = 0;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start + 1;
        if (!isDigit(text[start])) {
            while (end < text.size() && !isDigit(text[end])) {
                ++end;
            }
        }
        const QString run = text.mid(start, end - start);
        const qreal width = metrics.horizontalAdvance(run);
        const bool inCell = isDigit(text[start]);
        part(inCell ? x + (cell - width) / 2 : x, run);
        x += inCell ? cell : width;
        start = end;
    }
    return x;
}

} // namespace

qreal tabularWidth(const QString& text, const QFont& font) {
    return layOut(text, font, [](qreal /*x*/, const QString& /*run*/) {});
}

void paintTabularText(QPainter& painter, const QString& text, qreal x, qreal baseline) {
    layOut(text, painter.font(), [&](qreal offset, const QString& run) {
        painter.drawText(QPointF(x + offset, baseline), run);
    });
}

TabularText::TabularText(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void TabularText::setText(const QString& text) {
    if (text_ != text) {
        text_ = text;
        measure();
        Q_EMIT textChanged();
    }
}

void TabularText::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        update();
        Q_EMIT colorChanged();
    }
}

void TabularText::setFont(const QFont& font) {
    if (font_ != font) {
        font_ = font;
        measure();
        Q_EMIT fontChanged();
    }
}

void TabularText::measure() {
    const QFontMetricsF metrics(font_);
    setBaselineOffset(metrics.ascent());
    setImplicitSize(std::ceil(tabularWidth(text_, font_)),
                    std::ceil(metrics.ascent() + metrics.descent()));
    update();
}

void TabularText::paint(QPainter* painter) {
    painter->setFont(font_);
    painter->setPen(color_);
    const QFontMetricsF metrics(font_);
    const qreal baseline = (height() - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
    paintTabularText(*painter, text_, width() - tabularWidth(text_, font_), std::round(baseline));
}

} // namespace ventaro
