#pragma once

#include "StatusItemWindow.h"
#include "StatusMenu.h"
#include "TrayIcon.h"
#include "TrayWatch.h"

#include <QObject>
#include <memory>

namespace ventaro {

class FanControllerViewModel;

/// The program's place on the desktop that is always there: an icon in the tray, or a window of its
/// own as long as there is no tray. Main thread only.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// `note`: what the item says about the machine; may be empty.
    StatusItem(FanControllerViewModel& controller, QString note);
    StatusMenu& menu() { return menu_; }

Q_SIGNALS:
    /// The user has pressed the keys for the end of the program.
    void quitRequested();
    /// The user reaches for the item, with whatever that does to the focus.
    void pressed();
    /// The user has clicked the item, which lies at `place` of the screen.
    void activated(QRect place);

private:
    void decide();
    void makeTrayIcon();
    void makeWindow();
    void showText();

    FanControllerViewModel& controller_;
    const QString note_;
    StatusMenu menu_;
    TrayWatch trays_;
    std::unique_ptr<TrayIcon> icon_;
    std::unique_ptr<StatusItemWindow> window_;
};

} // namespace ventaro
