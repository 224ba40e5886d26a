#include "Popover.h"

#include "Appearance.h"
#include "DesktopIntegration.h"
#include "FanControllerViewModel.h"
#include "ShellColors.h"
#include "WindowShortcuts.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickItem>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

constexpr int distance = 4;
constexpr int cornerRadius = 12; ///< the view's

/// The platforms tell of a click's loss of focus at about the time of the click.
constexpr std::chrono::milliseconds sameClick(300);

QRegion roundedRegion(QSize size) {
    QBitmap bits(size);
    bits.clear();
    QPainter painter(&bits);
    painter.setBrush(Qt::color1);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRect(QPoint(0, 0), size), cornerRadius, cornerRadius);
    painter.end();
    return QRegion(bits);
}

} // namespace

Popover::Popover(DesktopIntegration& desktop, FanControllerViewModel& controller, QString note,
                 std::chrono::milliseconds grace)
    : desktop_(desktop), controller_(controller), note_(std::move(note)) {
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
    shape();
    QQuickView& window = scene_->window();
    hadFocus_ =
        QGuiApplication::focusWindow() == &window; // some platforms leave it to a hidden one
    desktop_.markAsUtilityWindow(window);
    window.show();
    window.raise();
    window.requestActivate();
}

void Popover::make() {
    scene_ = std::make_unique<QmlScene>(
        QStringLiteral("MenuBarPopoverView"),
        QVariantMap{{QStringLiteral("viewModel"), QVariant::fromValue(&controller_)},
                    {QStringLiteral("machineNote"), note_}},
        QQuickView::SizeViewToRootObject);
    QQuickView& window = scene_->window();
    window.setTitle(QStringLiteral("Lüfter und Temperaturen"));
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    constexpr int alphaBits = 8;
    QSurfaceFormat format = window.requestedFormat();
    format.setAlphaBufferSize(alphaBits);
    window.setFormat(format);
    window.installEventFilter(this);
    new WindowShortcuts(
        window, [this] { close(); }, [this] { Q_EMIT quitRequested(); });
    connect(&window, &QWindow::heightChanged, this, &Popover::place);
    connect(&window, &QWindow::heightChanged, this, &Popover::shape);
    connect(&Appearance::shared(), &Appearance::darkChanged, &window, [this] { shape(); });
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

/// Leaves out what is beyond the view's round corners.
void Popover::shape() {
    QQuickView& window = scene_->window();
    if (desktop_.isTransparencyShown()) {
        window.setColor(Qt::transparent);
        if (!window.mask().isEmpty()) { // some platforms know no masks, and complain
            window.setMask({});
        }
    } else {
        // The corners' smoothed pixels have nothing to blend with.
        window.setColor(ShellColors::current().popover);
        window.setMask(roundedRegion(window.size()));
    }
}

bool Popover::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::Close) {
        return false;
    }
    // Only hidden; and accepted, because a refusal would hold up the end of the desktop session.
    event->accept();
    close();
    return true;
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
