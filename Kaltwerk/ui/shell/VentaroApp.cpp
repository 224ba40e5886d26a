#include "VentaroApp.h"

#include "SystemCalls.h"
#include "TaskRunner.h"

#include <QApplication>
#include <QPointer>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace ventaro {

VentaroApp::VentaroApp(const FanControllerDependencies& dependencies, DesktopIntegration& desktop,
                       const Options& options)
    : desktop_(desktop),
      tasks_(dependencies.tasks),
      viewModel_(dependencies),
      exitGuard_(viewModel_.dispatchGate(), [this] { viewModel_.handleAppTermination(); }),
      shell_(viewModel_, tasks_, options.shell),
      appDelegate_(shell_, options.arguments),
      statusItem_(desktop, viewModel_, options.shell.machineNote),
      popover_(desktop, viewModel_, options.shell.machineNote, options.shell.grace),
      failures_(
          viewModel_, tasks_, [this] { return shell_.isDashboardReadable(); },
          [&desktop](const QString& text) { desktop.notify(text); }) {
    startIsOver_.setSingleShot(true);
    connect(&startIsOver_, &QTimer::timeout, this, releaseFreeMemory);
    connectWindows();
    connectStatusItem();
    connect(qApp, &QGuiApplication::commitDataRequest, this, &VentaroApp::sessionEnds,
            Qt::DirectConnection);
    connect(qApp, &QCoreApplication::aboutToQuit, this,
            [this] { appDelegate_.applicationWillTerminate(); });
}

void VentaroApp::connectWindows() {
    connect(&shell_, &DesktopShell::dashboardWillAppear, this, [this] {
        appDelegate_.dashboardWillAppear([this] {
            tasks_.onMainThread([controller = QPointer(&viewModel_)] {
                if (controller) {
                    controller->shutdown(); // which resets the fans, unless that has been done
                }
            });
        });
    });
    connect(&shell_, &DesktopShell::lastWindowClosed, this, [this] {
        if (appDelegate_.applicationShouldTerminateAfterLastWindowClosed()) {
            shell_.terminate();
        }
    });
    connect(&shell_, &DesktopShell::quitRequested, this, &VentaroApp::quit);
}

void VentaroApp::connectStatusItem() {
    connect(&statusItem_, &StatusItem::pressed, &popover_, &Popover::statusItemPressed);
    connect(&statusItem_, &StatusItem::activated, &popover_, &Popover::toggle);
    connect(&statusItem_, &StatusItem::quitRequested, this, &VentaroApp::quit);
    connect(&popover_, &Popover::openDashboardRequested, this, &VentaroApp::openDashboard);
    connect(&popover_, &Popover::quitRequested, this, &VentaroApp::quit);
    connect(&popover_, &Popover::actionStarted, &failures_, &FailureReporter::actionStarts);

    StatusMenu& menu = statusItem_.menu();
    connect(&menu, &StatusMenu::openDashboardRequested, this, &VentaroApp::openDashboard);
    connect(&menu, &StatusMenu::quitRequested, this, &VentaroApp::quit);
    connect(&menu, &StatusMenu::profileChosen, this, [this](ControlProfile profile) {
        failures_.actionStarts();
        viewModel_.selectProfile(profile);
    });
}

int VentaroApp::run() {
    if (!appDelegate_.isLaunchedMinimized()) {
        shell_.openWindow(AppDelegate::dashboardIdentifier);
    } else {
        constexpr std::chrono::seconds untilStartIsOver(2);
        startIsOver_.start(untilStartIsOver);
    }
    appDelegate_.applicationDidFinishLaunching();
    const int exitCode = QApplication::exec();
    endControl();
    return areFansLeftForced_ ? EXIT_FAILURE : exitCode;
}

void VentaroApp::reopen() {
    const bool hasVisibleWindows = shell_.isDashboardVisible();
    if (!appDelegate_.applicationShouldHandleReopen(hasVisibleWindows)) {
        return;
    }
    if (hasVisibleWindows) {
        shell_.activateIgnoringOtherApps();
    } else {
        shell_.openWindow(AppDelegate::dashboardIdentifier);
    }
}

void VentaroApp::openDashboard() {
    popover_.close();
    appDelegate_.openDashboardWindow();
}

void VentaroApp::quit() {
    endControl();
    shell_.terminate();
}

void VentaroApp::endControl() {
    if (const auto failure = viewModel_.shutdown()) {
        areFansLeftForced_ = true;
        desktop_.notify(QString::fromStdString("Die Lüfter sind noch nicht auf macOS-Automatik: " +
                                               *failure + " Freigeben: „ventaroctl auto“"));
        std::cerr << "Ventaro: the fans are still forced: " << *failure
                  << " Free them with \"ventaroctl auto\".\n";
    }
    exitGuard_.disarm();
}

} // namespace ventaro
