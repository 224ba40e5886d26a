#pragma once

#include "ApplicationShell.h"
#include "QmlScene.h"
#include "WindowSizeFile.h"

#include <QObject>

namespace ventaro {

class FanControllerViewModel;
class TaskRunner;

/// The dashboard in its window. Main thread only.
class DashboardWindow final : public QObject, public ApplicationWindow {
    Q_OBJECT

public:
    static constexpr QSize defaultSize{980, 680};
    static constexpr QSize minimumSize{620, 480};

    /// `note`: what the dashboard says about the machine. `tasks` is the queue by which the window
    /// comes on screen.
    DashboardWindow(FanControllerViewModel& controller, const QString& note, WindowSizeFile size,
                    TaskRunner& tasks);

    /// Keeps its size if it is still on screen.
    ~DashboardWindow() override;
    DashboardWindow(const DashboardWindow&) = delete;
    DashboardWindow& operator=(const DashboardWindow&) = delete;

    QString title() const override;
    bool isVisible() const override;
    void orderOut() override;
    void close() override;
    void makeKeyAndOrderFront() override;

    /// Whether it is on screen, as an icon too, or about to be.
    bool isInUse() const;
    /// Whether the user can read it, and with it the status line.
    bool isReadable() const;
    QQuickView& window() { return scene_.window(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The content is about to come on screen.
    void willAppear();
    void willClose();
    /// The user has closed it.
    void closed();
    void hidden();

private:
    void show();
    void keepSize();

    TaskRunner& tasks_;
    const WindowSizeFile sizeFile_;
    QmlScene scene_;
    bool isAppearing_ = false;
};

} // namespace ventaro
