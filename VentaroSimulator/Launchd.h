#pragma once

#include "EventLoop.h"
#include "MachineClock.h"
#include "MachineRoot.h"
#include "PropertyList.h"

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ventaro {

/// launchd of the simulated machine: loads jobs from property lists, starts them as the machine's
/// root and keeps them alive. A job that ran for under ten seconds of machine time restarts ten
/// seconds after its last start. One thread.
class Launchd {
public:
    /// All must outlive launchd. Jobs are started with `environment` added to this process's.
    Launchd(EventLoop& loop, const MachineClock& clock, const MachineRoot& root,
            std::vector<std::string> environment);

    /// Loads every property list of the folder of launch daemons; one that cannot be loaded is
    /// logged and left out.
    void loadInstalledDaemons();
    /// Loads the job of `file`. Throws std::runtime_error if it is loaded already or unreadable.
    void bootstrap(const std::filesystem::path& file);
    /// Unloads the job of `file` and asks its process to end, without waiting for that. Throws
    /// std::runtime_error if it is not loaded.
    void bootout(const std::filesystem::path& file);
    /// A line per job: its process, or "-", and its label.
    std::string list() const;

    /// Tells launchd that a child ended; false if it was not one of its jobs.
    bool childEnded(pid_t pid, int waitStatus);
    /// Starts the jobs whose delay is over.
    void startDueJobs();

private:
    struct Job {
        LaunchdJobDescription description;
        pid_t process = 0; ///< 0 while it does not run
        std::chrono::milliseconds startedAt{0};
        std::optional<std::chrono::milliseconds> startAt;
    };

    /// False, with a line in the log, if the program cannot be run.
    bool start(Job& job);
    void log(const std::string& line) const;

    EventLoop& loop_;
    const MachineClock& clock_;
    const MachineRoot& root_;
    const std::vector<std::string> environment_;
    std::map<std::string, Job> jobs_; ///< by label
};

} // namespace ventaro
