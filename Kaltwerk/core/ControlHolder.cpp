#include "ControlHolder.h"

#include "ExclusiveRole.h"
#include "FileLock.h"

#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace ventaro {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view whoLine = "who";
constexpr std::string_view letGoPrefix = "let go for ";
constexpr milliseconds patienceForAName(1000);

std::unique_ptr<ExclusiveRole> makeRole(const MachineRoot& root) {
    try {
        return std::make_unique<ExclusiveRole>(root, "control-");
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

std::optional<std::string> holderIn(const ExclusiveRole::Files& files) {
    try {
        if (!files.isTaken()) {
            return std::nullopt;
        }
        if (auto name = files.ask(whoLine, patienceForAName)) {
            return name;
        }
        // It does not listen yet, or no longer.
        return staysLocked(files.lock)
                   ? std::optional(
                         files.ask(whoLine, patienceForAName).value_or("Ein anderes Programm"))
                   : std::nullopt;
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace

ControlHolder::ControlHolder(const MachineRoot& root, std::string program)
    : self_(std::move(program) + " (PID " + std::to_string(::getpid()) + ")"),
      role_(makeRole(root)) {}

ControlHolder::~ControlHolder() = default;

bool ControlHolder::isMine() const { return role_ && role_->isMine(); }

std::filesystem::path ControlHolder::lock() const {
    return role_ ? role_->files().lock : std::filesystem::path();
}

std::optional<std::string> ControlHolder::claim() {
    if (!role_ || role_->isMine()) {
        return std::nullopt;
    }
    try {
        while (!role_->claim()) {
            if (auto holder = other()) { // else it was only asked for
                return holder;
            }
        }
        role_->listen([this](std::string_view line) { return answer(line); });
    } catch (const std::runtime_error&) {
        // Who cannot be asked steers all the same.
    }
    return std::nullopt;
}

void ControlHolder::release() {
    if (role_) {
        role_->release();
    }
}

std::optional<std::string> ControlHolder::other() const { return lookForOther()(); }

std::function<std::optional<std::string>()> ControlHolder::lookForOther() const {
    if (!role_ || role_->isMine()) {
        return [] { return std::nullopt; };
    }
    return [files = role_->files()] { return holderIn(files); };
}

std::function<bool()> ControlHolder::otherLettingGo() const {
    if (!role_ || role_->isMine()) {
        return [] { return true; };
    }
    return [files = role_->files(), request = std::string(letGoPrefix) + self_] {
        constexpr std::chrono::seconds patience(4);
        constexpr milliseconds pause(20);
        const auto end = std::chrono::steady_clock::now() + patience;
        for (bool isAsked = false; holderIn(files); std::this_thread::sleep_for(pause)) {
            if (std::chrono::steady_clock::now() >= end) {
                return false;
            }
            isAsked = isAsked || files.ask(request, patienceForAName);
        }
        return true;
    };
}

std::optional<std::string> ControlHolder::answer(std::string_view line) {
    if (line.starts_with(letGoPrefix)) {
        Q_EMIT letGoRequested(std::string(line.substr(letGoPrefix.size())));
        return self_;
    }
    return line == whoLine ? std::optional(self_) : std::nullopt;
}

} // namespace ventaro
