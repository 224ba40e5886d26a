#pragma once

#include "MachineRoot.h"
#include "RunningApplications.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string_view>

namespace ventaro {

/// The running applications of a Linux host, from its process table: the name is the file name of
/// the command, the identifier that of the desktop entry which started the process, or else the
/// executable's own name. What a process is, is looked up once.
class ProcessTable final : public RunningApplications {
public:
    /// `machine`: the simulated machine that a process must run on to count; no value: any process
    /// of the host.
    explicit ProcessTable(std::optional<MachineRoot> machine = {});

    void refresh() override;
    std::shared_ptr<const List> current() const override;

private:
    struct Process {
        std::string stamp; ///< start time and short name, which change when another takes the pid
        bool isApplication = false;
        /// Looked at again at the refresh after the first: it may have been seen in the middle of
        /// its start, with its new name and still without command and environment.
        bool isSettled = false;
        RunningApplication application;
    };

    Process inspect(int folder, pid_t pid) const;
    bool isOnMachine(std::string_view environment) const;

    const std::optional<MachineRoot> machine_;
    std::mutex refreshLock_;
    std::map<pid_t, Process> processes_; ///< guarded by `refreshLock_`
    mutable std::mutex lock_;
    std::shared_ptr<const List> current_; ///< guarded by `lock_`
};

} // namespace ventaro
