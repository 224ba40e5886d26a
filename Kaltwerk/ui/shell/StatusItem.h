#pragma once

#include "DesktopIntegration.h"
#include "StatusMenu.h"

namespace ventaro {

class FanControllerViewModel;

/// The program's place on the desktop that is always there. Main thread only.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// `note`: what the item says about the machine; may be empty.
    StatusItem(DesktopIntegration& desktop, FanControllerViewModel& controller, QString note);
    StatusMenu& menu() { return menu_; }

Q_SIGNALS:
    /// As those of the desktop's item.
    void quitRequested();
    void pressed();
    void activated(QRect place);

private:
    StatusItemText text() const;

    FanControllerViewModel& controller_;
    const QString note_;
    StatusMenu menu_;
    const std::unique_ptr<DesktopStatusItem> item_;
};

} // namespace ventaro
