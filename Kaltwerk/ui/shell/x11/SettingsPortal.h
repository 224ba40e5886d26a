#pragma once

#include "DesktopIntegration.h"

#include <QDBusVariant>

namespace ventaro {

/// Asks the desktop's settings portal how programs are to look, and hears when that changes. Where
/// there is no portal nothing is ever known. Main thread only.
class SettingsPortal : public QObject {
    Q_OBJECT

public:
    SettingsPortal();
    const AppearanceHints& hints() const { return hints_; }

Q_SIGNALS:
    void hintsChanged();

private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void ask(const QString& group, const QString& key);
    void take(const QString& group, const QString& key, const QVariant& value);

    AppearanceHints hints_;
};

} // namespace ventaro
