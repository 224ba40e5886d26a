#include "DesktopAppearance.h"

#include "Appearance.h"
#include "DesktopIntegration.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace ventaro {

namespace {

bool isPaletteDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

} // namespace

DesktopAppearance::DesktopAppearance(const DesktopIntegration& desktop) : desktop_(desktop) {
    QCoreApplication::instance()->installEventFilter(this);
    connect(&desktop, &DesktopIntegration::appearanceHintsChanged, this,
            &DesktopAppearance::update);
    update();
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qGuiApp) {
        update();
    }
    return false;
}

void DesktopAppearance::update() {
    const AppearanceHints hints = desktop_.appearanceHints();
    Appearance& appearance = Appearance::shared();
    appearance.setDark(hints.isDark.value_or(isPaletteDark()));
    appearance.setHighContrast(hints.highContrast);
    appearance.setReducedMotion(hints.reducedMotion);
}

} // namespace ventaro
