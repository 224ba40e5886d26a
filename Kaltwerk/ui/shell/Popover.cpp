#include "Popover.h"

#include "FanControllerViewModel.h"
#include "WindowShortcuts.h"
#include "X11.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

constexpr int distance = 4;

/// The platforms tell of a click's loss of focus at about the time of the click.
constexpr std::chrono::milliseconds sameClick(300);

} // namespace

Popover::Popover(FanControllerViewModel& controller, std::chrono::milliseconds grace)
    : controller_(controller) {
    release_.setSingleShot(true);
    release_.setInterval(grace);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &Popover::followFocus);
    connect(&release_, &QTimer::timeout, this, [this] {
        if (!isOpen()) {
            scene_.reset();
        }
    });
}

void Popover::statusItemPressed() {
    staysClosed_ =
        isOpen() || (sinceFocusLoss_.isValid() && !sinceFocusLoss_.hasExpired(sameClick.count()));
}

void Popover::toggle(const QRect& place) {
    if (isOpen()) {
        close();
    } else if (!std::exchange(staysClosed_, false)) {
        open(place);
    }
}

void Popover::close() {
    if (isOpen()) {
        scene_->window().hide();
        release_.start();
    }
}

void Popover::open(const QRect& place) {
    release_.stop();
    if (!scene_) {
        make();
    }
    place_ = place;
    this->place();
    QQuickView& window = scene_->window();
    hadFocus_ =
        QGuiApplication::focusWindow() == &window; // some platforms leave it to a hidden one
    markAsUtilityWindow(window);
    window.show();
    window.raise();
    window.requestActivate();
}

void Popover::make() {
    scene_ = std::make_unique<QmlScene>(
        QStringLiteral("MenuBarPopoverView"),
        QVariantMap{{QStringLiteral("viewModel"), QVariant::fromValue(&controller_)}},
        QQuickView::SizeViewToRootObject);
    QQuickView& window = scene_->window();
    window.setTitle(QStringLiteral("Lüfter und Temperaturen"));
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    new WindowShortcuts(
        window, [this] { close(); }, [this] { Q_EMIT quitRequested(); });
    connect(&window, &QWindow::heightChanged, this, &Popover::place);
    if (QQuickItem* view = window.rootObject()) {
        connect(view, SIGNAL(openDashboardRequested()), this, SIGNAL(openDashboardRequested()));
        connect(view, SIGNAL(quitRequested()), this, SIGNAL(quitRequested()));
        connect(view, SIGNAL(actionStarted()), this, SIGNAL(actionStarted()));
        connect(view, SIGNAL(closeRequested()), this, SLOT(close()));
        view->forceActiveFocus();
    }
}

void Popover::place() {
    QQuickView& window = scene_->window();
    QScreen* screen = QGuiApplication::screenAt(place_.center());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    window.setPosition(popoverPosition(place_, window.size(), screen->availableGeometry()));
}

void Popover::followFocus() {
    if (!isOpen()) {
        return;
    }
    if (QGuiApplication::focusWindow() == &scene_->window()) {
        hadFocus_ = true;
    } else if (std::exchange(hadFocus_, false)) {
        sinceFocusLoss_.start();
        close();
    }
}

QPoint popoverPosition(const QRect& place, QSize size, const QRect& available) {
    const int lastX = std::max(available.left(), available.right() + 1 - size.width());
    const int lastY = std::max(available.top(), available.bottom() + 1 - size.height());
    const int below = place.bottom() + 1 + distance;
    const int above = place.top() - distance - size.height();
    return {std::clamp(place.center().x() - size.width() / 2, available.left(), lastX),
            std::clamp(below <= lastY ? below : above, available.top(), lastY)};
}

} // namespace ventaro
