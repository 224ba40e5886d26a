#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>

namespace ventaro {

/// Lets fan requests through until the program is on its way out. Any thread.
class DispatchGate {
public:
    /// What `exchange` returns; no value, and no exchange, once the gate is closed. Throws what
    /// `exchange` throws.
    template<typename Exchange>
    auto pass(Exchange exchange) -> std::optional<decltype(exchange())> {
        const Passage passage(*this);
        return passage.isGranted() ? std::optional(exchange()) : std::nullopt;
    }

    /// Lets nothing through any more and waits for the exchanges that are under way.
    void close() {
        std::unique_lock guard(lock_);
        isClosed_ = true;
        changed_.wait(guard, [this] { return underWay_ == 0; });
    }

    bool isClosed() {
        const std::lock_guard guard(lock_);
        return isClosed_;
    }

private:
    class Passage {
    public:
        explicit Passage(DispatchGate& gate) : gate_(gate) {
            const std::lock_guard guard(gate_.lock_);
            isGranted_ = !gate_.isClosed_;
            gate_.underWay_ += isGranted_ ? 1 : 0;
        }
        ~Passage() {
            const std::lock_guard guard(gate_.lock_);
            gate_.underWay_ -= isGranted_ ? 1 : 0;
            gate_.changed_.notify_all();
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
    bool isClosed_ = false;
    int underWay_ = 0;
};

} // namespace ventaro
