#pragma once

#include <QObject>
#include <QString>

namespace ventaro {

/// A panel's part of the tray protocol: takes the items that register.
class StandInWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    QString item;

    // NOLINTNEXTLINE(readability-identifier-naming): the protocol's name
    Q_SLOT void RegisterStatusNotifierItem(const QString& service) { item = service; }
};

} // namespace ventaro
