#include "UnixSocket.h"

#include "SystemCalls.h"

#include <poll.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace ventaro {

namespace {

constexpr std::size_t pathCapacity = sizeof(sockaddr_un::sun_path) - 1;

[[noreturn]] void throwErrno(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

const sockaddr* asSockaddr(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

} // namespace

sockaddr_un unixSocketAddress(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), std::min(path.size(), pathCapacity));
    return address;
}

bool fitsUnixSocketAddress(const std::string& path) { return path.size() <= pathCapacity; }

FileDescriptor listenOnUnixSocket(const std::filesystem::path& path, mode_t mode) {
    if (!fitsUnixSocketAddress(path.string())) {
        errno = ENAMETOOLONG;
        throwErrno(path.string());
    }
    FileDescriptor listener = makeUnixSocket(Blocking::no);
    if (!listener) {
        throwErrno("socket");
    }
    const sockaddr_un address = unixSocketAddress(path.string());
    if (::bind(listener.get(), asSockaddr(address), sizeof address) != 0 ||
        ::chmod(path.c_str(), mode) != 0 || ::listen(listener.get(), SOMAXCONN) != 0) {
        throwErrno(path.string());
    }
    return listener;
}

void setSocketTimeout(int socket, int option, std::chrono::milliseconds timeout) {
    timeout = std::max(timeout, std::chrono::milliseconds(1)); // the kernel waits for ever on 0
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(timeout);
    const std::chrono::microseconds rest = timeout - seconds;
    timeval value{};
    value.tv_sec = seconds.count();
    value.tv_usec = rest.count();
    ::setsockopt(socket, SOL_SOCKET, option, &value, sizeof value);
}

FileDescriptor connectToUnixSocket(const std::filesystem::path& path,
                                   std::chrono::milliseconds timeout) {
    FileDescriptor socket = makeUnixSocket(Blocking::yes);
    if (socket) {
        setSocketTimeout(socket.get(), SO_SNDTIMEO, timeout);
    }
    const sockaddr_un address = unixSocketAddress(path.string());
    if (socket && ::connect(socket.get(), asSockaddr(address), sizeof address) != 0) {
        socket.reset();
    }
    return socket;
}

bool receiveAll(int socket, std::span<std::byte> bytes,
                std::chrono::steady_clock::time_point deadline) {
    while (!bytes.empty()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd entry{socket, POLLIN, 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(std::max<long>(0, left.count())));
        if (ready == 0) {
            errno = ETIMEDOUT;
            return false;
        }
        const ssize_t count =
            ready > 0 ? ::recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT) : -1;
        if (count == 0) {
            errno = ECONNRESET;
        }
        if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN)) {
            return false;
        }
        bytes = bytes.subspan(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

} // namespace ventaro
