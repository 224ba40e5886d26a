#pragma once

#include "X11.h"

#include <QDBusServiceWatcher>
#include <QObject>

class QDBusPendingCallWatcher;

namespace ventaro {

/// Which kind of tray the desktop offers.
enum class TrayKind {
    none,
    notifier, ///< a host of status notifier items, on the session bus
    x11,      ///< a system tray of the X11 screen
};

/// Knows which tray there is and hears when that changes. Main thread only.
class TrayWatch : public QObject {
    Q_OBJECT

public:
    TrayWatch();
    /// `none` until the session bus has answered, unless X11 has a tray.
    TrayKind kind() const;
    /// Whether all have been asked.
    bool isDecided() const { return isDecided_; }
    /// The toolkit decides for one kind when the first tray icon is made, and keeps to it: from now
    /// on the other kind does not count.
    void keepTo(TrayKind kind) { only_ = kind; }

Q_SIGNALS:
    void changed();

private:
    Q_SLOT void askWatcher();
    void ask(int milliseconds);
    void setHost(bool isRegistered);

    X11SystemTray x11_;
    QDBusServiceWatcher watcher_;
    const QDBusPendingCallWatcher* latestAnswer_ = nullptr; ///< to compare with only
    bool hasHost_ = false;
    bool isDecided_ = false;
    TrayKind only_ = TrayKind::none;
};

} // namespace ventaro
