#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

namespace ventaro {

/// Lets the exchanges of one wish through, that of the newest, one at a time and until the program
/// is on its way out. So an older wish never overtakes a newer one. Any thread.
class DispatchGate {
public:
    using Wish = std::uint64_t;

    /// From now on this wish is the newest, and nothing of the others passes any more.
    Wish newWish() {
        const std::lock_guard guard(lock_);
        return ++newest_;
    }

    bool isNewest(Wish wish) {
        const std::lock_guard guard(lock_);
        return wish == newest_;
    }

    /// What `exchange` returns; no value, and no exchange, once there is a newer wish or the gate
    /// is closed. Waits for the exchange that is under way. Throws what `exchange` throws.
    template<typename Exchange>
    auto pass(Wish wish, Exchange exchange) -> std::optional<decltype(exchange())> {
        const Passage passage(*this, wish);
        return passage.isGranted() ? std::optional(exchange()) : std::nullopt;
    }

    /// Waits for the exchange that is under way.
    void settle() {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [this] { return !isUnderWay_; });
    }

    /// Lets nothing through any more and waits for the exchange that is under way.
    void close() {
        std::unique_lock guard(lock_);
        isClosed_ = true;
        changed_.notify_all();
        changed_.wait(guard, [this] { return !isUnderWay_; });
    }

    bool isClosed() {
        const std::lock_guard guard(lock_);
        return isClosed_;
    }

private:
    class Passage {
    public:
        Passage(DispatchGate& gate, Wish wish) : gate_(gate) {
            std::unique_lock guard(gate_.lock_);
            const auto isOver = [&] { return gate_.isClosed_ || wish != gate_.newest_; };
            gate_.changed_.wait(guard, [&] { return isOver() || !gate_.isUnderWay_; });
            isGranted_ = !isOver();
            gate_.isUnderWay_ = gate_.isUnderWay_ || isGranted_;
        }
        ~Passage() {
            const std::lock_guard guard(gate_.lock_);
            if (isGranted_) {
                gate_.isUnderWay_ = false;
                gate_.changed_.notify_all();
            }
        }
        Passage(const Passage&) = delete;
        Passage& operator=(const Passage&) = delete;
        bool isGranted() const { return isGranted_; }

    private:
        DispatchGate& gate_;
        bool isGranted_ = false;
    };

    std::mutex lock_; ///< guards the fields below
    std::condition_variable changed_;
    Wish newest_ = 0;
    bool isClosed_ = false;
    bool isUnderWay_ = false;
};

} // namespace ventaro
