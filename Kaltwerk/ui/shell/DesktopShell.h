#pragma once

#include "ApplicationShell.h"
#include "DashboardWindow.h"
#include "WindowSizeFile.h"

#include <QObject>
#include <QTimer>
#include <chrono>
#include <map>
#include <memory>

namespace ventaro {

class FanControllerViewModel;
class TaskRunner;

/// The application's windows on a real desktop. The dashboard is made when it is first needed and
/// freed when it has been closed for a while. Main thread only.
class DesktopShell final : public QObject, public ApplicationShell {
    Q_OBJECT

public:
    struct Options {
        QString machineNote; ///< what the program says about the machine
        std::filesystem::path windowSizeFile;
        /// How long a closed window is kept.
        std::chrono::milliseconds grace = std::chrono::seconds(30);
    };

    DesktopShell(FanControllerViewModel& controller, TaskRunner& tasks, Options options);

    /// What was set last; the task bar follows the windows themselves.
    ActivationPolicy activationPolicy() const override { return policy_; }
    void setActivationPolicy(ActivationPolicy policy) override { policy_ = policy; }
    void activateIgnoringOtherApps() override;
    std::vector<ApplicationWindow*> windows() override;
    void openWindow(const QString& identifier) override;
    ObserverToken addWindowWillCloseObserver(WillCloseObserver observer) override;
    void removeObserver(ObserverToken token) override;
    void async(Action action) override;
    void terminate() override;

    /// Null while there is none.
    DashboardWindow* dashboard() { return dashboard_.get(); }
    bool isDashboardVisible() const { return dashboard_ && dashboard_->isVisible(); }
    bool isDashboardReadable() const { return dashboard_ && dashboard_->isReadable(); }

Q_SIGNALS:
    void dashboardWillAppear();
    void lastWindowClosed();
    /// The user has pressed the keys for the end of the program.
    void quitRequested();

private:
    void makeDashboard();

    FanControllerViewModel& controller_;
    TaskRunner& tasks_;
    const Options options_;
    ActivationPolicy policy_ = ActivationPolicy::regular;
    std::map<ObserverToken, WillCloseObserver> observers_;
    ObserverToken lastToken_ = 0;
    std::unique_ptr<DashboardWindow> dashboard_;
    QTimer release_;
};

} // namespace ventaro
