#pragma once

#include <memory>
#include <optional>
#include <string>

namespace ventaro {

/// Why a script failed.
struct ScriptFailure {
    /// The error's own text for the user; no value if it has none.
    std::optional<std::string> text;
};

/// A compiled script.
class AdministratorScript {
public:
    virtual ~AdministratorScript() = default;
    /// Runs the script to its end and asks the administrator before; blocks as long as that takes.
    /// No value on success.
    virtual std::optional<ScriptFailure> execute() = 0;
};

/// The scripting bridge of the platform, `NSAppleScript` on macOS. Any thread.
class AdministratorScripts {
public:
    virtual ~AdministratorScripts() = default;
    /// Why this machine runs no administrator scripts, a German sentence; no value if it does.
    virtual std::optional<std::string> unavailableBecause() const = 0;
    /// Null for a source that is no script.
    virtual std::unique_ptr<AdministratorScript> compile(const std::string& source) = 0;
};

} // namespace ventaro
