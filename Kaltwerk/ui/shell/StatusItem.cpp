#include "StatusItem.h"

#include "FanControllerViewModel.h"
#include "NumberFormat.h"

#include <utility>

namespace ventaro {

StatusItem::StatusItem(DesktopIntegration& desktop, FanControllerViewModel& controller,
                       QString note)
    : controller_(controller),
      note_(std::move(note)),
      menu_(controller, note_),
      item_(desktop.makeStatusItem(menu_.menu(), text())) {
    for (const auto changed : {&FanControllerViewModel::menuBarSummaryTextChanged,
                               &FanControllerViewModel::isSmcLostChanged,
                               &FanControllerViewModel::isCpuTempKnownChanged}) {
        connect(&controller, changed, this, [this] { item_->setText(text()); });
    }
    connect(item_.get(), &DesktopStatusItem::quitRequested, this, &StatusItem::quitRequested);
    connect(item_.get(), &DesktopStatusItem::pressed, this, &StatusItem::pressed);
    connect(item_.get(), &DesktopStatusItem::activated, this, &StatusItem::activated);
}

StatusItemText StatusItem::text() const {
    const bool isKnown = controller_.isCpuTempKnown() && controller_.cpuMaxTemp() > 0;
    return {controller_.isSmcLost() ? QStringLiteral("SMC antwortet nicht")
                                    : controller_.menuBarSummaryText(),
            isKnown ? QString::fromStdString(formatFixed(controller_.cpuMaxTemp(), 0)) : QString(),
            note_};
}

} // namespace ventaro
