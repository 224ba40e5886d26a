#include "AtomicFile.h"
#include "HelperClient.h"
#include "PropertyLists.h"

#include <unistd.h>

#include <initializer_list>
#include <string_view>

namespace ventaro {

namespace {

constexpr const char* temporaryPropertyListPath = "/tmp/com.ventaro.helper.plist";

std::string shellQuoted(std::string_view text) { return "'" + std::string(text) + "'"; }

std::string replaceAll(std::string_view text, char wanted, std::string_view replacement) {
    std::string replaced;
    for (const char character : text) {
        if (character == wanted) {
            replaced += replacement;
        } else {
            replaced += character;
        }
    }
    return replaced;
}

std::string join(std::initializer_list<std::string> commands, std::string_view separator) {
    std::string line;
    for (const std::string& command : commands) {
        if (!line.empty()) {
            line += separator;
        }
        line += command;
    }
    return line;
}

bool isExecutableFile(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

std::optional<std::filesystem::path> HelperClient::bundledHelperURL() const {
    constexpr const char* name = "VentaroHelper";
    const Bundle& bundle = installation_.bundle;
    if (bundle.executable && isExecutableFile(bundle.executable->parent_path() / name)) {
        return bundle.executable->parent_path() / name;
    }
    if (bundle.resources && isExecutableFile(*bundle.resources / name)) {
        return *bundle.resources / name;
    }
    return std::nullopt;
}

void HelperClient::requireAdministratorScripts() const {
    if (installation_.administratorScripts == nullptr) {
        throw HelperClientError(HelperClientError::Code::scriptNotBuilt);
    }
    if (const auto reason = installation_.administratorScripts->unavailableBecause()) {
        throw HelperClientError(HelperClientError::Code::scriptFailed, *reason);
    }
}

void HelperClient::installPrivilegedDaemon() const {
    constexpr int probes = 20;
    constexpr std::chrono::milliseconds pause(100);
    constexpr mode_t readableByAll = 0644;
    requireAdministratorScripts();
    const auto helper = bundledHelperURL();
    if (!helper) {
        throw HelperClientError(HelperClientError::Code::helperNotInBundle);
    }
    writeFileAtomically(installation_.machineRoot.resolve(temporaryPropertyListPath),
                        launchDaemonPropertyList(), readableByAll);

    const auto before = ping();
    const auto answersAnew = [&] { // the one before may still answer on its way out
        const auto answer = ping();
        return answer && (!before || !answer->started || answer->started != before->started);
    };
    const std::string source = shellQuoted(replaceAll(helper->string(), '\'', "'\\''"));
    const std::string binary = shellQuoted(HelperConstants::helperBinaryInstallPath);
    const std::string list = shellQuoted(HelperConstants::launchDaemonPlistPath);
    runWithAdminPrivileges(join(
        {"mkdir -p /Library/PrivilegedHelperTools", "cp -f " + source + " " + binary,
         "chown root:wheel " + binary, "chmod 755 " + binary,
         "cp -f " + shellQuoted(temporaryPropertyListPath) + " " + list, "chown root:wheel " + list,
         "chmod 644 " + list, "launchctl bootout system " + list + " 2>/dev/null || true",
         "launchctl bootstrap system " + list + " || launchctl load -w " + list},
        " && "));

    for (int probe = 0; probe < probes; ++probe) {
        if (answersAnew()) {
            return;
        }
        installation_.pause(pause);
    }
    if (!answersAnew()) {
        throw HelperClientError(HelperClientError::Code::installedHelperSilent);
    }
}

void HelperClient::uninstallPrivilegedDaemon() const {
    requireAdministratorScripts();
    const std::string binary = shellQuoted(HelperConstants::helperBinaryInstallPath);
    const std::string list = shellQuoted(HelperConstants::launchDaemonPlistPath);
    runWithAdminPrivileges(
        join({binary + " --reset-all 2>/dev/null || true",
              "launchctl bootout system " + list + " 2>/dev/null || launchctl unload " + list +
                  " 2>/dev/null || true",
              "rm -f " + list + " " + binary + " " + shellQuoted(HelperConstants::socketPath)},
             " ; "));
}

void HelperClient::runWithAdminPrivileges(const std::string& shellCommand) const {
    // Backslashes first: those that the second step adds stay single.
    const std::string escaped = replaceAll(replaceAll(shellCommand, '\\', "\\\\"), '"', "\\\"");
    const auto script = installation_.administratorScripts->compile(
        "do shell script \"" + escaped + "\" with administrator privileges");
    if (!script) {
        throw HelperClientError(HelperClientError::Code::scriptNotBuilt);
    }
    if (const auto failure = script->execute()) {
        throw failure->text
            ? HelperClientError(HelperClientError::Code::scriptFailed, *failure->text)
            : HelperClientError(HelperClientError::Code::scriptFailed);
    }
}

} // namespace ventaro
