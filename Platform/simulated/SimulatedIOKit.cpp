#include "SimulatedIOKit.h"

#include "SmcWire.h"
#include "UnixSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <span>

namespace ventaro {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr IOObject serviceObject = 1;

} // namespace

SimulatedIOKit::SimulatedIOKit(std::filesystem::path socketPath, std::chrono::milliseconds deadline)
    : socketPath_(std::move(socketPath)), deadline_(deadline) {}

IOServiceMatch SimulatedIOKit::serviceMatching(std::string_view className) { return {className}; }

IOObject SimulatedIOKit::serviceGetMatchingService(const IOServiceMatch& matching) {
    return matching.className == SmcWire::serviceName && connect(SteadyClock::now() + deadline_)
               ? serviceObject
               : 0;
}

KernelReturn SimulatedIOKit::serviceOpen(IOObject service, std::uint32_t /*type*/,
                                         IOConnection& connection) {
    if (service != serviceObject) {
        return KernelCode::badArgument;
    }
    auto client = std::make_shared<UserClient>();
    client->socket = connect(SteadyClock::now() + deadline_);
    if (!client->socket) {
        return KernelCode::noDevice;
    }
    const std::lock_guard guard(lock_);
    connection = ++lastHandle_;
    clients_.emplace(connection, std::move(client));
    return KernelCode::success;
}

KernelReturn SimulatedIOKit::objectRelease(IOObject object) {
    return object == serviceObject ? KernelCode::success : KernelCode::badArgument;
}

KernelReturn SimulatedIOKit::serviceClose(IOConnection connection) {
    const std::lock_guard guard(lock_);
    return clients_.erase(connection) == 1 ? KernelCode::success : KernelCode::badArgument;
}

KernelReturn SimulatedIOKit::connectCallStructMethod(IOConnection connection,
                                                     std::uint32_t selector, const void* input,
                                                     std::size_t inputSize, void* output,
                                                     std::size_t& outputSize) {
    const auto client = find(connection);
    if (!client) {
        return KernelCode::notOpen;
    }
    if (inputSize > SmcWire::maximumBlockSize || outputSize > SmcWire::maximumBlockSize) {
        return KernelCode::badArgument;
    }
    const auto deadline = SteadyClock::now() + deadline_;
    const std::lock_guard guard(client->lock);

    std::array<std::byte, sizeof(SmcWire::RequestHeader) + SmcWire::maximumBlockSize> packet;
    const SmcWire::RequestHeader request{selector, static_cast<std::uint32_t>(inputSize),
                                         static_cast<std::uint32_t>(outputSize)};
    std::memcpy(packet.data(), &request, sizeof request);
    std::memcpy(packet.data() + sizeof request, input, inputSize);

    // A connection that the service closed is only noticed here; one fresh try is what "the
    // service came back below the same handle" needs.
    const std::size_t packetSize = sizeof request + inputSize;
    // One exchange at a time: there is always room for its packet.
    const auto send = [&] {
        return client->socket &&
               ::send(client->socket.get(), packet.data(), packetSize,
                      MSG_NOSIGNAL | MSG_DONTWAIT) == static_cast<ssize_t>(packetSize);
    };
    if (!send()) {
        client->socket = connect(deadline);
        if (!send()) {
            client->socket.reset();
            return KernelCode::noDevice;
        }
    }
    SmcWire::AnswerHeader answer{};
    errno = 0;
    const auto receive = [&](std::span<std::byte> bytes) {
        return receiveAll(client->socket.get(), bytes, deadline);
    };
    if (!receive(std::as_writable_bytes(std::span(&answer, 1))) || answer.outputSize > outputSize ||
        !receive({static_cast<std::byte*>(output), answer.outputSize})) {
        const bool isLate = errno == ETIMEDOUT;
        // A late answer must not be taken for the next one.
        client->socket.reset();
        return isLate ? KernelCode::timeout : KernelCode::noDevice;
    }
    outputSize = answer.outputSize;
    return answer.kernelReturn;
}

FileDescriptor SimulatedIOKit::connect(SteadyClock::time_point deadline) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
    return connectToUnixSocket(socketPath_, left);
}

std::shared_ptr<SimulatedIOKit::UserClient> SimulatedIOKit::find(IOConnection connection) {
    const std::lock_guard guard(lock_);
    const auto found = clients_.find(connection);
    return found == clients_.end() ? nullptr : found->second;
}

} // namespace ventaro
