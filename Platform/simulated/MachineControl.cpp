#include "MachineControl.h"

#include "SmcWire.h"
#include "UnixSocket.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace ventaro {

namespace {

bool sendAll(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(sent > 0 ? static_cast<std::size_t>(sent) : 0);
    }
    return ::shutdown(socket, SHUT_WR) == 0;
}

/// What comes until the other end closes the stream; empty if it does not.
std::string receiveToEnd(int socket) {
    std::string text(largestControlMessage, '\0');
    for (std::size_t size = 0; size < text.size();) {
        const ssize_t count = ::recv(socket, text.data() + size, text.size() - size, 0);
        if (count == 0) {
            text.resize(size);
            return text;
        }
        if (count < 0 && errno != EINTR) {
            break;
        }
        size += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return {};
}

} // namespace

MachineCommandResult sendMachineCommand(const MachineRoot& root, const MachineCommand& command,
                                        std::optional<std::chrono::milliseconds> patience) {
    constexpr std::chrono::seconds connectPatience(5);
    const FileDescriptor socket =
        connectToUnixSocket(root.resolve(machineControlSocketPath), connectPatience);
    std::string words;
    for (const std::string& word : command) {
        words += word + '\0';
    }
    if (words.size() > largestControlMessage) {
        throw std::runtime_error("the command is too long for the machine");
    }
    std::string answer;
    if (socket && sendAll(socket.get(), words)) {
        if (patience) {
            setSocketTimeout(socket.get(), SO_RCVTIMEO, *patience);
        }
        answer = receiveToEnd(socket.get());
    }
    if (answer.empty()) {
        throw std::runtime_error("no simulated machine answers at " + root.folder().string());
    }
    return {static_cast<int>(answer[0]), answer.substr(1)};
}

std::vector<std::string> simulatedProcessEnvironment(const MachineRoot& root, const char* access) {
    const char* path = std::getenv("PATH");
    return {std::string(MachineRoot::environmentVariable) + "=" + root.folder().string(),
            std::string(SmcWire::accessVariable) + "=" + access,
            "PATH=" + root.resolve("/usr/bin").string() + ":" +
                (path != nullptr ? path : "/usr/bin:/bin")};
}

} // namespace ventaro
