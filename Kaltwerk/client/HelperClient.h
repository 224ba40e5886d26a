#pragma once

#include "AdministratorScripts.h"
#include "HelperIPC.h"
#include "MachineRoot.h"
#include "UserSession.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <thread>

namespace ventaro {

/// A failure of the helper channel. `description()` is the German sentence that the user reads.
class HelperClientError : public std::exception {
public:
    enum class Code {
        socketNotCreated = 1,
        notReachable = 2,
        noAnswer = 3,
        sendFailed = 4,
        helperNotInBundle = 10,
        installedHelperSilent = 11,
        scriptNotBuilt = 20,
        scriptFailed = 21,
    };

    explicit HelperClientError(Code code);
    /// With the failure's own sentence in place of the code's.
    HelperClientError(Code code, std::string description)
        : code_(code), description_(std::move(description)) {}

    Code code() const { return code_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

private:
    Code code_;
    std::string description_;
};

/// What it takes to install the helper and to remove it.
struct HelperInstallation {
    MachineRoot machineRoot;
    Bundle bundle;
    /// Must outlive the client; null where there are none.
    AdministratorScripts* administratorScripts = nullptr;
    /// Blocks the calling thread, between two questions whether the new helper answers.
    std::function<void(std::chrono::milliseconds)> pause = [](std::chrono::milliseconds time) {
        std::this_thread::sleep_for(time);
    };
};

/// The application's side of the helper channel. Without mutable state: any thread may call any
/// operation, each exchange has its own connection.
class HelperClient {
public:
    /// What the user reads after an installation and after a removal, German.
    static constexpr const char* installedMessage =
        "Hintergrund-Helper erfolgreich installiert und aktiv!";
    static constexpr const char* uninstalledMessage =
        "Hintergrund-Helper deinstalliert. Lüfter auf macOS-Automatik.";

    /// The process-wide instance, on the installed platform. Lives to the end of the process.
    static HelperClient& shared();

    /// `socketPath`: where HelperConstants::socketPath really lies. The time-outs bound the sending
    /// and the waiting for the answer.
    explicit HelperClient(std::filesystem::path socketPath,
                          std::chrono::milliseconds receiveTimeout = std::chrono::seconds(2),
                          std::chrono::milliseconds sendTimeout = std::chrono::seconds(2),
                          HelperInstallation installation = {});

    /// One exchange; blocks until the answer, a failure or a time-out. A response with `success`
    /// false is returned like any other. Throws HelperClientError, EncodingError, DecodingError.
    HelperResponse sendSocketRequest(const HelperRequest& request) const;

    /// The answer to a ping of a helper that this program can use; no value if there is none.
    /// Blocks like an exchange.
    std::optional<HelperResponse> ping() const;
    bool isDaemonActive() const { return ping().has_value(); }

    /// Has a helper that this program can use give all fans back to the automatic control. Why it
    /// has not confirmed that, German; no value if it has. Blocks for two exchanges at most.
    std::optional<std::string> resetAllFans() const;

    /// Installs the helper from the bundle, or installs it anew, with the administrator's consent,
    /// and returns once it answers. Blocks as long as the dialog is open and, if the helper does
    /// not answer, for twenty-one exchanges with a tenth of a second between them. Throws
    /// HelperClientError and FileError.
    void installPrivilegedDaemon() const;
    /// Hands the fans back to the automatic control and removes the helper with everything that
    /// belongs to it, with the administrator's consent. Blocks. Throws HelperClientError.
    void uninstallPrivilegedDaemon() const;

private:
    void requireAdministratorScripts() const;
    std::optional<std::filesystem::path> bundledHelperURL() const;
    void runWithAdminPrivileges(const std::string& shellCommand) const;
    const std::filesystem::path socketPath_;
    const std::chrono::milliseconds receiveTimeout_;
    const std::chrono::milliseconds sendTimeout_;
    const HelperInstallation installation_;
};

} // namespace ventaro
