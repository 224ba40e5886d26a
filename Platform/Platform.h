#pragma once

#include "IOKit.h"
#include "MachineRoot.h"

#include <sys/types.h>

#include <memory>
#include <optional>

namespace ventaro {

struct UserSession;

/// What kind of machine answers below the boundary.
enum class MachineKind {
    real,      ///< a MacBook with an SMC of its own
    simulated, ///< a simulated MacBook, another process
    none,      ///< a host without an SMC
};

/// Tells who sits in front of the machine. Any thread.
class ConsoleUser {
public:
    virtual ~ConsoleUser() = default;
    /// The user logged in at the machine's own screen; no value if that cannot be found out.
    virtual std::optional<uid_t> current() const = 0;
};

/// What the operating system gives, in one object that is handed to whoever needs a part of it.
struct Platform {
    MachineKind machineKind = MachineKind::none;
    MachineRoot machineRoot;
    std::unique_ptr<IOKit> ioKit;
    std::unique_ptr<ConsoleUser> consoleUser;
    /// Null in a program that works for no user, as the helper.
    std::shared_ptr<UserSession> session;

    /// The platform that the objects named `shared` use. Throws std::logic_error before `install`.
    static Platform& current();
    /// Makes `platform` the process's own, once, at the start of main; it lives to the end.
    static Platform& install(Platform platform);
};

} // namespace ventaro
