#pragma once

#include "ControlProfile.h"
#include "DefaultsStore.h"
#include "HelperClient.h"
#include "Platform.h"
#include "SMCService.h"
#include "SystemHardwareInspector.h"
#include "Tables.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace ventaro {

/// What a command failed of, in a sentence for standard error.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The commands of ventaroctl. Each prints its result to `out` and throws CommandError, SMCError,
/// HelperClientError, EncodingError, DecodingError or FileError if the machine or the helper
/// refuses or is not there. One thread.
class Commands {
public:
    /// All must outlive the commands.
    Commands(SMCService& smc, const HelperClient& helper, MachineKind machineKind,
             std::ostream& out)
        : smc_(smc), helper_(helper), machineKind_(machineKind), out_(out) {}

    void fans(bool json);
    void sensors(bool json, const TerminalStyle& style);
    void key(const std::string& key, bool json);
    void ping(bool json);
    void set(std::int64_t fanIndex, double rpm, bool json);
    /// No value: all fans.
    void automatic(std::optional<std::int64_t> fanIndex, bool json);
    /// Applies a profile once, with the user's `settings`.
    void profile(ControlProfile profile, const DefaultsStore& settings, bool json);
    /// Shows the hardware inventory.
    void hardware(const SystemHardwareInspector& inspector, bool json);
    void installHelper(bool json);
    void uninstallHelper(bool json);

    /// One look at the machine; a failure is a part of it.
    Telemetry look();
    /// Throws if this host is no machine with an SMC.
    void requireMachine() const;
    /// Throws what keeps the SMC from being read at all.
    void requireSmc();

private:
    HelperResponse usableHelper();
    void change(const HelperRequest& request, bool json);
    void print(const HelperResponse& response, bool json);

    SMCService& smc_;
    const HelperClient& helper_;
    const MachineKind machineKind_;
    std::ostream& out_;
};

} // namespace ventaro
