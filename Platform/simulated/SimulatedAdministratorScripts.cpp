#include "SimulatedAdministratorScripts.h"

#include "ChildProgram.h"
#include "MachineControl.h"
#include "SmcWire.h"

#include <algorithm>
#include <array>
#include <utility>

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
        ChildProgram shell{"/bin/sh",
                           {"-c", movedBelowRoot(command_, root_)},
                           simulatedProcessEnvironment(root_, SmcWire::rootAccess),
                           ChildProgram::Capture::errors};
        ChildOutcome outcome = ChildPrograms().run(shell);
        if (!outcome.hasSucceeded) {
            return ScriptFailure{unlessEmpty(std::move(outcome.text))};
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
