#include "ProcessTable.h"

#include "FileDescriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>

namespace ventaro {

namespace {

std::string readWhole(int folder, const char* name) {
    constexpr std::size_t largest = 1 << 18U; // bytes; an environment may be long
    const FileDescriptor file(::openat(folder, name, O_RDONLY | O_CLOEXEC));
    std::string text;
    std::array<char, 4096> buffer;
    for (ssize_t count = 0; file && text.size() < largest &&
                            (count = ::read(file.get(), buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::string fileName(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string executableName(int folder) {
    constexpr std::string_view deleted = " (deleted)";
    std::array<char, 4096> path;
    const ssize_t length = ::readlinkat(folder, "exe", path.data(), path.size());
    std::string_view text(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    if (text.ends_with(deleted)) {
        text.remove_suffix(deleted.size());
    }
    return fileName(text);
}

/// The value of `name` in an environment whose entries end in zero bytes.
std::string_view environmentValue(std::string_view environment, std::string_view name) {
    while (!environment.empty()) {
        const std::string_view entry = environment.substr(0, environment.find('\0'));
        if (entry.size() > name.size() && entry.starts_with(name) && entry[name.size()] == '=') {
            return entry.substr(name.size() + 1);
        }
        environment.remove_prefix(std::min(environment.size(), entry.size() + 1));
    }
    return {};
}

/// The identifier of the desktop entry that started process `pid` itself, not one of its parents:
/// GLib leaves both in the environment.
std::string desktopIdentifier(std::string_view environment, pid_t pid) {
    constexpr std::string_view extension = ".desktop";
    if (environmentValue(environment, "GIO_LAUNCHED_DESKTOP_FILE_PID") != std::to_string(pid)) {
        return {};
    }
    std::string name = fileName(environmentValue(environment, "GIO_LAUNCHED_DESKTOP_FILE"));
    if (name.ends_with(extension)) {
        name.resize(name.size() - extension.size());
    }
    return name;
}

/// What tells one program from the next in the same process: the start time (field 22 of "stat")
/// and the short name, which a new program in an old process changes.
std::string stampOf(const std::string& stat) {
    constexpr int fieldsAfterName = 20;
    const std::size_t nameEnd = stat.rfind(')');
    if (nameEnd == std::string::npos) {
        return {};
    }
    std::size_t begin = nameEnd;
    for (int field = 0; field < fieldsAfterName && begin != std::string::npos; ++field) {
        begin = stat.find(' ', begin + 1);
    }
    if (begin == std::string::npos) {
        return {};
    }
    const std::size_t end = stat.find(' ', begin + 1);
    return stat.substr(begin, end - begin) + stat.substr(0, nameEnd);
}

} // namespace

ProcessTable::ProcessTable(std::optional<MachineRoot> machine)
    : machine_(std::move(machine)), current_(std::make_shared<const List>()) {}

bool ProcessTable::isOnMachine(std::string_view environment) const {
    const std::string_view folder = environmentValue(environment, MachineRoot::environmentVariable);
    std::error_code error;
    return !machine_ ||
           (!folder.empty() && std::filesystem::equivalent(folder, machine_->folder(), error));
}

ProcessTable::Process ProcessTable::inspect(int folder, pid_t pid) const {
    Process process;
    const std::string command = readWhole(folder, "cmdline");
    const std::string environment = readWhole(folder, "environ");
    process.application.localizedName = fileName(command.c_str()); // up to the first zero byte
    process.application.bundleIdentifier = desktopIdentifier(environment, pid);
    if (process.application.bundleIdentifier.empty()) {
        process.application.bundleIdentifier = executableName(folder);
    }
    // A kernel thread has no command.
    process.isApplication = !command.empty() && pid != ::getpid() && isOnMachine(environment);
    return process;
}

void ProcessTable::refresh() {
    const std::lock_guard refreshGuard(refreshLock_);
    const std::unique_ptr<DIR, int (*)(DIR*)> table(::opendir("/proc"), ::closedir);
    std::map<pid_t, Process> processes;
    auto list = std::make_shared<List>();
    while (const dirent* entry = table ? ::readdir(table.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        pid_t pid = 0;
        const auto parsed = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (parsed.ec != std::errc{} || parsed.ptr != name.data() + name.size()) {
            continue;
        }
        const std::string statPath = std::string(name) + "/stat";
        std::string stamp = stampOf(readWhole(::dirfd(table.get()), statPath.c_str()));
        if (stamp.empty()) {
            continue; // it has ended meanwhile
        }
        auto known = processes_.extract(pid);
        const bool isKnown = !known.empty() && known.mapped().stamp == stamp;
        Process process;
        if (isKnown && known.mapped().isSettled) {
            process = std::move(known.mapped());
        } else {
            const FileDescriptor folder(
                ::openat(::dirfd(table.get()), entry->d_name, O_PATH | O_DIRECTORY | O_CLOEXEC));
            process = inspect(folder.get(), pid);
            process.isSettled = isKnown;
        }
        process.stamp = std::move(stamp);
        if (process.isApplication) {
            list->push_back(process.application);
        }
        processes.emplace(pid, std::move(process));
    }
    processes_ = std::move(processes);
    const std::lock_guard guard(lock_);
    current_ = std::move(list);
}

std::shared_ptr<const RunningApplications::List> ProcessTable::current() const {
    const std::lock_guard guard(lock_);
    return current_;
}

} // namespace ventaro
