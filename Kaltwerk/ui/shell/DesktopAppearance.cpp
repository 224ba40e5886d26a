#include "DesktopAppearance.h"

#include "Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace ventaro {

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");
const QString contrastKey = QStringLiteral("contrast");
const QString interfaceGroup = QStringLiteral("org.gnome.desktop.interface");
const QString animationsKey = QStringLiteral("enable-animations");

constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
constexpr uint highContrast = 1;

/// A value as older portals wrap it: in one variant more.
QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = qvariant_cast<QDBusVariant>(value).variant();
    }
    return value;
}

bool isPaletteDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

} // namespace

DesktopAppearance::DesktopAppearance() {
    QCoreApplication::instance()->installEventFilter(this);
    update();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(portalName, portalPath, settings, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(appearanceGroup, colorSchemeKey);
    ask(appearanceGroup, contrastKey);
    ask(interfaceGroup, animationsKey);
}

void DesktopAppearance::ask(const QString& group, const QString& key) {
    auto question =
        QDBusMessage::createMethodCall(portalName, portalPath, settings, QStringLiteral("Read"));
    question << group << key;
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) {
            follow(group, key, reply.value().variant());
        }
        answer->deleteLater();
    });
}

void DesktopAppearance::settingChanged(const QString& group, const QString& key,
                                       const QDBusVariant& value) {
    follow(group, key, value.variant());
}

void DesktopAppearance::follow(const QString& group, const QString& key, const QVariant& value) {
    const QVariant plain = unwrapped(value);
    Appearance& appearance = Appearance::shared();
    if (group == appearanceGroup && key == colorSchemeKey) {
        colorScheme_ = plain.toUInt();
        update();
    } else if (group == appearanceGroup && key == contrastKey) {
        appearance.setHighContrast(plain.toUInt() == highContrast);
    } else if (group == interfaceGroup && key == animationsKey) {
        appearance.setReducedMotion(!plain.toBool());
    }
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qGuiApp) {
        update();
    }
    return false;
}

void DesktopAppearance::update() {
    const bool isChosen = colorScheme_ == preferDark || colorScheme_ == preferLight;
    Appearance::shared().setDark(isChosen ? colorScheme_ == preferDark : isPaletteDark());
}

} // namespace ventaro
