#include "StatusItemWindow.h"

#include "Appearance.h"
#include "ShellColors.h"
#include "StatusItemAccessible.h"
#include "Symbol.h"
#include "X11.h"

#include <QAccessible>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyleHints>
#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

constexpr int itemHeight = 24;
constexpr int symbolSize = 14;
constexpr int gap = 4; ///< between symbol and text
constexpr int padding = 8;
constexpr int distanceFromEdge = 8;
constexpr int focusWidth = 2;

/// The system's monospaced font, 11 points of the screen, medium.
QFont labelFont() {
    constexpr int size = 11;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(size);
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace

StatusItemWindow::StatusItemWindow() : font_(labelFont()) {
    makeStatusItemsAccessible();
    setTitle(QStringLiteral("Lüfterstatus"));
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    connect(&Appearance::shared(), &Appearance::darkChanged, this, [this] { update(); });
    connect(this, &QWindow::screenChanged, this, &StatusItemWindow::stayOnScreen);
}

void StatusItemWindow::setText(const QString& text) {
    if (std::exchange(text_, text) != text) {
        fit();
        update();
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void StatusItemWindow::appear() {
    const QRect available = screen()->availableGeometry();
    fit();
    setPosition(available.right() + 1 - width() - distanceFromEdge,
                available.top() + distanceFromEdge);
    stayOnScreen();
    markAsUtilityWindow(*this);
    show();
}

void StatusItemWindow::stayOnScreen() {
    if (screen() == nullptr) {
        return; // the last one has gone
    }
    connect(screen(), &QScreen::availableGeometryChanged, this, &StatusItemWindow::fit,
            Qt::UniqueConnection);
    fit();
}

void StatusItemWindow::fit() {
    const int wanted =
        padding + symbolSize + gap + QFontMetrics(font_).horizontalAdvance(text_) + padding;
    const QRect available = screen()->availableGeometry();
    const int left = std::clamp(x() + width() - wanted, available.left(),
                                std::max(available.left(), available.right() + 1 - wanted));
    const int top = std::clamp(y(), available.top(),
                               std::max(available.top(), available.bottom() + 1 - itemHeight));
    const QRect fitted(left, top, wanted, itemHeight);
    if (geometry() != fitted) {
        setMinimumSize(fitted.size());
        setMaximumSize(fitted.size());
        setGeometry(fitted);
    }
}

void StatusItemWindow::paintEvent(QPaintEvent* /*event*/) {
    const ShellColors colors = ShellColors::current();
    QPainter painter(this);
    const QRect all(QPoint(0, 0), size());
    painter.fillRect(all, colors.popover);
    if (QGuiApplication::focusWindow() == this) {
        QPen pen(colors.focus, focusWidth);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.drawRect(
            all.adjusted(focusWidth / 2, focusWidth / 2, -focusWidth / 2, -focusWidth / 2));
    } else {
        painter.setPen(colors.popoverBorder);
        painter.drawRect(all.adjusted(0, 0, -1, -1));
    }
    paintSymbol(painter, QStringLiteral("fanblades.fill"), colors.textPrimary,
                QRectF(padding, (height() - symbolSize) / 2.0, symbolSize, symbolSize));
    painter.setPen(colors.textPrimary);
    painter.setFont(font_);
    painter.drawText(all.adjusted(padding + symbolSize + gap, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter, text_);
}

void StatusItemWindow::mousePressEvent(QMouseEvent* event) {
    Q_EMIT pressed();
    isDragged_ = false;
    isPressed_ = event->button() == Qt::LeftButton;
    pressedAt_ = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        Q_EMIT menuRequested(event->globalPosition().toPoint());
    }
}

void StatusItemWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!isPressed_) {
        return;
    }
    const QPoint way = event->position().toPoint() - pressedAt_;
    if (!isDragged_ &&
        way.manhattanLength() >= QGuiApplication::styleHints()->startDragDistance()) {
        isDragged_ = true;
        isPressed_ = !startSystemMove(); // the window manager goes on with it if it can
    }
    if (isDragged_ && isPressed_) {
        setPosition(position() + way);
    }
}

void StatusItemWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && std::exchange(isPressed_, false) && !isDragged_) {
        Q_EMIT activated();
    }
}

void StatusItemWindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        activate();
        break;
    case Qt::Key_Menu:
        requestMenu();
        break;
    default:
        QRasterWindow::keyPressEvent(event);
    }
}

void StatusItemWindow::activate() {
    Q_EMIT pressed();
    Q_EMIT activated();
}

void StatusItemWindow::requestMenu() {
    Q_EMIT pressed();
    Q_EMIT menuRequested(geometry().bottomLeft());
}

void StatusItemWindow::focusInEvent(QFocusEvent* /*event*/) {
    update();
    QAccessibleEvent event(this, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void StatusItemWindow::focusOutEvent(QFocusEvent* /*event*/) { update(); }

QAccessibleInterface* StatusItemWindow::accessibleRoot() const {
    return QAccessible::queryAccessibleInterface(const_cast<StatusItemWindow*>(this)); // NOLINT
}

bool StatusItemWindow::event(QEvent* event) {
    // There would be no way back to the program without it.
    if (event->type() == QEvent::Close) {
        event->accept();
        return true;
    }
    return QRasterWindow::event(event);
}

} // namespace ventaro
