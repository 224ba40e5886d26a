#include "DashboardWindow.h"

#include "FanControllerViewModel.h"
#include "TaskRunner.h"

#include <QPointer>
#include <QScreen>
#include <utility>

namespace ventaro {

DashboardWindow::DashboardWindow(FanControllerViewModel& controller, const QString& note,
                                 WindowSizeFile size, TaskRunner& tasks)
    : tasks_(tasks),
      sizeFile_(std::move(size)),
      scene_(QStringLiteral("DashboardView"),
             {{QStringLiteral("viewModel"), QVariant::fromValue(&controller)},
              {QStringLiteral("machineNote"), note}},
             QQuickView::SizeRootObjectToView) {
    window().setTitle(QStringLiteral("Ventaro — MacBook Pro 16\" Thermal & Fan Control"));
    window().setMinimumSize(minimumSize);
    window().resize(fittedSize(sizeFile_.read().value_or(defaultSize), minimumSize,
                               window().screen()->availableSize()));
    window().installEventFilter(this);
}

DashboardWindow::~DashboardWindow() { keepSize(); }

QString DashboardWindow::title() const { return scene_.window().title(); }

bool DashboardWindow::isVisible() const {
    return scene_.window().isVisible() &&
           !scene_.window().windowStates().testFlag(Qt::WindowMinimized);
}

bool DashboardWindow::isInUse() const { return isAppearing_ || scene_.window().isVisible(); }

bool DashboardWindow::isReadable() const {
    return isVisible() && (scene_.window().isExposed() || scene_.window().isActive());
}

void DashboardWindow::orderOut() {
    if (!window().isVisible()) {
        return;
    }
    keepSize();
    window().hide();
    Q_EMIT hidden();
}

void DashboardWindow::keepSize() {
    if (window().isVisible() && window().windowStates() == Qt::WindowNoState &&
        sizeFile_.read() != window().size()) {
        sizeFile_.write(window().size());
    }
}

void DashboardWindow::close() {
    const bool wasVisible = window().isVisible();
    Q_EMIT willClose();
    orderOut();
    if (wasVisible) {
        Q_EMIT closed();
    }
}

void DashboardWindow::makeKeyAndOrderFront() {
    if (isAppearing_) {
        return;
    }
    if (isVisible()) {
        window().raise();
        window().requestActivate();
        return;
    }
    isAppearing_ = true;
    if (!window().isVisible()) {
        Q_EMIT willAppear();
    }
    // Behind all that the announcement has put into the queue.
    tasks_.onMainThread([self = QPointer(this)] {
        if (self) {
            self->show();
        }
    });
}

void DashboardWindow::show() {
    isAppearing_ = false;
    window().setWindowStates(window().windowStates() & ~Qt::WindowMinimized);
    window().setVisible(true);
    window().raise();
    window().requestActivate();
}

bool DashboardWindow::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::Close) {
        return false;
    }
    // Only hidden; and accepted, because a refusal would hold up the end of the desktop session.
    event->accept();
    close();
    return true;
}

} // namespace ventaro
