#include "ChildProgram.h"

#include "SystemCalls.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

namespace ventaro {

namespace {

/// Pointers to texts, as exec and spawn take them.
class TextPointers {
public:
    void add(char* text) { pointers_.push_back(text); }
    void add(std::vector<std::string>& texts) {
        for (std::string& text : texts) {
            add(text.data());
        }
    }
    char* const* get() {
        pointers_.push_back(nullptr);
        return pointers_.data();
    }

private:
    std::vector<char*> pointers_;
};

bool isReplaced(std::string_view present, const std::vector<std::string>& entries) {
    return std::any_of(entries.begin(), entries.end(), [present](std::string_view entry) {
        return present.starts_with(entry.substr(0, entry.find('=') + 1));
    });
}

std::string readAll(int descriptor) {
    constexpr std::size_t most = 64 << 20U; // bytes
    std::string text;
    bool isTooMuch = false;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return text;
        }
        if (count > 0 && !isTooMuch) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
            isTooMuch = text.size() > most;
            if (isTooMuch) {
                text = {};
            }
        }
    }
}

} // namespace

ChildOutcome ChildPrograms::run(const ChildProgram& program) {
    Pipe pipe = makePipe(Blocking::yes);
    const pid_t child = pipe.reading ? start(program, pipe.writing.get()) : 0;
    pipe.writing.reset();
    if (child == 0) {
        return {};
    }
    ChildOutcome outcome{true, false, readAll(pipe.reading.get())};
    outcome.hasSucceeded = waitFor(child);
    return outcome;
}

pid_t ChildPrograms::start(const ChildProgram& program, int captured) {
    const bool wantsOutput = program.capture == ChildProgram::Capture::output;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, wantsOutput ? STDERR_FILENO : STDOUT_FILENO,
                                       "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, captured,
                                       wantsOutput ? STDOUT_FILENO : STDERR_FILENO);
    // A group of its own, to be ended with all that it starts; the caller's signals are not its.
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    ::sigaddset(&signals, SIGCHLD);
    ::sigaddset(&signals, SIGPIPE);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                POSIX_SPAWN_SETPGROUP);

    std::vector<std::string> words = program.arguments;
    words.insert(words.begin(), program.path);
    TextPointers arguments;
    arguments.add(words);
    std::vector<std::string> entries = program.environment;
    TextPointers environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!isReplaced(*entry, entries)) {
            environment.add(*entry);
        }
    }
    environment.add(entries);

    pid_t child = 0;
    {
        const std::lock_guard guard(lock_);
        if (!hasEnded_ && ::posix_spawn(&child, program.path.c_str(), &actions, &attributes,
                                        arguments.get(), environment.get()) == 0) {
            running_.insert(child);
        } else {
            child = 0;
        }
    }
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return child;
}

bool ChildPrograms::waitFor(pid_t child) {
    // Until it is reaped its number is nobody else's: `end` kills the right one.
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
    const std::lock_guard guard(lock_);
    running_.erase(child);
    int status = 0;
    pid_t reaped = 0;
    do {
        reaped = ::waitpid(child, &status, 0);
    } while (reaped < 0 && errno == EINTR);
    return reaped == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void ChildPrograms::end() {
    const std::lock_guard guard(lock_);
    hasEnded_ = true;
    for (const pid_t child : running_) {
        ::kill(-child, SIGKILL);
    }
}

} // namespace ventaro
