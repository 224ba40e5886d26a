#include "BackgroundProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace ventaro {

bool startInBackground(const std::filesystem::path& program, std::vector<std::string> arguments,
                       int input, int output) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const bool hasStarted =
        ::posix_spawn(&child, program.c_str(), &actions, nullptr, pointers.data(), environ) == 0;
    ::posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    while (hasStarted && ::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return hasStarted && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace ventaro
