#include "TrayIcon.h"

#include "Appearance.h"
#include "ShellColors.h"
#include "Symbol.h"

#include <QApplication>
#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

QImage emptyImage(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// `image` with a seam of `color` around all that is in it.
QImage outlined(const QImage& image, const QColor& color, int width) {
    QImage shadow = image;
    QPainter colorer(&shadow);
    colorer.setCompositionMode(QPainter::CompositionMode_SourceIn);
    colorer.fillRect(shadow.rect(), color);
    colorer.end();
    QImage result = emptyImage(image.width());
    QPainter painter(&result);
    for (const int x : {-width, 0, width}) {
        for (const int y : {-width, 0, width}) {
            painter.drawImage(x, y, shadow);
        }
    }
    painter.drawImage(0, 0, image);
    return result;
}

/// The panel's colour is not known, so that the symbol brings what it stands out against.
QPixmap drawn(const QString& number, const ShellColors& colors, int size) {
    constexpr int seamShare = 22;
    const int seam = size / seamShare;
    QImage image = emptyImage(size);
    QPainter painter(&image);
    const QRectF all(0, 0, size, size);
    constexpr qreal numberShare = 0.5;
    const qreal numberHeight = number.isEmpty() ? 0 : size * numberShare;
    paintSymbol(painter, QStringLiteral("fanblades.fill"), colors.textPrimary,
                all.adjusted(seam, seam, -seam, -std::max<qreal>(seam, numberHeight)));
    constexpr qreal fontShare = 0.55;
    QFont font = QGuiApplication::font();
    font.setPixelSize(qRound(size * fontShare));
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(colors.textPrimary);
    painter.drawText(all.adjusted(-size, size - numberHeight, size, 0),
                     Qt::AlignCenter | Qt::TextDontClip, number);
    painter.end();
    return QPixmap::fromImage(outlined(image, colors.popover, seam));
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
    const ShellColors colors = ShellColors::current();
    QIcon icon;
    for (const int size : {22, 44}) {
        icon.addPixmap(drawn(number_, colors, size));
    }
    icon_.setIcon(icon);
}

} // namespace ventaro
