#pragma once

#include <sys/types.h>

#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace ventaro {

/// A program to be run beside this one.
struct ChildProgram {
    enum class Capture { output, errors };

    std::string path;
    std::vector<std::string> arguments;   ///< without the program's name
    std::vector<std::string> environment; ///< "NAME=value", added to or replacing this process's
    Capture capture = Capture::output;    ///< what is kept; the other one is thrown away
};

struct ChildOutcome {
    bool hasStarted = false;
    bool hasSucceeded = false; ///< it ended with exit code 0
    std::string text;          ///< what was captured, up to 64 MiB; empty if it was more
};

/// Runs programs and can end them. Any thread.
class ChildPrograms {
public:
    /// Blocks until the program has closed what is captured and has ended.
    ChildOutcome run(const ChildProgram& program);
    /// Kills the programs that are running, with all that they have started, and starts none any
    /// more.
    void end();

private:
    pid_t start(const ChildProgram& program, int captured);
    bool waitFor(pid_t child);

    std::mutex lock_; ///< guards the fields below
    std::set<pid_t> running_;
    bool hasEnded_ = false;
};

} // namespace ventaro
