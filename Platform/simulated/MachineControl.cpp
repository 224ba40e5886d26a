#include "MachineControl.h"

#include "SmcWire.h"
#include "UnixSocket.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace ventaro {

MachineCommandResult sendMachineCommand(const MachineRoot& root, const MachineCommand& command,
                                        std::optional<std::chrono::milliseconds> patience) {
    constexpr std::chrono::seconds connectPatience(5);
    const FileDescriptor socket = connectToUnixSocket(root.resolve(machineControlSocketPath),
                                                      SOCK_SEQPACKET, connectPatience);
    std::string packet;
    for (const std::string& word : command) {
        packet += word + '\0';
    }
    if (packet.size() > largestControlPacket) {
        throw std::runtime_error("the command is too long for the machine");
    }
    std::string reply(largestControlPacket, '\0');
    ssize_t received = -1;
    if (socket && ::send(socket.get(), packet.data(), packet.size(), MSG_NOSIGNAL) > 0) {
        if (patience) {
            setSocketTimeout(socket.get(), SO_RCVTIMEO, *patience);
        }
        do {
            received = ::recv(socket.get(), reply.data(), reply.size(), 0);
        } while (received < 0 && errno == EINTR);
    }
    if (received <= 0) {
        throw std::runtime_error("no simulated machine answers at " + root.folder().string());
    }
    return {static_cast<int>(reply[0]), reply.substr(1, static_cast<std::size_t>(received) - 1)};
}

std::vector<std::string> simulatedProcessEnvironment(const MachineRoot& root, const char* access) {
    const char* path = std::getenv("PATH");
    return {std::string(MachineRoot::environmentVariable) + "=" + root.folder().string(),
            std::string(SmcWire::accessVariable) + "=" + access,
            "PATH=" + root.resolve("/usr/bin").string() + ":" +
                (path != nullptr ? path : "/usr/bin:/bin")};
}

} // namespace ventaro
