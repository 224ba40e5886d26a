#pragma once

#include "TaskRunner.h"

#include <cstddef>
#include <deque>

namespace ventaro {

/// Tasks that run when the test says so, on its own thread, one after the other.
class ManualTasks final : public TaskRunner {
public:
    void detach(TaskPriority /*priority*/, Work work) override { work_.push_back(std::move(work)); }
    void onMainThread(Action action) override { actions_.push_back(std::move(action)); }
    /// Runs the work of task number `index`, without its result reaching the main thread.
    void work(std::size_t index = 0) {
        const auto work = std::move(work_.at(index));
        work_.erase(work_.begin() + static_cast<std::ptrdiff_t>(index));
        actions_.push_back(work());
    }
    void deliver() {
        for (; !actions_.empty(); actions_.pop_front()) {
            if (actions_.front()) {
                actions_.front()();
            }
        }
    }
    void runAll() {
        while (!work_.empty() || !actions_.empty()) {
            if (!work_.empty()) {
                work();
            }
            deliver();
        }
    }
    std::size_t waiting() const { return work_.size(); }

private:
    std::deque<Work> work_;
    std::deque<Action> actions_;
};

} // namespace ventaro
