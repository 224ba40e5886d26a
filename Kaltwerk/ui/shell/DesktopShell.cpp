#include "DesktopShell.h"

#include "AppDelegate.h"
#include "FanControllerViewModel.h"
#include "TaskRunner.h"
#include "WindowShortcuts.h"

#include <QGuiApplication>
#include <QPointer>
#include <utility>

namespace ventaro {

DesktopShell::DesktopShell(FanControllerViewModel& controller, TaskRunner& tasks, Options options)
    : controller_(controller), tasks_(tasks), options_(std::move(options)) {
    release_.setSingleShot(true);
    release_.setInterval(options_.grace);
    connect(&release_, &QTimer::timeout, this, [this] {
        if (dashboard_ && !dashboard_->isInUse()) {
            dashboard_.reset();
        }
    });
}

void DesktopShell::activateIgnoringOtherApps() {
    if (isDashboardVisible()) {
        dashboard_->makeKeyAndOrderFront();
    }
}

std::vector<ApplicationWindow*> DesktopShell::windows() {
    return dashboard_ ? std::vector<ApplicationWindow*>{dashboard_.get()}
                      : std::vector<ApplicationWindow*>{};
}

void DesktopShell::openWindow(const QString& identifier) {
    if (identifier != AppDelegate::dashboardIdentifier) {
        return;
    }
    if (!dashboard_) {
        makeDashboard();
    }
    dashboard_->makeKeyAndOrderFront();
}

void DesktopShell::makeDashboard() {
    dashboard_ = std::make_unique<DashboardWindow>(controller_, options_.machineNote,
                                                   WindowSizeFile(options_.windowSizeFile), tasks_);
    DashboardWindow* dashboard = dashboard_.get();
    new WindowShortcuts(
        dashboard->window(), [dashboard] { dashboard->close(); },
        [this] { Q_EMIT quitRequested(); });
    connect(dashboard, &DashboardWindow::willAppear, this, [this] {
        release_.stop();
        Q_EMIT dashboardWillAppear();
    });
    connect(dashboard, &DashboardWindow::willClose, this, [this, dashboard] {
        const auto observers = observers_; // one of them may remove itself
        for (const auto& [token, observer] : observers) {
            observer(*dashboard);
        }
    });
    connect(dashboard, &DashboardWindow::closed, this, &DesktopShell::lastWindowClosed);
    connect(dashboard, &DashboardWindow::hidden, &release_, qOverload<>(&QTimer::start));
}

ApplicationShell::ObserverToken
DesktopShell::addWindowWillCloseObserver(WillCloseObserver observer) {
    observers_.emplace(++lastToken_, std::move(observer));
    return lastToken_;
}

void DesktopShell::removeObserver(ObserverToken token) { observers_.erase(token); }

void DesktopShell::async(Action action) {
    tasks_.onMainThread([self = QPointer(this), action = std::move(action)] {
        if (self) {
            action();
        }
    });
}

void DesktopShell::terminate() { QGuiApplication::exit(0); }

} // namespace ventaro
