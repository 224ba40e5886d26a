#pragma once

#include "DesktopIntegration.h"

namespace ventaro {

class SettingsPortal;

/// A desktop of the X11 or Wayland kind: services on the session bus, and on X11 what the window
/// manager is told of a window. Main thread only.
class X11Desktop : public DesktopIntegration {
public:
    X11Desktop();
    ~X11Desktop() override;

    AppearanceHints appearanceHints() const override;
    std::unique_ptr<DesktopStatusItem> makeStatusItem(QMenu& menu,
                                                      const StatusItemText& text) override;
    void markAsUtilityWindow(QWindow& window) override;
    bool isTransparencyShown() const override;
    void notify(const QString& text) override;

private:
    std::unique_ptr<SettingsPortal> portal_;
};

} // namespace ventaro
