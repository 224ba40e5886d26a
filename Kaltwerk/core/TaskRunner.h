#pragma once

#include <functional>

namespace ventaro {

/// How much a detached task matters beside other work of the machine.
enum class TaskPriority { background, utility, standard, userInitiated };

/// Runs work beside the main thread.
class TaskRunner {
public:
    virtual ~TaskRunner() = default;
    /// What a task leaves to be done on the main thread.
    using Action = std::function<void()>;
    using Work = std::function<Action()>;

    /// Runs `work` on a thread of its own, and then on the main thread what it returns, if that is
    /// not empty; returns at once. Nothing waits for it, not even the end of the process. `work`
    /// must not throw. Any thread.
    virtual void detach(TaskPriority priority, Work work) = 0;
    /// Runs `action` on the main thread later, in the order of the calls. Any thread.
    virtual void onMainThread(Action action) = 0;
};

} // namespace ventaro
