#include "X11StatusItem.h"

#include "WindowShortcuts.h"

#include <QCursor>
#include <QSystemTrayIcon>
#include <QWindow>

namespace ventaro {

X11StatusItem::X11StatusItem(QMenu& menu, const StatusItemText& text) : menu_(menu), text_(text) {
    // Later, because the change may be heard while the toolkit is still at work on the old tray.
    connect(&trays_, &TrayWatch::changed, this, &X11StatusItem::decide, Qt::QueuedConnection);
    decide();
}

void X11StatusItem::setText(const StatusItemText& text) {
    text_ = text;
    showText();
}

void X11StatusItem::decide() {
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

void X11StatusItem::makeTrayIcon() {
    icon_ = std::make_unique<TrayIcon>(menu_);
    connect(icon_.get(), &TrayIcon::activated, this, [this](const QRect& place) {
        Q_EMIT pressed();
        Q_EMIT activated(place.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : place);
    });
    showText();
}

void X11StatusItem::makeWindow() {
    window_ = std::make_unique<StatusItemWindow>();
    StatusItemWindow* window = window_.get();
    new WindowShortcuts(*window, {}, [this] { Q_EMIT quitRequested(); });
    connect(window, &StatusItemWindow::pressed, this, &X11StatusItem::pressed);
    connect(window, &StatusItemWindow::activated, this,
            [this, window] { Q_EMIT activated(window->geometry()); });
    connect(window, &StatusItemWindow::menuRequested, this, [this, window](const QPoint& place) {
        menu_.winId(); // a menu without a parent can only be placed with one
        menu_.windowHandle()->setTransientParent(window);
        menu_.popup(place);
    });
    showText();
    window->appear();
}

void X11StatusItem::showText() {
    if (icon_) {
        icon_->setText(text_.note.isEmpty() ? text_.summary
                                            : text_.summary + QLatin1Char('\n') + text_.note,
                       text_.temperature);
    }
    if (window_) {
        window_->setText(text_.summary);
    }
}

} // namespace ventaro
