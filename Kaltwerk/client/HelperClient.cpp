#include "HelperClient.h"

#include "Platform.h"
#include "SystemCalls.h"
#include "UnixSocket.h"

#include <array>
#include <cerrno>
#include <string_view>

namespace ventaro {

namespace {

using SteadyClock = std::chrono::steady_clock;

std::string describe(HelperClientError::Code code) {
    switch (code) {
    case HelperClientError::Code::socketNotCreated:
        return "Socket konnte nicht erstellt werden.";
    case HelperClientError::Code::notReachable:
        return std::string("Hintergrund-Helper nicht erreichbar (") + HelperConstants::socketPath +
               ").";
    case HelperClientError::Code::noAnswer:
        return "Keine Antwort vom Helper erhalten.";
    case HelperClientError::Code::sendFailed:
        return "Senden an Helper fehlgeschlagen.";
    case HelperClientError::Code::helperNotInBundle:
        return "VentaroHelper Binary wurde im App-Bundle nicht gefunden.";
    case HelperClientError::Code::installedHelperSilent:
        return "Helper wurde installiert, antwortet aber noch nicht auf dem Socket.";
    case HelperClientError::Code::scriptNotBuilt:
        return "AppleScript Initialisierung fehlgeschlagen.";
    case HelperClientError::Code::scriptFailed:
        return "Administrator-Autorisierung abgebrochen oder fehlgeschlagen.";
    }
    return {};
}

/// Repeats `call` while a signal interrupts it, within `timeout` in all: with a socket time-out
/// set, the kernel does not go on by itself.
template<typename Call>
auto continueAfterSignals(int socket, int option, std::chrono::milliseconds timeout, Call call) {
    const auto deadline = SteadyClock::now() + timeout;
    for (bool interrupted = false;; interrupted = true) {
        const auto result = call();
        if (result >= 0 || errno != EINTR) {
            if (interrupted) {
                setSocketTimeout(socket, option, timeout); // the next call has all its time
            }
            return result;
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
        if (left <= std::chrono::milliseconds::zero()) {
            errno = EAGAIN;
            return result;
        }
        setSocketTimeout(socket, option, left);
    }
}

} // namespace

HelperClientError::HelperClientError(Code code) : code_(code), description_(describe(code)) {}

HelperClient& HelperClient::shared() {
    static auto* client = [] {
        const Platform& platform = Platform::current();
        HelperInstallation installation;
        installation.machineRoot = platform.machineRoot;
        if (platform.session) {
            installation.bundle = platform.session->bundle;
            installation.administratorScripts = platform.session->administratorScripts.get();
        }
        return new HelperClient(platform.machineRoot.resolve(HelperConstants::socketPath),
                                std::chrono::seconds(2), std::chrono::seconds(2),
                                std::move(installation));
    }();
    return *client;
}

HelperClient::HelperClient(std::filesystem::path socketPath,
                           std::chrono::milliseconds receiveTimeout,
                           std::chrono::milliseconds sendTimeout, HelperInstallation installation)
    : socketPath_(std::move(socketPath)),
      receiveTimeout_(receiveTimeout),
      sendTimeout_(sendTimeout),
      installation_(std::move(installation)) {}

HelperResponse HelperClient::sendSocketRequest(const HelperRequest& request) const {
    using Code = HelperClientError::Code;
    const FileDescriptor socket = makeUnixSocket(Blocking::yes);
    if (!socket) {
        throw HelperClientError(Code::socketNotCreated);
    }
    setSocketTimeout(socket.get(), SO_RCVTIMEO, receiveTimeout_);
    setSocketTimeout(socket.get(), SO_SNDTIMEO, sendTimeout_);

    const sockaddr_un address = unixSocketAddress(socketPath_.string());
    const int connected = continueAfterSignals(socket.get(), SO_SNDTIMEO, sendTimeout_, [&] {
        const int result =
            ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
        return result != 0 && errno == EISCONN ? 0 : result;
    });
    if (connected != 0) {
        throw HelperClientError(Code::notReachable);
    }

    const std::string json = encodeJson(request);
    const ssize_t written = continueAfterSignals(socket.get(), SO_SNDTIMEO, sendTimeout_, [&] {
        return ::send(socket.get(), json.data(), json.size(), MSG_NOSIGNAL);
    });
    if (written != static_cast<ssize_t>(json.size())) {
        throw HelperClientError(Code::sendFailed);
    }

    std::array<char, maximumHelperMessageSize> buffer{};
    const ssize_t received = continueAfterSignals(socket.get(), SO_RCVTIMEO, receiveTimeout_, [&] {
        return ::recv(socket.get(), buffer.data(), buffer.size(), 0);
    });
    if (received <= 0) {
        throw HelperClientError(Code::noAnswer);
    }
    return decodeHelperResponse({buffer.data(), static_cast<std::size_t>(received)});
}

std::optional<HelperResponse> HelperClient::ping() const {
    try {
        HelperResponse answer = sendSocketRequest({HelperAction::ping, std::nullopt, std::nullopt});
        return isUsableHelper(answer) ? std::optional(std::move(answer)) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<std::string> HelperClient::resetAllFans() const {
    try {
        if (!isDaemonActive()) {
            return describe(HelperClientError::Code::notReachable);
        }
        HelperResponse answer =
            sendSocketRequest({HelperAction::resetAllAuto, std::nullopt, std::nullopt});
        return answer.success ? std::nullopt : std::optional(std::move(answer.message));
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace ventaro
