#pragma once

#include "FileDescriptor.h"

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

namespace ventaro {

/// The address of a Unix domain socket: zero bytes, then the path, cut to the path field less one
/// byte so that it always ends in a zero byte.
sockaddr_un unixSocketAddress(const std::string& path);

/// Whether `path` fits a Unix domain socket's address whole.
bool fitsUnixSocketAddress(const std::string& path);

/// Binds and listens on `path`, a stream, with this file mode; not blocking, closed on exec. A file
/// already there is an error. Throws std::system_error.
FileDescriptor listenOnUnixSocket(const std::filesystem::path& path, mode_t mode);

/// Connects to the stream at `path` within `timeout`, which also bounds every later send; closed on
/// exec. An empty descriptor with errno set on failure.
FileDescriptor connectToUnixSocket(const std::filesystem::path& path,
                                   std::chrono::milliseconds timeout);

/// Bounds each call that `option` names (SO_RCVTIMEO, SO_SNDTIMEO) on `socket`, by at least 1 ms.
void setSocketTimeout(int socket, int option, std::chrono::milliseconds timeout);

/// Fills `bytes` from the stream. False if it ends before, or `deadline` comes, and then errno is
/// ETIMEDOUT.
bool receiveAll(int socket, std::span<std::byte> bytes,
                std::chrono::steady_clock::time_point deadline);

} // namespace ventaro
