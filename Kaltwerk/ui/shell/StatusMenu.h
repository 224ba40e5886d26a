#pragma once

#include "ControlProfile.h"

#include <QMenu>
#include <QObject>
#include <vector>

class QActionGroup;

namespace ventaro {

class FanControllerViewModel;

/// The status item's menu: temperatures, fans, profiles and the program's commands. Its rows are
/// brought up to date when it opens. Main thread only.
class StatusMenu : public QObject {
    Q_OBJECT

public:
    /// `note`: what the menu says about the machine; may be empty.
    StatusMenu(FanControllerViewModel& controller, const QString& note);
    QMenu& menu() { return menu_; }

Q_SIGNALS:
    void profileChosen(ventaro::ControlProfile profile);
    void openDashboardRequested();
    void quitRequested();

private:
    void addProfiles();
    void update();

    FanControllerViewModel& controller_;
    QMenu menu_;
    QAction* temperatures_ = nullptr;
    QAction* belowFans_ = nullptr;
    std::vector<QAction*> fans_;
    QActionGroup* profiles_ = nullptr;
};

} // namespace ventaro
