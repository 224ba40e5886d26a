#include "ControlWatcher.h"

#include "BackgroundProgram.h"
#include "SystemCalls.h"
#include "WatcherLink.h"

#include <unistd.h>

#include <QSocketNotifier>
#include <chrono>
#include <system_error>
#include <utility>

namespace ventaro {

namespace {

constexpr std::chrono::milliseconds pauseBetweenStarts(1000); ///< of one that cannot stay

} // namespace

std::filesystem::path watcherProgram() {
    const auto self = executablePath();
    const std::filesystem::path program = self ? self->parent_path() / "VentaroWatcher" : "";
    std::error_code isMissing;
    return std::filesystem::exists(program, isMissing) ? program : "";
}

ControlWatcher::ControlWatcher(std::filesystem::path program, std::filesystem::path controlLock,
                               std::filesystem::path helperSocket)
    : program_(std::move(program)),
      controlLock_(std::move(controlLock)),
      helperSocket_(std::move(helperSocket)) {
    restart_.setSingleShot(true);
    connect(&restart_, &QTimer::timeout, this, &ControlWatcher::start);
}

ControlWatcher::~ControlWatcher() = default;

void ControlWatcher::begin() {
    if (program_.empty() || std::exchange(isWanted_, true)) {
        return;
    }
    start();
}

void ControlWatcher::end() {
    if (!std::exchange(isWanted_, false)) {
        return;
    }
    restart_.stop();
    lifeEnds_.reset();
    if (link_) {
        [[maybe_unused]] const ssize_t written = ::write(link_.get(), &allIsWell, 1);
    }
    link_.reset();
    life_.reset();
}

void ControlWatcher::start() {
    lastStart_.start();
    Pipe link = makePipe(Blocking::yes);
    Pipe life = makePipe(Blocking::yes);
    if (!link.reading || !life.reading ||
        !startInBackground(program_,
                           {"VentaroWatcher", controlLock_.string(), helperSocket_.string()},
                           link.reading.get(), life.writing.get())) {
        restart_.start(pauseBetweenStarts);
        return;
    }
    link_ = std::move(link.writing);
    life_ = std::move(life.reading);
    lifeEnds_ = std::make_unique<QSocketNotifier>(life_.get(), QSocketNotifier::Read);
    connect(lifeEnds_.get(), &QSocketNotifier::activated, this, &ControlWatcher::hasEnded);
}

void ControlWatcher::hasEnded() {
    lifeEnds_.release()->deleteLater(); // it is just speaking
    life_.reset();
    link_.reset();
    if (lastStart_.hasExpired(pauseBetweenStarts.count())) {
        start();
    } else {
        restart_.start(pauseBetweenStarts);
    }
}

} // namespace ventaro
