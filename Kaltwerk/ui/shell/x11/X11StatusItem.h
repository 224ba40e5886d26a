#pragma once

#include "DesktopIntegration.h"
#include "StatusItemWindow.h"
#include "TrayIcon.h"
#include "TrayWatch.h"

namespace ventaro {

/// The status item in the form that the desktop has room for: an icon in either kind of tray, or a
/// window of its own as long as there is no tray. Main thread only.
class X11StatusItem : public DesktopStatusItem {
    Q_OBJECT

public:
    X11StatusItem(QMenu& menu, const StatusItemText& text);
    void setText(const StatusItemText& text) override;

private:
    void decide();
    void makeTrayIcon();
    void makeWindow();
    void showText();

    QMenu& menu_;
    StatusItemText text_;
    TrayWatch trays_;
    std::unique_ptr<TrayIcon> icon_;
    std::unique_ptr<StatusItemWindow> window_;
};

} // namespace ventaro
