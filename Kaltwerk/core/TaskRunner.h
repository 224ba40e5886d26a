#pragma once

#include <functional>

namespace ventaro {

/// How much a detached task matters beside other work of the machine.
enum class TaskPriority { background, utility, standard, userInitiated };

/// Runs work beside the main thread.
class TaskRunner {
public:
    virtual ~TaskRunner() = default;
    /// Runs `work` on a thread of its own and returns at once. Nothing waits for it, not even the
    /// end of the process. `work` must not throw. Any thread.
    virtual void detach(TaskPriority priority, std::function<void()> work) = 0;
    /// Runs `action` on the main thread later, in the order of the calls. Any thread.
    virtual void onMainThread(std::function<void()> action) = 0;
};

} // namespace ventaro
