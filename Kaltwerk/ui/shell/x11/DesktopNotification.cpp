#include "DesktopNotification.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDebug>
#include <QStringList>
#include <QVariantMap>

namespace ventaro {

namespace {

QDBusMessage notification(const QString& text) {
    const QString name = QStringLiteral("org.freedesktop.Notifications");
    const QString desktopEntry = QStringLiteral("com.ventaro.app");
    const uint replacedNotification = 0;
    const int desktopsOwnTime = -1;
    auto message = QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/freedesktop/Notifications"), name, QStringLiteral("Notify"));
    message << QStringLiteral("Ventaro") << replacedNotification << desktopEntry
            << QStringLiteral("Ventaro") << text.toHtmlEscaped() << QStringList()
            << QVariantMap{{QStringLiteral("desktop-entry"), desktopEntry}} << desktopsOwnTime;
    return message;
}

} // namespace

void notifyDesktop(const QString& text) {
    auto* answer = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(notification(text)), QCoreApplication::instance());
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, text] {
        const QDBusPendingReply<uint> reply = *answer;
        if (reply.isError()) {
            qWarning().noquote() << "The desktop shows no notification, which would say:" << text;
        }
        answer->deleteLater();
    });
}

} // namespace ventaro
