#include "MonitoringTimer.h"

#include <QAbstractEventDispatcher>
#include <QThread>

namespace ventaro {

namespace {

/// 1 in the main loop, more in a nested one.
bool isLoopNested() { return QThread::currentThread()->loopLevel() > 1; }

} // namespace

MonitoringTimer::MonitoringTimer(Clock& clock, std::chrono::milliseconds interval,
                                 std::function<void()> fire)
    : ticker_(clock.ticker(interval)),
      fire_(std::move(fire)),
      notifier_(ticker_->descriptor(), QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { onTick(); });
}

void MonitoringTimer::onTick() {
    if (isLoopNested()) {
        waitForMainLoop();
        return;
    }
    ticker_->acknowledge();
    fire_();
}

void MonitoringTimer::waitForMainLoop() {
    // The tick stays unread, so that it is there when the notifier looks again.
    notifier_.setEnabled(false);
    loopWatch_ = QObject::connect(QAbstractEventDispatcher::instance(),
                                  &QAbstractEventDispatcher::aboutToBlock, &notifier_, [this] {
                                      if (!isLoopNested()) {
                                          QObject::disconnect(loopWatch_);
                                          notifier_.setEnabled(true);
                                      }
                                  });
}

} // namespace ventaro
