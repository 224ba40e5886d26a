#pragma once

#include "FileDescriptor.h"

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace ventaro {

/// The address of a Unix domain socket: zero bytes, then the path, cut to the path field less one
/// byte so that it always ends in a zero byte.
sockaddr_un unixSocketAddress(const std::string& path);

/// Whether `path` fits a Unix domain socket's address whole.
bool fitsUnixSocketAddress(const std::string& path);

/// Binds and listens on `path` with the given socket type (SOCK_STREAM, SOCK_SEQPACKET) and file
/// mode; not blocking, closed on exec. A file already there is an error. Throws std::system_error.
FileDescriptor listenOnUnixSocket(const std::filesystem::path& path, int type, mode_t mode);

/// Connects to `path` within `timeout`, which also bounds every later send; closed on exec. An
/// empty descriptor with errno set on failure.
FileDescriptor connectToUnixSocket(const std::filesystem::path& path, int type,
                                   std::chrono::milliseconds timeout);

/// Bounds each call that `option` names (SO_RCVTIMEO, SO_SNDTIMEO) on `socket`, by at least 1 ms.
void setSocketTimeout(int socket, int option, std::chrono::milliseconds timeout);

/// The user at the other end of a connected Unix domain socket; no value if the kernel does not
/// say.
std::optional<uid_t> peerUser(int socket);

} // namespace ventaro
