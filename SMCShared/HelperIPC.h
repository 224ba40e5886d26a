#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ventaro {

/// What both ends of the helper's socket share.
namespace HelperConstants {

constexpr const char* socketPath = "/var/run/com.ventaro.helper.sock";
constexpr const char* daemonLabel = "com.ventaro.helper";
constexpr const char* helperBinaryInstallPath = "/Library/PrivilegedHelperTools/com.ventaro.helper";
constexpr const char* launchDaemonPlistPath = "/Library/LaunchDaemons/com.ventaro.helper.plist";
constexpr std::int64_t protocolVersion = 1;

} // namespace HelperConstants

/// The longest request and the longest response, in bytes.
constexpr std::size_t maximumHelperMessageSize = 4096;

/// What the helper is asked to do.
enum class HelperAction { ping, setFanRPM, resetFanAuto, resetAllAuto };

/// The text that travels on the wire.
std::string_view rawValue(HelperAction action);
/// Exact and case-sensitive; no value for any other text.
std::optional<HelperAction> helperActionFromRawValue(std::string_view raw);

/// One request, one per connection.
struct HelperRequest {
    HelperAction action;
    std::optional<std::int64_t> fanIndex;
    std::optional<double> rpm; ///< target speed in RPM

    bool operator==(const HelperRequest&) const = default;
};

/// Why the helper's guard refuses low speeds.
enum class GuardCause {
    hot,   ///< the machine was too hot with its fans forced low
    blind, ///< the CPU's temperature did not read
};

/// The text that travels on the wire.
std::string_view rawValue(GuardCause cause);

/// The helper's answer.
struct HelperResponse {
    bool success;
    std::string message;  ///< a German sentence for the user
    std::int64_t version; ///< the helper's protocol version
    /// In the answer to a ping, and to a speed that is refused because of it.
    std::optional<GuardCause> guard{};
    /// In the answer to a ping, unless the helper is an old one: its version, and when it was
    /// started, in milliseconds since 1970.
    std::optional<std::string> build{};
    std::optional<std::int64_t> started{};

    bool operator==(const HelperResponse&) const = default;
};

/// Compact JSON; absent fields are left out. Throws EncodingError for a speed that is not finite.
std::string encodeJson(const HelperRequest& request);
std::string encodeJson(const HelperResponse& response);
/// `json` must be exactly the record; both throw DecodingError.
HelperRequest decodeHelperRequest(std::string_view json);
HelperResponse decodeHelperResponse(std::string_view json);

/// Whether the answer to a ping comes from a helper that this program can use.
bool isUsableHelper(const HelperResponse& pingResponse);

} // namespace ventaro
