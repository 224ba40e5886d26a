#pragma once

#include "Clock.h"

#include <QSocketNotifier>
#include <chrono>
#include <functional>
#include <memory>

namespace ventaro {

/// Fires at a steady pace on the main thread while the main event loop itself runs. A nested loop
/// (a menu, a modal dialog) holds it back: what was missed meanwhile fires once when that has
/// ended. Main thread only.
class MonitoringTimer {
public:
    /// The first fire comes one interval from now. Throws std::system_error if the process is out
    /// of descriptors.
    MonitoringTimer(Clock& clock, std::chrono::milliseconds interval, std::function<void()> fire);

private:
    void onTick();
    void waitForMainLoop();

    std::unique_ptr<Ticker> ticker_;
    std::function<void()> fire_;
    QSocketNotifier notifier_;
    QMetaObject::Connection loopWatch_;
};

} // namespace ventaro
