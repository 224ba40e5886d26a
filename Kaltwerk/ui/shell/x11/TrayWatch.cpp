#include "TrayWatch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace ventaro {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
constexpr int answerMilliseconds = 2000; ///< then it counts as none, until the answer comes

} // namespace

TrayWatch::TrayWatch() {
    connect(&x11_, &X11SystemTray::presenceChanged, this, &TrayWatch::changed);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        isDecided_ = true;
        return;
    }
    watcher_.setConnection(bus);
    watcher_.addWatchedService(watcherName);
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::askWatcher);
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setHost(false); });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus.connect(watcherName, watcherPath, watcherName, QString::fromLatin1(signal), this,
                    SLOT(askWatcher()));
    }
    askWatcher();
}

TrayKind TrayWatch::kind() const {
    if (hasHost_ && only_ != TrayKind::x11) {
        return TrayKind::notifier;
    }
    return x11_.isPresent() && only_ != TrayKind::notifier ? TrayKind::x11 : TrayKind::none;
}

void TrayWatch::askWatcher() { ask(answerMilliseconds); }

void TrayWatch::ask(int milliseconds) {
    auto question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(question, milliseconds), this);
    latestAnswer_ = answer;
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (answer != latestAnswer_) {
            return;
        }
        setHost(reply.isValid() && reply.value().variant().toBool());
        if (reply.error().type() == QDBusError::NoReply) {
            constexpr int asLongAsTheBusWaits = -1;
            ask(asLongAsTheBusWaits);
        }
    });
}

void TrayWatch::setHost(bool isRegistered) {
    const bool wasDecided = std::exchange(isDecided_, true);
    if (std::exchange(hasHost_, isRegistered) != isRegistered || !wasDecided) {
        Q_EMIT changed();
    }
}

} // namespace ventaro
