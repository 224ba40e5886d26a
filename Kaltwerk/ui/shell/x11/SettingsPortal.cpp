#include "SettingsPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

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

} // namespace

SettingsPortal::SettingsPortal() {
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

void SettingsPortal::ask(const QString& group, const QString& key) {
    auto question =
        QDBusMessage::createMethodCall(portalName, portalPath, settings, QStringLiteral("Read"));
    question << group << key;
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) {
            take(group, key, reply.value().variant());
        }
        answer->deleteLater();
    });
}

void SettingsPortal::settingChanged(const QString& group, const QString& key,
                                    const QDBusVariant& value) {
    take(group, key, value.variant());
}

void SettingsPortal::take(const QString& group, const QString& key, const QVariant& value) {
    const QVariant plain = unwrapped(value);
    if (group == appearanceGroup && key == colorSchemeKey) {
        const uint scheme = plain.toUInt();
        const bool isChosen = scheme == preferDark || scheme == preferLight;
        hints_.isDark = isChosen ? std::optional(scheme == preferDark) : std::nullopt;
    } else if (group == appearanceGroup && key == contrastKey) {
        hints_.highContrast = plain.toUInt() == highContrast;
    } else if (group == interfaceGroup && key == animationsKey) {
        hints_.reducedMotion = !plain.toBool();
    }
    Q_EMIT hintsChanged();
}

} // namespace ventaro
