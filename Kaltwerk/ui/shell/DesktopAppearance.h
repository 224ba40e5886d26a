#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace ventaro {

/// Finds out how the desktop wants programs to look, now and whenever that changes, and keeps
/// `Appearance` up to date: from the settings portal, or from the toolkit's palette where the
/// portal says nothing. Main thread only.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    DesktopAppearance();
    bool eventFilter(QObject* watched, QEvent* event) override;

    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& group, const QString& key);
    void follow(const QString& group, const QString& key, const QVariant& value);
    void update();

    uint colorScheme_ = 0; ///< the portal's: 1 dark, 2 light, otherwise none
};

} // namespace ventaro
