#pragma once

#include "QmlScene.h"

#include <QElapsedTimer>
#include <QObject>
#include <QRect>
#include <QTimer>
#include <chrono>
#include <memory>

namespace ventaro {

class DesktopIntegration;
class FanControllerViewModel;

/// The panel at the status item. It is made when it is first opened and freed when it has been
/// closed for a while. Main thread only.
class Popover : public QObject {
    Q_OBJECT

public:
    /// `note`: what the panel says about the machine; may be empty. `grace`: how long the closed
    /// panel is kept.
    Popover(DesktopIntegration& desktop, FanControllerViewModel& controller, QString note,
            std::chrono::milliseconds grace);

    /// To be told before `toggle` that the user reaches for the status item: that takes the focus,
    /// and with it the panel, which must not open again then.
    void statusItemPressed();
    /// Opens the panel beside `place` of the screen, or closes it.
    void toggle(const QRect& place);
    Q_SLOT void close();
    bool isOpen() const { return scene_ && scene_->window().isVisible(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void openDashboardRequested();
    void quitRequested();
    /// The user has started an action of the controller in the panel.
    void actionStarted();

private:
    void make();
    void open(const QRect& place);
    void place();
    void shape();
    void followFocus();

    DesktopIntegration& desktop_;
    FanControllerViewModel& controller_;
    const QString note_;
    std::unique_ptr<QmlScene> scene_;
    QTimer release_;
    QRect place_;
    bool hadFocus_ = false;
    bool staysClosed_ = false;
    QElapsedTimer sinceFocusLoss_;
};

/// Where a panel of `size` goes that belongs to `place`: below it if there is room, else above it,
/// always inside `available`.
QPoint popoverPosition(const QRect& place, QSize size, const QRect& available);

} // namespace ventaro
