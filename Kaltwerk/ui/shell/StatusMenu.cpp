#include "StatusMenu.h"

#include "FanControllerViewModel.h"
#include "NumberFormat.h"

#include <QActionGroup>
#include <string>

namespace ventaro {

namespace {

QString text(std::string_view utf8) {
    // A single "&" would mark a key.
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()))
        .replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

StatusMenu::StatusMenu(FanControllerViewModel& controller, const QString& note)
    : controller_(controller) {
    menu_.setWindowTitle(QStringLiteral("Lüftermenü")); // or it would bear the program's name
    if (!note.isEmpty()) {
        menu_.addAction(text(note.toStdString()))->setEnabled(false);
    }
    temperatures_ = menu_.addAction(QString());
    temperatures_->setEnabled(false);
    belowFans_ = menu_.addSeparator();
    addProfiles();
    menu_.addSeparator();
    connect(menu_.addAction(text(rawValue(ControlProfile::systemAuto))), &QAction::triggered, this,
            [this] { Q_EMIT profileChosen(ControlProfile::systemAuto); });
    connect(menu_.addAction(QStringLiteral("Dashboard")), &QAction::triggered, this,
            &StatusMenu::openDashboardRequested);
    menu_.addSeparator();
    connect(menu_.addAction(QStringLiteral("Beenden")), &QAction::triggered, this,
            &StatusMenu::quitRequested);
    connect(&menu_, &QMenu::aboutToShow, this, &StatusMenu::update);
    update();
}

void StatusMenu::addProfiles() {
    profiles_ = new QActionGroup(&menu_);
    for (const ControlProfile profile : allControlProfiles) {
        QAction* action = menu_.addAction(text(rawValue(profile)));
        action->setCheckable(true);
        profiles_->addAction(action);
        connect(action, &QAction::triggered, this,
                [this, profile] { Q_EMIT profileChosen(profile); });
    }
}

void StatusMenu::update() {
    temperatures_->setText(text("CPU " + formatFixed(controller_.cpuMaxTemp(), 0) + " °C · GPU " +
                                formatFixed(controller_.gpuMaxTemp(), 0) + " °C"));
    const auto& fans = controller_.fans();
    while (fans_.size() > fans.size()) {
        delete fans_.back();
        fans_.pop_back();
    }
    while (fans_.size() < fans.size()) {
        auto* row = new QAction(&menu_);
        row->setEnabled(false);
        menu_.insertAction(belowFans_, row);
        fans_.push_back(row);
    }
    for (std::size_t index = 0; index < fans.size(); ++index) {
        fans_[index]->setText(
            text(fans[index].name + ": " + formatWhole(fans[index].currentRPM) + " RPM"));
    }
    const auto active = static_cast<qsizetype>(controller_.activeProfile());
    profiles_->actions().at(active)->setChecked(true);
}

} // namespace ventaro
