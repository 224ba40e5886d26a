#include "Appearance.h"

#include <QFont>
#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace ventaro {

Appearance& Appearance::shared() {
    static Appearance appearance;
    return appearance;
}

Appearance* Appearance::create(QQmlEngine* /*engine*/, QJSEngine* /*scriptEngine*/) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

qreal Appearance::pointsPerPixel() const {
    constexpr qreal pointsPerInch = 72;
    constexpr qreal usualDotsPerInch = 96;
    const QScreen* screen = QGuiApplication::primaryScreen();
    return pointsPerInch / (screen != nullptr ? screen->logicalDotsPerInchY() : usualDotsPerInch);
}

QString Appearance::fontFamily() const { return QGuiApplication::font().family(); }

void Appearance::setDark(bool dark) {
    if (std::exchange(dark_, dark) != dark) {
        Q_EMIT darkChanged();
    }
}

void Appearance::setHighContrast(bool high) {
    if (std::exchange(highContrast_, high) != high) {
        Q_EMIT highContrastChanged();
    }
}

void Appearance::setReducedMotion(bool reduced) {
    if (std::exchange(reducedMotion_, reduced) != reduced) {
        Q_EMIT reducedMotionChanged();
    }
}

} // namespace ventaro
