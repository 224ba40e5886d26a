#pragma once

#include "TaskRunner.h"

#include <memory>
#include <utility>

namespace ventaro {

/// The tasks that one object has started: what they find out reaches it only as long as it exists.
/// Main thread only.
class DetachedTasks {
public:
    /// `runner` must outlive the tasks.
    explicit DetachedTasks(TaskRunner& runner) : runner_(runner) {}

    /// Runs `work` beside the main thread and hands its result to `publish` on it.
    template<typename Work, typename Publish>
    void run(TaskPriority priority, Work work, Publish publish) {
        runner_.detach(priority,
                       [work = std::move(work), publish = std::move(publish),
                        owner = std::weak_ptr(owner_)]() -> TaskRunner::Action {
                           return [result = work(), publish, owner] {
                               if (!owner.expired()) {
                                   publish(result);
                               }
                           };
                       });
    }

    /// Runs `action` on the main thread, behind what it has to do already.
    template<typename Action>
    void later(Action action) {
        runner_.onMainThread([action = std::move(action), owner = std::weak_ptr(owner_)] {
            if (!owner.expired()) {
                action();
            }
        });
    }

private:
    TaskRunner& runner_;
    /// Held by this object alone.
    const std::shared_ptr<bool> owner_ = std::make_shared<bool>(true);
};

} // namespace ventaro
