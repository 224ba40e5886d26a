#include "Launchd.h"

#include "ChildProcess.h"
#include "SystemCalls.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace ventaro {

namespace {

constexpr std::chrono::seconds throttleInterval(10);
constexpr std::chrono::seconds exitTimeout(5); // real launchd waits 20 s before it kills

std::string describeEnd(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? "signal " + std::to_string(WTERMSIG(waitStatus))
                                   : "exit code " + std::to_string(WEXITSTATUS(waitStatus));
}

} // namespace

Launchd::Launchd(EventLoop& loop, const MachineClock& clock, const MachineRoot& root,
                 std::vector<std::string> environment)
    : loop_(loop), clock_(clock), root_(root), environment_(std::move(environment)) {}

void Launchd::log(const std::string& line) const {
    std::ofstream file(root_.resolve("/var/log/launchd.log"), std::ios::app);
    file << static_cast<double>(clock_.now().count()) / 1000 << ' ' << line << '\n';
}

void Launchd::loadInstalledDaemons() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry :
         std::filesystem::directory_iterator(root_.resolve("/Library/LaunchDaemons"))) {
        if (entry.path().extension() == ".plist") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        try {
            bootstrap(file);
        } catch (const std::runtime_error& error) {
            log(error.what());
        }
    }
}

void Launchd::bootstrap(const std::filesystem::path& file) {
    LaunchdJobDescription description = readLaunchdPropertyList(file);
    const std::string label = description.label;
    const auto [entry, isNew] = jobs_.try_emplace(label, Job{std::move(description), 0, {}, {}});
    if (!isNew) {
        throw std::runtime_error("Bootstrap failed: " + label + " is already loaded");
    }
    log(label + " loaded");
    Job& job = entry->second;
    if (job.description.runAtLoad || job.description.keepAlive) {
        start(job);
    }
}

void Launchd::bootout(const std::filesystem::path& file) {
    const std::string label = readLaunchdPropertyList(file).label;
    const auto entry = jobs_.find(label);
    if (entry == jobs_.end()) {
        throw std::runtime_error("Boot-out failed: " + label + " is not loaded");
    }
    if (const pid_t process = entry->second.process; process != 0) {
        ::kill(process, SIGTERM);
        loop_.after(exitTimeout, [process] {
            const auto living = livingChildren();
            if (std::find(living.begin(), living.end(), process) != living.end()) {
                ::kill(process, SIGKILL);
            }
        });
    }
    jobs_.erase(entry);
    log(label + " unloaded");
}

std::string Launchd::list() const {
    std::string lines;
    for (const auto& [label, job] : jobs_) {
        lines += (job.process != 0 ? std::to_string(job.process) : "-") + '\t' + label + '\n';
    }
    return lines;
}

bool Launchd::start(Job& job) {
    job.startAt.reset();
    job.startedAt = clock_.now();
    const LaunchdJobDescription& description = job.description;
    ChildProcess child;
    child.ownSession = true;
    child.environment = environment_;
    try {
        child.arguments = description.programArguments;
        child.arguments.front() = root_.resolve(child.arguments.front());
        const auto resolved = [this](const std::string& path) {
            return path.empty() ? std::string("/dev/null") : root_.resolve(path).string();
        };
        child.standardOutPath = resolved(description.standardOutPath);
        child.standardErrorPath = resolved(description.standardErrorPath);
        job.process = startChild(child);
        return true;
    } catch (const std::exception& error) {
        log(description.label + " cannot be started: " + error.what());
        if (description.keepAlive) {
            job.startAt = job.startedAt + throttleInterval;
        }
        return false;
    }
}

bool Launchd::childEnded(pid_t pid, int waitStatus) {
    const auto entry = std::find_if(jobs_.begin(), jobs_.end(), [pid](const auto& candidate) {
        return candidate.second.process == pid;
    });
    if (entry == jobs_.end()) {
        return false;
    }
    Job& job = entry->second;
    job.process = 0;
    const auto ran = clock_.now() - job.startedAt;
    const std::string end = job.description.label + " ended with " + describeEnd(waitStatus);
    if (!job.description.keepAlive) {
        log(end);
    } else if (ran >= throttleInterval) {
        log(end);
        if (start(job)) {
            log(job.description.label + " restarted");
        }
    } else {
        log(end + " after " + std::to_string(ran.count()) +
            " ms, restart held back: a job may start once in 10 s");
        job.startAt = job.startedAt + throttleInterval;
    }
    return true;
}

void Launchd::startDueJobs() {
    for (auto& [label, job] : jobs_) {
        if (job.startAt && *job.startAt <= clock_.now() && start(job)) {
            log(label + " restarted");
        }
    }
}

} // namespace ventaro
