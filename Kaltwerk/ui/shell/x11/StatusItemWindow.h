#pragma once

#include <QFont>
#include <QPoint>
#include <QRasterWindow>
#include <QString>

namespace ventaro {

/// The status item where the desktop has no tray: a small window that shows the symbol and the
/// summary. It can be dragged. Drawn anew only when something in it has changed. Main thread only.
class StatusItemWindow : public QRasterWindow {
    Q_OBJECT

public:
    StatusItemWindow();
    QString text() const { return text_; }
    void setText(const QString& text);
    /// At the top right of the screen at first, then where the user has left it.
    void appear();
    /// As a click on it.
    void activate();
    /// As the key for the menu.
    void requestMenu();
    QAccessibleInterface* accessibleRoot() const override;

Q_SIGNALS:
    /// The user reaches for the item; its other signals follow.
    void pressed();
    void activated();
    void menuRequested(QPoint globalPosition);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    /// Fits the text, with the right edge where it is, inside the screen.
    void fit();
    /// The same now and whenever the window's screen changes.
    void stayOnScreen();

    const QFont font_;
    QString text_;
    QPoint pressedAt_; ///< in the window
    bool isPressed_ = false;
    bool isDragged_ = false;
};

} // namespace ventaro
