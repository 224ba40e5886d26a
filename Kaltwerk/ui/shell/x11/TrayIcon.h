#pragma once

#include <QMenu>
#include <QObject>
#include <QString>
#include <QSystemTrayIcon>

namespace ventaro {

/// The status item in the desktop's tray: the symbol above the temperature, the whole summary as
/// its tooltip. Only to be made while there is a tray. Main thread only.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    /// `menu` must outlive the icon.
    explicit TrayIcon(QMenu& menu);
    /// `number` is what the icon has room for.
    void setText(const QString& text, const QString& number);

Q_SIGNALS:
    /// With the icon's place on the screen; empty if the tray does not tell.
    void activated(QRect place);

private:
    void draw();

    QSystemTrayIcon icon_;
    QString number_;
};

} // namespace ventaro
