#pragma once

#include <QObject>

namespace ventaro {

class DesktopIntegration;

/// Keeps `Appearance` as the desktop wants programs to look, now and whenever that changes: by what
/// the desktop says, or by the toolkit's palette where it says nothing. Main thread only.
class DesktopAppearance : public QObject {
public:
    explicit DesktopAppearance(const DesktopIntegration& desktop);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();

    const DesktopIntegration& desktop_;
};

} // namespace ventaro
