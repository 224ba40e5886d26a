#include "UnixSocket.h"

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

FileDescriptor listenOnUnixSocket(const std::filesystem::path& path, int type, mode_t mode) {
    if (!fitsUnixSocketAddress(path.string())) {
        errno = ENAMETOOLONG;
        throwErrno(path.string());
    }
    FileDescriptor listener(::socket(AF_UNIX, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
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

FileDescriptor connectToUnixSocket(const std::filesystem::path& path, int type,
                                   std::chrono::milliseconds timeout) {
    FileDescriptor socket(::socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
    if (socket) {
        setSocketTimeout(socket.get(), SO_SNDTIMEO, timeout);
    }
    const sockaddr_un address = unixSocketAddress(path.string());
    if (socket && ::connect(socket.get(), asSockaddr(address), sizeof address) != 0) {
        socket.reset();
    }
    return socket;
}

std::optional<uid_t> peerUser(int socket) {
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) {
        return std::nullopt;
    }
    return credentials.uid;
}

} // namespace ventaro
