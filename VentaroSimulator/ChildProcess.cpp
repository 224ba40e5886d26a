#include "ChildProcess.h"

#include "SystemCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace ventaro {

namespace {

constexpr mode_t logMode = 0644;

void redirect(const std::string& path, int descriptor) {
    if (path.empty()) {
        return;
    }
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, logMode);
    if (file < 0 || ::dup2(file, descriptor) < 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    ::close(file);
}

void setEnvironment(const std::vector<std::string>& environment) {
    for (const std::string& entry : environment) {
        const std::size_t sign = entry.find('=');
        ::setenv(entry.substr(0, sign).c_str(), entry.substr(sign + 1).c_str(), 1);
    }
}

/// In the child: never returns.
[[noreturn]] void runProgram(const ChildProcess& child, pid_t parent, int failurePipe) {
    try {
        if (!endWithParent(parent)) { // it ended before it could tell
            ::_exit(EXIT_FAILURE);
        }
        if (child.ownSession) {
            ::setsid();
            ::close(STDIN_FILENO);
            ::open("/dev/null", O_RDONLY);
        }
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        redirect(child.standardOutPath, STDOUT_FILENO);
        redirect(child.standardErrorPath, STDERR_FILENO);
        setEnvironment(child.environment);
        std::vector<char*> arguments;
        for (const std::string& argument : child.arguments) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
    } catch (const std::system_error& error) {
        errno = error.code().value();
    }
    const int code = errno;
    [[maybe_unused]] const ssize_t written = ::write(failurePipe, &code, sizeof code);
    ::_exit(EXIT_FAILURE);
}

} // namespace

pid_t startChild(const ChildProcess& child) {
    Pipe failure = makePipe(Blocking::yes);
    if (!failure.reading) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (pid == 0) {
        runProgram(child, parent, failure.writing.get());
    }
    failure.writing.reset();
    // The pipe closes on a successful exec; otherwise it carries the error.
    int code = 0;
    if (::read(failure.reading.get(), &code, sizeof code) == sizeof code) {
        ::waitpid(pid, nullptr, 0);
        throw std::system_error(code, std::generic_category(), child.arguments.front());
    }
    return pid;
}

} // namespace ventaro
