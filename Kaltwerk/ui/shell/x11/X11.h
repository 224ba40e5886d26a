#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <cstdint>

class QWindow;
struct xcb_connection_t;

namespace ventaro {

/// As `DesktopIntegration` says it; does nothing where there is no X11.
void markAsUtilityWindow(QWindow& window);

/// As `DesktopIntegration` says it; on X11 only while a compositor runs.
bool isTransparencyShown();

/// Knows whether the X11 screen has a system tray and hears when one comes or goes; costs nothing
/// meanwhile. Without X11 there is none. Main thread only.
class X11SystemTray : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11SystemTray();
    ~X11SystemTray() override;

    bool isPresent() const { return owner_ != 0; }
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

Q_SIGNALS:
    void presenceChanged();

private:
    void look();

    xcb_connection_t* connection_ = nullptr;
    std::uint32_t selection_ = 0; ///< an atom
    std::uint32_t manager_ = 0;   ///< an atom
    std::uint32_t owner_ = 0;     ///< a window; 0 without a tray
};

} // namespace ventaro
