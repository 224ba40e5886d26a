#include "StatusItem.h"

#include "FanControllerViewModel.h"
#include "NumberFormat.h"
#include "WindowShortcuts.h"

#include <QCursor>
#include <QSystemTrayIcon>
#include <QWindow>
#include <utility>

namespace ventaro {

StatusItem::StatusItem(FanControllerViewModel& controller, QString note)
    : controller_(controller), note_(std::move(note)), menu_(controller, note_) {
    connect(&controller, &FanControllerViewModel::menuBarSummaryTextChanged, this,
            &StatusItem::showText);
    // Later, because the change may be heard while the toolkit is still at work on the old tray.
    connect(&trays_, &TrayWatch::changed, this, &StatusItem::decide, Qt::QueuedConnection);
    decide();
}

void StatusItem::decide() {
    if (!trays_.isDecided()) {
        return;
    }
    const TrayKind kind = trays_.kind();
    if (kind != TrayKind::none && QSystemTrayIcon::isSystemTrayAvailable()) {
        if (!icon_) {
            trays_.keepTo(kind);
            makeTrayIcon();
            window_.reset();
        }
    } else if (!window_) {
        makeWindow();
        icon_.reset();
    }
}

void StatusItem::makeTrayIcon() {
    icon_ = std::make_unique<TrayIcon>(menu_.menu());
    connect(icon_.get(), &TrayIcon::activated, this, [this](const QRect& place) {
        Q_EMIT pressed();
        Q_EMIT activated(place.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : place);
    });
    showText();
}

void StatusItem::makeWindow() {
    window_ = std::make_unique<StatusItemWindow>();
    StatusItemWindow* window = window_.get();
    new WindowShortcuts(*window, {}, [this] { Q_EMIT quitRequested(); });
    connect(window, &StatusItemWindow::pressed, this, &StatusItem::pressed);
    connect(window, &StatusItemWindow::activated, this,
            [this, window] { Q_EMIT activated(window->geometry()); });
    connect(window, &StatusItemWindow::menuRequested, this, [this, window](const QPoint& place) {
        menu_.menu().winId(); // a menu without a parent can only be placed with one
        menu_.menu().windowHandle()->setTransientParent(window);
        menu_.menu().popup(place);
    });
    showText();
    window->appear();
}

void StatusItem::showText() {
    const QString text = controller_.menuBarSummaryText();
    if (icon_) {
        const double celsius = controller_.cpuMaxTemp();
        icon_->setText(note_.isEmpty() ? text : text + QLatin1Char('\n') + note_,
                       celsius > 0 ? QString::fromStdString(formatFixed(celsius, 0)) : QString());
    }
    if (window_) {
        window_->setText(text);
    }
}

} // namespace ventaro
