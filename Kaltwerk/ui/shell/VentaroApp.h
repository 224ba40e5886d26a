#pragma once

#include "AppDelegate.h"
#include "DesktopShell.h"
#include "ExitGuard.h"
#include "FailureReporter.h"
#include "FanControllerViewModel.h"
#include "Popover.h"
#include "StatusItem.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

namespace ventaro {

/// The application: its controller, its dashboard window and its status item. It needs a
/// QApplication and ends its event loop. Main thread only.
class VentaroApp : public QObject {
    Q_OBJECT

public:
    struct Options {
        QStringList arguments; ///< the process's
        DesktopShell::Options shell;
    };

    VentaroApp(const FanControllerDependencies& dependencies, DesktopIntegration& desktop,
               const Options& options);

    /// Runs to the end and hands the fans back; the process's exit code, 1 if they stay forced.
    int run();
    /// The user has started the program again.
    void reopen();
    /// Hands the fans back and then ends the event loop. Blocks as `shutdown` of the controller.
    void quit();
    /// The user's session is about to end, and takes the program along.
    void sessionEnds() { viewModel_.shutdownAtOnce(); }

    FanControllerViewModel& viewModel() { return viewModel_; }
    DesktopShell& shell() { return shell_; }
    StatusItem& statusItem() { return statusItem_; }
    Popover& popover() { return popover_; }

private:
    void connectWindows();
    void connectStatusItem();
    void openDashboard();
    void endControl();

    DesktopIntegration& desktop_;
    TaskRunner& tasks_;
    FanControllerViewModel viewModel_;
    ExitGuard exitGuard_;
    DesktopShell shell_;
    AppDelegate appDelegate_;
    StatusItem statusItem_;
    Popover popover_;
    FailureReporter failures_;
    QTimer startIsOver_;
    bool areFansLeftForced_ = false;
};

/// Starts the application on the installed platform and returns the process's exit code.
/// `makeDesktop` is called when there is a QApplication. Throws std::exception if it cannot start.
int runVentaroApp(int& argc, char** argv, const DesktopFactory& makeDesktop);

} // namespace ventaro
