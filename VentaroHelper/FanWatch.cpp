#include "FanWatch.h"

#include "SensorCatalog.h"

#include <chrono>

namespace ventaro {

namespace {

constexpr std::chrono::seconds interval(5);

bool isJudgedBy(const CatalogSensor& sensor) {
    return sensor.category == SensorCategory::cpu || sensor.category == SensorCategory::gpu;
}

} // namespace

FanWatch::~FanWatch() {
    if (ticker_) {
        loop_.unwatch(ticker_->descriptor());
    }
}

void FanWatch::begin() {
    startTicking();
    startLook();
}

void FanWatch::willForce(int fan, const FanRange& range) {
    startTicking();
    ranges_[fan] = range;
    // What the look under way has found of it is no longer so.
    isAnyForced_ = true;
    std::erase_if(lowFans_, [fan](const FanRelease::Fan& low) { return low.index == fan; });
}

void FanWatch::startTicking() {
    if (ticker_) {
        return;
    }
    ticker_ = clock_.ticker(interval);
    loop_.watch(ticker_->descriptor(), [this] {
        ticker_->acknowledge();
        if (!due()) { // a slow SMC stretches a look: the next one begins when it has ended
            startLook();
        }
    });
}

void FanWatch::startLook() {
    look_ = {};
    isAnyForced_ = false;
    lowFans_.clear();
    due_ = FanRelease::Clock::now();
    pieces_.emplace_back([this] { conclude(); });
    for (const CatalogSensor& sensor : sensorCatalog()) {
        if (isJudgedBy(sensor)) {
            pieces_.emplace_back(
                [this, key = sensor.key] { look_.see(key, smc_.readDouble(key)); });
        }
    }
    pieces_.emplace_back([this] {
        for (const FanRelease::Fan& fan : FanRelease::fans(smc_.steerableFanCount())) {
            pieces_.emplace_back([this, fan] { lookAtFan(fan); });
        }
    });
}

void FanWatch::lookAtFan(const FanRelease::Fan& fan) {
    if (smc_.readFanForced(fan.index) == false) {
        return; // what cannot be read may be forced
    }
    isAnyForced_ = true;
    pieces_.emplace_back([this, fan] {
        if (FanGuard::isLow(smc_.readFanTargetRPM(fan.index), ranges_[fan.index])) {
            lowFans_.push_back(fan);
        }
    });
    if (!ranges_.contains(fan.index)) {
        pieces_.emplace_back(
            [this, index = fan.index] { ranges_[index] = smc_.readFanRange(index); });
    }
}

std::optional<FanRelease::Clock::time_point> FanWatch::due() const {
    return pieces_.empty() ? std::nullopt : std::optional(due_);
}

void FanWatch::step() {
    const auto piece = std::move(pieces_.back());
    pieces_.pop_back();
    piece();
    due_ = FanRelease::Clock::now();
}

void FanWatch::conclude() {
    const auto reason = guard_.judge(look_);
    if (reason && !lowFans_.empty()) {
        guard_.intervened(*reason);
        if (release_.releaseLater(lowFans_)) {
            log_.error(
                *reason == FanGuard::Reason::hot
                    ? "freeing fans that are forced low: the machine is too hot"
                    : "freeing fans that are forced low: the CPU's temperature does not read");
        }
    }
    if (!isAnyForced_) {
        guard_.nothingIsForced();
        if (!guard_.cause()) {
            loop_.unwatch(ticker_->descriptor());
            ticker_.reset();
        }
    }
}

std::optional<std::string> FanWatch::refusal(double rpm, const FanRange& range) const {
    if (!guard_.cause() || !FanGuard::isLow(range.limited(rpm), range)) {
        return std::nullopt;
    }
    return std::string(*guard_.cause() == FanGuard::Reason::hot
                           ? "Der Rechner war zu heiß. Bis er "
                           : "Die CPU-Temperatur war nicht lesbar. Bis sie ") +
           "eine halbe Minute unter 90 °C war, nimmt der Helper nur macOS-Automatik oder "
           "mindestens 90 % an.";
}

} // namespace ventaro
