#include "SystemCalls.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>

namespace ventaro {

Pipe makePipe(Blocking blocking) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | (blocking == Blocking::no ? O_NONBLOCK : 0)) != 0) {
        return {};
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

FileDescriptor makeUnixSocket(Blocking blocking) {
    const int flags = SOCK_CLOEXEC | (blocking == Blocking::no ? SOCK_NONBLOCK : 0);
    return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | flags, 0));
}

FileDescriptor acceptConnection(int listener) {
    return FileDescriptor(::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

std::optional<uid_t> peerUser(int socket) {
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) {
        return std::nullopt;
    }
    return credentials.uid;
}

void duplicateOnto(int source, int target) { ::dup3(source, target, O_CLOEXEC); }

void lowerThreadPriority(int niceness) {
    if (niceness > 0) {
        // On Linux niceness belongs to the thread. A refusal only leaves it as urgent as it was.
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness);
    }
}

void releaseFreeMemory() { ::malloc_trim(0); }

std::optional<std::filesystem::path> executablePath() {
    std::error_code error;
    auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::nullopt : std::optional(std::move(path));
}

void adoptOrphans() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }

bool endWithParent(pid_t parent) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    return ::getppid() == parent;
}

std::vector<pid_t> livingChildren() {
    std::vector<pid_t> children;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", ignored)) {
        const std::string name = entry.path().filename();
        pid_t pid = 0;
        const auto number = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (number.ec != std::errc{} || number.ptr != name.data() + name.size()) {
            continue;
        }
        std::ifstream file(entry.path() / "stat");
        std::string status;
        std::getline(file, status);
        // "PID (NAME) STATE PARENT ..."; the name may contain anything.
        const std::size_t nameEnd = status.rfind(')');
        if (nameEnd == std::string::npos || nameEnd + 4 >= status.size()) {
            continue;
        }
        const char state = status[nameEnd + 2];
        const pid_t parent = std::atoi(status.c_str() + nameEnd + 4);
        if (parent == ::getpid() && state != 'Z') {
            children.push_back(pid);
        }
    }
    return children;
}

} // namespace ventaro
