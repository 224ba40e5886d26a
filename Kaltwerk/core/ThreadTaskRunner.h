#pragma once

#include "TaskRunner.h"

#include <memory>

class QSocketNotifier;

namespace ventaro {

/// Tasks on threads, as many as there are tasks at a time; idle threads are used again. To be made
/// and destroyed on the main thread, whose event loop carries the actions out. Actions that are
/// left when the runner is destroyed are dropped; its threads end with their tasks.
class ThreadTaskRunner final : public TaskRunner {
public:
    /// Throws std::system_error if the process is out of descriptors.
    ThreadTaskRunner();
    ~ThreadTaskRunner() override;
    ThreadTaskRunner(const ThreadTaskRunner&) = delete;
    ThreadTaskRunner& operator=(const ThreadTaskRunner&) = delete;

    void detach(TaskPriority priority, Work work) override;
    void onMainThread(Action action) override;

    /// Waits until no task runs and carries out what they left for the main thread, until nothing
    /// is left. Main thread only.
    void finishAll();

private:
    class State;

    std::shared_ptr<State> state_;
    std::unique_ptr<QSocketNotifier> wakeUp_;
};

} // namespace ventaro
