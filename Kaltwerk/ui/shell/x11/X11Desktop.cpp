#include "X11Desktop.h"

#include "DesktopNotification.h"
#include "SettingsPortal.h"
#include "X11.h"
#include "X11StatusItem.h"

namespace ventaro {

X11Desktop::X11Desktop() : portal_(std::make_unique<SettingsPortal>()) {
    connect(portal_.get(), &SettingsPortal::hintsChanged, this,
            &DesktopIntegration::appearanceHintsChanged);
}

X11Desktop::~X11Desktop() = default;

AppearanceHints X11Desktop::appearanceHints() const { return portal_->hints(); }

std::unique_ptr<DesktopStatusItem> X11Desktop::makeStatusItem(QMenu& menu,
                                                              const StatusItemText& text) {
    return std::make_unique<X11StatusItem>(menu, text);
}

void X11Desktop::markAsUtilityWindow(QWindow& window) { ventaro::markAsUtilityWindow(window); }

bool X11Desktop::isTransparencyShown() const { return ventaro::isTransparencyShown(); }

void X11Desktop::notify(const QString& text) { notifyDesktop(text); }

std::unique_ptr<DesktopIntegration> makeDesktopIntegration() {
    return std::make_unique<X11Desktop>();
}

} // namespace ventaro
