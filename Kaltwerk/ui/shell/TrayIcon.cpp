#include "TrayIcon.h"

#include "Appearance.h"
#include "Symbol.h"

#include <QApplication>
#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <utility>

namespace ventaro {

namespace {

QPixmap drawn(const QString& number, const QColor& ink, int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF all(0, 0, size, size);
    constexpr qreal numberShare = 0.5;
    const qreal numberHeight = number.isEmpty() ? 0 : size * numberShare;
    paintSymbol(painter, QStringLiteral("fanblades.fill"), ink,
                all.adjusted(0, 0, 0, -numberHeight));
    constexpr qreal fontShare = 0.55;
    QFont font = QGuiApplication::font();
    font.setPixelSize(qRound(size * fontShare));
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(all.adjusted(-size, size - numberHeight, size, 0),
                     Qt::AlignCenter | Qt::TextDontClip, number);
    painter.end();
    return QPixmap::fromImage(image);
}

} // namespace

TrayIcon::TrayIcon(QMenu& menu) {
    icon_.setContextMenu(&menu);
    connect(&icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    Q_EMIT activated(icon_.geometry());
                }
            });
    connect(&Appearance::shared(), &Appearance::darkChanged, this, &TrayIcon::draw);
    draw();
    icon_.show();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QSystemTrayIconSys")) {
            widget->setWindowTitle(QStringLiteral("Lüftersymbol")); // not the program's name
        }
    }
}

void TrayIcon::setText(const QString& text, const QString& number) {
    if (icon_.toolTip() != text) {
        icon_.setToolTip(text);
    }
    if (std::exchange(number_, number) != number) {
        draw();
    }
}

void TrayIcon::draw() {
    const QColor ink(Appearance::shared().dark() ? 0xF1F2F4 : 0x1B1C20);
    QIcon icon;
    for (const int size : {22, 44}) {
        icon.addPixmap(drawn(number_, ink, size));
    }
    icon_.setIcon(icon);
}

} // namespace ventaro
