#pragma once

#include "RunningApplications.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <mutex>

namespace ventaro {

/// The running applications of a Linux host, from its process table: the name is the file name of
/// the command, the identifier that of the desktop entry which started the process, or else the
/// executable's own name. What a process is, is looked up once.
class ProcessTable final : public RunningApplications {
public:
    /// `requiredEnvironment`: an entry ("NAME=value") that a process's environment must have to
    /// count; empty for none.
    explicit ProcessTable(std::string requiredEnvironment = {});

    void refresh() override;
    std::shared_ptr<const List> current() const override;

private:
    struct Process {
        std::string stamp; ///< start time and short name, which change when another takes the pid
        bool isApplication = false;
        RunningApplication application;
    };

    Process inspect(int folder, pid_t pid) const;

    const std::string requiredEnvironment_;
    std::mutex refreshLock_;
    std::map<pid_t, Process> processes_; ///< guarded by `refreshLock_`
    mutable std::mutex lock_;
    std::shared_ptr<const List> current_; ///< guarded by `lock_`
};

} // namespace ventaro
