#pragma once

#include "Clock.h"
#include "RunningApplications.h"
#include "WakeUp.h"

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace ventaro {

/// A clock that ticks when the test says so.
class ManualClock final : public Clock {
public:
    std::chrono::system_clock::time_point now() const override { return time; }
    std::unique_ptr<Ticker> ticker(std::chrono::milliseconds interval) override {
        intervals.push_back(interval);
        wakeUp_ = std::make_shared<WakeUp>();
        return std::make_unique<ManualTicker>(wakeUp_, tickers);
    }
    void tick() const {
        if (wakeUp_) {
            wakeUp_->signal();
        }
    }

    std::chrono::system_clock::time_point time;
    std::vector<std::chrono::milliseconds> intervals;
    int tickers = 0; ///< that exist

private:
    struct ManualTicker final : Ticker {
        ManualTicker(std::shared_ptr<WakeUp> ticks, int& alive)
            : wakeUp(std::move(ticks)), tickers(alive) {
            ++tickers;
        }
        ~ManualTicker() override { --tickers; }
        int descriptor() const override { return wakeUp->descriptor(); }
        void acknowledge() override { wakeUp->take(); }
        const std::shared_ptr<WakeUp> wakeUp;
        int& tickers;
    };
    std::shared_ptr<WakeUp> wakeUp_;
};

struct ListedApplications final : RunningApplications {
    void refresh() override { seen = std::make_shared<List>(list); }
    std::shared_ptr<const List> current() const override { return seen; }
    List list;
    std::shared_ptr<const List> seen = std::make_shared<List>();
};

} // namespace ventaro
