#pragma once

#include "ApplicationShell.h"

#include <QStringList>
#include <functional>
#include <optional>

namespace ventaro {

/// What the application does when it starts, is opened again, loses its window and ends. Its main
/// windows are those whose title contains the product's name. Main thread only.
class AppDelegate {
public:
    /// The identifier of the dashboard's window scene.
    static const QString dashboardIdentifier;

    /// `arguments`: the process's.
    AppDelegate(ApplicationShell& shell, const QStringList& arguments);

    /// Whether the arguments ask for a start in the status item alone.
    static bool isLaunchedMinimized(const QStringList& arguments);
    bool isLaunchedMinimized() const { return isLaunchedMinimized_; }
    static bool isMainWindow(const ApplicationWindow& window);

    /// Called when the application ends; empty until the dashboard has been on screen.
    std::function<void()> onTerminate;

    void applicationDidFinishLaunching();
    /// The dashboard's content is about to come on screen; `hook` becomes `onTerminate`.
    void dashboardWillAppear(std::function<void()> hook);
    /// The user has started the application again. True: the desktop goes on with what it does.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    bool applicationShouldTerminateAfterLastWindowClosed();
    void applicationWillTerminate();
    void hideMainWindows();

    /// What the status item's "Dashboard" does.
    void openDashboardWindow();

private:
    void orderMainWindowsFront();
    void becomeAccessoryUnlessVisible();

    ApplicationShell& shell_;
    const bool isLaunchedMinimized_;
    std::optional<ApplicationShell::ObserverToken> windowCloseObserver_;
};

} // namespace ventaro
