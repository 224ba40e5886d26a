#include "AppDelegate.h"

#include <algorithm>
#include <utility>

namespace ventaro {

const QString AppDelegate::dashboardIdentifier = QStringLiteral("dashboard");

AppDelegate::AppDelegate(ApplicationShell& shell, const QStringList& arguments)
    : shell_(shell), isLaunchedMinimized_(isLaunchedMinimized(arguments)) {}

bool AppDelegate::isLaunchedMinimized(const QStringList& arguments) {
    return arguments.contains(QStringLiteral("--minimized")) ||
           arguments.contains(QStringLiteral("--background"));
}

bool AppDelegate::isMainWindow(const ApplicationWindow& window) {
    return window.title().contains(QStringLiteral("Ventaro"));
}

void AppDelegate::applicationDidFinishLaunching() {
    windowCloseObserver_ = shell_.addWindowWillCloseObserver([this](ApplicationWindow& window) {
        if (isMainWindow(window)) {
            shell_.async([this] { becomeAccessoryUnlessVisible(); });
        }
    });
    if (isLaunchedMinimized_) {
        shell_.setActivationPolicy(ActivationPolicy::accessory);
        shell_.async([this] { hideMainWindows(); });
    } else {
        shell_.setActivationPolicy(ActivationPolicy::regular);
        shell_.activateIgnoringOtherApps();
    }
}

void AppDelegate::dashboardWillAppear(std::function<void()> hook) {
    onTerminate = std::move(hook);
    if (isLaunchedMinimized_) {
        shell_.async([this] { hideMainWindows(); });
    }
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
    if (!hasVisibleWindows) {
        shell_.setActivationPolicy(ActivationPolicy::regular);
        orderMainWindowsFront();
        shell_.activateIgnoringOtherApps();
    }
    return true;
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
    shell_.setActivationPolicy(ActivationPolicy::accessory);
    return false;
}

void AppDelegate::applicationWillTerminate() {
    if (const auto token = std::exchange(windowCloseObserver_, std::nullopt)) {
        shell_.removeObserver(*token);
    }
    if (onTerminate) {
        onTerminate();
    }
}

void AppDelegate::hideMainWindows() {
    for (ApplicationWindow* window : shell_.windows()) {
        if (isMainWindow(*window)) {
            window->orderOut();
            window->close();
        }
    }
}

void AppDelegate::openDashboardWindow() {
    shell_.setActivationPolicy(ActivationPolicy::regular);
    shell_.openWindow(dashboardIdentifier);
    shell_.async([this] {
        shell_.activateIgnoringOtherApps();
        orderMainWindowsFront();
    });
}

void AppDelegate::orderMainWindowsFront() {
    for (ApplicationWindow* window : shell_.windows()) {
        if (isMainWindow(*window)) {
            window->makeKeyAndOrderFront();
        }
    }
}

/// The window that closed may have been opened again since.
void AppDelegate::becomeAccessoryUnlessVisible() {
    const auto windows = shell_.windows();
    if (std::none_of(windows.begin(), windows.end(), [](const ApplicationWindow* window) {
            return isMainWindow(*window) && window->isVisible();
        })) {
        shell_.setActivationPolicy(ActivationPolicy::accessory);
    }
}

} // namespace ventaro
