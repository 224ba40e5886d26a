#pragma once

#include "ControllerFixture.h"
#include "ThreadTaskRunner.h"
#include "VentaroApp.h"
#include "X11Desktop.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QTimer>
#include <QWindow>

namespace ventaro {

/// The window on screen whose title begins with `title`; null if there is none.
inline QWindow* windowTitled(const char* title) {
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (window->title().startsWith(QString::fromUtf8(title)) && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

inline bool appears(const char* title) {
    return processUntil([title] { return windowTitled(title) != nullptr; });
}

inline bool hasFocus(const char* title) {
    return processUntil([title] {
        QWindow* window = windowTitled(title);
        return window != nullptr && QGuiApplication::focusWindow() == window;
    });
}

/// The whole application with its real windows, on a machine in this process and no desktop.
class ShellFixture : public ControllerFixture {
protected:
    /// Runs an application; `script` plays the user inside its event loop and the end of it is
    /// `quit` unless it has found another one. The helper's requests since its start are returned.
    std::vector<std::string> run(const QStringList& arguments,
                                 const std::function<void(VentaroApp&)>& script, int exitCode = 0) {
        VentaroApp app({machine_.service, client_, inspector_, root_, session_, runner_}, desktop_,
                       {arguments, {note_, windowSizeFile_, grace_}});
        bool hasEnded = false;
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, &app, [&] { hasEnded = true; });
        QTimer::singleShot(0, &app, [&] {
            settle();
            helper_.taken();
            script(app);
            if (!hasEnded) {
                app.quit();
            }
        });
        EXPECT_EQ(app.run(), exitCode);
        runner_.finishAll();
        return helper_.taken();
    }
    static bool opensDashboard(VentaroApp& app) {
        return processUntil([&] { return app.shell().isDashboardVisible(); });
    }
    /// Lets everything happen that is under way or queued.
    void settle() {
        runner_.finishAll();
        QCoreApplication::processEvents();
    }
    /// Chooses from the status item's menu, and lets happen what follows.
    void choose(VentaroApp& app, const char* entry) {
        QMenu& menu = app.statusItem().menu().menu();
        Q_EMIT menu.aboutToShow();
        QAction* found = nullptr;
        for (QAction* action : menu.actions()) { // the last with that name
            found = action->text() == QString::fromUtf8(entry) ? action : found;
        }
        ASSERT_NE(found, nullptr) << entry;
        found->trigger();
        settle();
    }

    ThreadTaskRunner runner_;
    std::chrono::milliseconds grace_ = std::chrono::minutes(1);
    QString note_;
    const std::filesystem::path windowSizeFile_ = folder_.path() / "kept/window-size";
    struct : X11Desktop {
        void notify(const QString& text) override { told.push_back(text.toStdString()); }
        std::vector<std::string> told;
    } desktop_;
};

} // namespace ventaro
