#include "ThreadTaskRunner.h"

#include "SystemCalls.h"
#include "WakeUp.h"

#include <QSocketNotifier>
#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

namespace ventaro {

namespace {

/// Threads keep their niceness, so each has its own queue.
constexpr std::size_t queueCount = 3;

std::size_t queueOf(TaskPriority priority) {
    switch (priority) {
    case TaskPriority::background:
        return 2;
    case TaskPriority::utility:
        return 1;
    case TaskPriority::standard:
    case TaskPriority::userInitiated:
        break;
    }
    return 0;
}

constexpr std::array<int, queueCount> nicenessOfQueue{0, 5, 10};

} // namespace

/// What the threads share with the runner, and what outlives it as long as one of them works.
class ThreadTaskRunner::State : public std::enable_shared_from_this<State> {
public:
    int wakeUpDescriptor() const { return wakeUp_.descriptor(); }

    void add(std::size_t index, Work work) {
        const std::lock_guard guard(lock_);
        queues_[index].work.push_back(std::move(work));
        ++unfinished_;
        // Every queue, for the work that found no thread when it came.
        for (std::size_t each = 0; each < queueCount; ++each) {
            provideThread(each);
        }
    }

    void addAction(Action action) {
        const std::lock_guard guard(lock_);
        if (hasEnded_ || !action) {
            return;
        }
        actions_.push_back(std::move(action));
        wakeUp_.signal();
    }

    /// False if there was none. An action may run an event loop, in which the next ones follow.
    bool carryOutActions() {
        wakeUp_.take();
        bool any = false;
        while (Action action = takeAction()) {
            any = true;
            action();
        }
        return any;
    }

    void waitUntilFinished() {
        std::unique_lock guard(lock_);
        finished_.wait(guard, [this] { return unfinished_ == 0; });
    }

    void end() {
        const std::lock_guard guard(lock_);
        hasEnded_ = true;
        actions_.clear();
        for (Queue& queue : queues_) {
            queue.changed.notify_all();
        }
    }

private:
    struct Queue {
        std::deque<Work> work;
        std::condition_variable changed;
        std::size_t idleThreads = 0; ///< those that have just been started among them
    };

    Action takeAction() {
        const std::lock_guard guard(lock_);
        if (actions_.empty()) {
            return nullptr;
        }
        Action action = std::move(actions_.front());
        actions_.pop_front();
        return action;
    }

    /// Sees to it that the queue has a thread for each piece of its work.
    void provideThread(std::size_t index) {
        Queue& queue = queues_[index];
        if (queue.work.empty()) {
            return;
        }
        if (queue.work.size() <= queue.idleThreads) {
            queue.changed.notify_one();
            return;
        }
        try {
            std::thread([state = shared_from_this(), index] { state->serve(index); }).detach();
            ++queue.idleThreads;
        } catch (const std::system_error&) {
            // Out of threads: the work waits for the next one that comes free.
        }
    }

    void serve(std::size_t index) {
        lowerThreadPriority(nicenessOfQueue[index]);
        Queue& queue = queues_[index];
        std::unique_lock guard(lock_);
        for (;; ++queue.idleThreads) {
            queue.changed.wait(guard, [&] { return !queue.work.empty() || hasEnded_; });
            --queue.idleThreads;
            if (queue.work.empty()) {
                return;
            }
            Work work = std::move(queue.work.front());
            queue.work.pop_front();
            guard.unlock();
            addAction(work());
            work = nullptr; // what it holds is freed outside the lock
            guard.lock();
            if (--unfinished_ == 0) {
                finished_.notify_all();
            }
        }
    }

    const WakeUp wakeUp_;
    std::mutex lock_; ///< guards the fields below
    std::array<Queue, queueCount> queues_;
    std::deque<Action> actions_;
    std::condition_variable finished_;
    std::size_t unfinished_ = 0;
    bool hasEnded_ = false;
};

ThreadTaskRunner::ThreadTaskRunner()
    : state_(std::make_shared<State>()),
      wakeUp_(
          std::make_unique<QSocketNotifier>(state_->wakeUpDescriptor(), QSocketNotifier::Read)) {
    // The descriptor carries no data; what there is to do stands in the queue.
    QObject::connect(wakeUp_.get(), &QSocketNotifier::activated, wakeUp_.get(),
                     [state = state_.get()] { state->carryOutActions(); });
}

ThreadTaskRunner::~ThreadTaskRunner() {
    wakeUp_.reset();
    state_->end();
}

void ThreadTaskRunner::detach(TaskPriority priority, Work work) {
    state_->add(queueOf(priority), std::move(work));
}

void ThreadTaskRunner::onMainThread(Action action) { state_->addAction(std::move(action)); }

void ThreadTaskRunner::finishAll() {
    do {
        state_->waitUntilFinished();
    } while (state_->carryOutActions());
}

} // namespace ventaro
