#include "SimulatedAdministratorScripts.h"

#include "FileDescriptor.h"
#include "MachineControl.h"
#include "SmcWire.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

namespace ventaro {

namespace {

/// The folders and files that belong to the machine; the rest of the tree is the host's.
constexpr std::array<std::string_view, 5> machinePaths{"/Library/PrivilegedHelperTools",
                                                       "/Library/LaunchDaemons", "/var/run",
                                                       "/var/log", "/tmp/com.ventaro.helper.plist"};

bool isMachinePath(std::string_view path) {
    return std::any_of(machinePaths.begin(), machinePaths.end(), [path](std::string_view known) {
        return path.starts_with(known) &&
               (path.size() == known.size() || path[known.size()] == '/');
    });
}

bool endsWord(char character) {
    return std::string_view(" \t\n;&|()<>").find(character) != std::string_view::npos;
}

/// `word` as it will be read by a shell, as far as single quotes go.
std::string unquoted(std::string_view word) {
    std::string text;
    std::copy_if(word.begin(), word.end(), std::back_inserter(text),
                 [](char character) { return character != '\''; });
    return text;
}

std::string singleQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return quoted + "'";
}

struct ShellResult {
    bool succeeded;
    std::string errors;
};

class Environment {
public:
    /// This process's, with `entries` ("NAME=value") added or put in place.
    explicit Environment(std::vector<std::string> entries) : entries_(std::move(entries)) {
        for (char** entry = environ; *entry != nullptr; ++entry) {
            const std::string_view present = *entry;
            const auto sameName = [present](const std::string& added) {
                return present.starts_with(std::string_view(added).substr(0, added.find('=') + 1));
            };
            if (std::none_of(entries_.begin(), entries_.end(), sameName)) {
                pointers_.push_back(*entry);
            }
        }
        for (std::string& entry : entries_) {
            pointers_.push_back(entry.data());
        }
        pointers_.push_back(nullptr);
    }
    char* const* get() { return pointers_.data(); }

private:
    std::vector<std::string> entries_;
    std::vector<char*> pointers_;
};

ShellResult runInShell(std::string line, std::vector<std::string> environment) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return {false, {}};
    }
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, writing.get(), STDERR_FILENO);
    posix_spawnattr_t attributes; // the caller may have blocked signals
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);

    std::string shell = "sh";
    std::string option = "-c";
    char* const arguments[] = {shell.data(), option.data(), line.data(), nullptr};
    Environment childEnvironment(std::move(environment));
    pid_t child = 0;
    const int spawned =
        ::posix_spawn(&child, "/bin/sh", &actions, &attributes, arguments, childEnvironment.get());
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    writing.reset();
    if (spawned != 0) {
        return {false, {}};
    }
    std::string errors;
    std::array<char, 4096> buffer;
    for (ssize_t count = 0; (count = ::read(reading.get(), buffer.data(), buffer.size())) != 0;) {
        if (count < 0 && errno != EINTR) {
            break;
        }
        errors.append(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) && WEXITSTATUS(status) == 0, std::move(errors)};
}

std::optional<std::string> unlessEmpty(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

class SimulatedScript final : public AdministratorScript {
public:
    SimulatedScript(const MachineRoot& root, std::string command)
        : root_(root), command_(std::move(command)) {}

    std::optional<ScriptFailure> execute() override {
        try {
            MachineCommandResult consent =
                sendMachineCommand(root_, {"administrator-consent"}, std::nullopt);
            if (consent.exitCode != 0) {
                return ScriptFailure{unlessEmpty(std::move(consent.text))};
            }
        } catch (const std::exception&) {
            return ScriptFailure{}; // the machine is off
        }
        const char* path = std::getenv("PATH");
        ShellResult result = runInShell(
            movedBelowRoot(command_, root_),
            {std::string(MachineRoot::environmentVariable) + "=" + root_.folder().string(),
             std::string(SmcWire::accessVariable) + "=" + SmcWire::rootAccess,
             "PATH=" + root_.resolve("/usr/bin").string() + ":" +
                 (path != nullptr ? path : "/usr/bin:/bin")});
        if (!result.succeeded) {
            return ScriptFailure{unlessEmpty(std::move(result.errors))};
        }
        return std::nullopt;
    }

private:
    const MachineRoot root_;
    const std::string command_;
};

} // namespace

std::optional<std::string> shellCommandOf(std::string_view source) {
    constexpr std::string_view head = "do shell script \"";
    constexpr std::string_view tail = "\" with administrator privileges";
    if (!source.starts_with(head) || !source.ends_with(tail) ||
        source.size() < head.size() + tail.size()) {
        return std::nullopt;
    }
    source = source.substr(head.size(), source.size() - head.size() - tail.size());
    std::string command;
    for (std::size_t index = 0; index < source.size(); ++index) {
        if (source[index] == '"') {
            return std::nullopt; // the string would end here
        }
        if (source[index] == '\\' && ++index == source.size()) {
            return std::nullopt; // the closing quote would be escaped
        }
        command += source[index];
    }
    return command;
}

std::string movedBelowRoot(std::string_view line, const MachineRoot& root) {
    const std::string prefix = singleQuoted(root.folder().string());
    std::string moved;
    for (std::size_t begin = 0; begin < line.size();) {
        if (endsWord(line[begin])) {
            moved += line[begin++];
            continue;
        }
        std::size_t end = begin;
        bool isQuoted = false;
        for (; end < line.size() && (isQuoted || !endsWord(line[end])); ++end) {
            isQuoted = isQuoted != (line[end] == '\'');
            end += !isQuoted && line[end] == '\\' && end + 1 < line.size() ? 1U : 0U;
        }
        const std::string_view word = line.substr(begin, end - begin);
        if (isMachinePath(unquoted(word))) {
            moved += prefix;
        }
        moved += word;
        begin = end;
    }
    return moved;
}

std::unique_ptr<AdministratorScript>
SimulatedAdministratorScripts::compile(const std::string& source) {
    std::optional<std::string> command = shellCommandOf(source);
    return command ? std::make_unique<SimulatedScript>(root_, std::move(*command)) : nullptr;
}

} // namespace ventaro
