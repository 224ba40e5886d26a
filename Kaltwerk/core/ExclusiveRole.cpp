#include "ExclusiveRole.h"

#include "FileLock.h"
#include "MachineRoot.h"
#include "UnixSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QLocalSocket>
#include <QTimer>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace ventaro {

namespace {

using SteadyClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds longestLine(1000); ///< to wait for what a visitor has to say
constexpr qint64 mostBytes = 128;         ///< of a line and of an answer
constexpr mode_t permissionBits = 07777;

bool isOwnFolder(const std::filesystem::path& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid() && (status.st_mode & permissionBits) == S_IRWXU;
}

/// The user's run-time folder where the machine has one, which nobody else can take; otherwise a
/// folder with the user's number in its name.
std::filesystem::path folderPath(const MachineRoot& root) {
    const std::string user = std::to_string(::getuid());
    const std::filesystem::path runtime = root.resolve("/run/user/" + user);
    return isOwnFolder(runtime) ? runtime / "ventaro" : root.resolve("/tmp/ventaro-" + user);
}

/// Nobody else can put something in the place of a folder that has been found to be one's own:
/// /tmp lets only the owner remove it.
std::filesystem::path makeOwnFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::string reason = "it is not this user's alone";
    if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        reason = std::generic_category().message(errno);
    } else if (isOwnFolder(path)) {
        return path;
    }
    throw std::runtime_error("\"" + path.string() + "\" cannot be used: " + reason);
}

/// All that comes until the other end has nothing more to say; no value if that is nothing, too
/// much, or takes too long.
std::optional<std::string> receiveToTheEnd(int socket, SteadyClock::time_point deadline) {
    std::string text;
    std::array<char, mostBytes> buffer{};
    while (text.size() < mostBytes) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - SteadyClock::now());
        if (left <= milliseconds::zero()) {
            return std::nullopt;
        }
        setSocketTimeout(socket, SO_RCVTIMEO, left);
        const ssize_t size = ::recv(socket, buffer.data(), buffer.size(), 0);
        if (size == 0) {
            return text.empty() ? std::nullopt : std::optional(std::move(text));
        }
        if (size > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(size));
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

ExclusiveRole::Files filesIn(const std::filesystem::path& folder, const std::string& prefix) {
    return {folder / (prefix + "lock"), folder / (prefix + "socket")};
}

} // namespace

ExclusiveRole::ExclusiveRole(const MachineRoot& root, const std::string& prefix)
    : files_(filesIn(makeOwnFolder(folderPath(root)), prefix)) {
    connect(&server_, &QLocalServer::newConnection, this, &ExclusiveRole::acceptVisitors);
}

bool ExclusiveRole::claim() {
    if (!lock_) {
        lock_ = tryLockFile(files_.lock);
    }
    return isMine();
}

bool ExclusiveRole::Files::isTaken() const { return !tryLockFile(lock); }

std::optional<std::string> ExclusiveRole::Files::ask(std::string_view line,
                                                     milliseconds patience) const {
    // Without the toolkit's sockets, which need an application object that not every asker has.
    const auto deadline = SteadyClock::now() + patience;
    const FileDescriptor connection = connectToUnixSocket(socket, patience);
    const std::string text = std::string(line) + '\n';
    return connection && ::send(connection.get(), text.data(), text.size(), MSG_NOSIGNAL) > 0
               ? receiveToTheEnd(connection.get(), deadline)
               : std::nullopt;
}

void ExclusiveRole::listen(Answer answer) {
    answer_ = std::move(answer);
    const QString path = QString::fromStdString(files_.socket.string());
    QLocalServer::removeServer(path); // of one that crashed
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(path)) {
        throw std::runtime_error("\"" + path.toStdString() +
                                 "\" cannot be used: " + server_.errorString().toStdString());
    }
}

void ExclusiveRole::release() {
    server_.close();
    lock_ = {};
}

void ExclusiveRole::acceptVisitors() {
    while (QLocalSocket* visitor = server_.nextPendingConnection()) {
        connect(visitor, &QLocalSocket::disconnected, visitor, &QObject::deleteLater);
        connect(visitor, &QLocalSocket::readyRead, this,
                [this, visitor] { answerVisitor(*visitor); });
        QTimer::singleShot(longestLine, visitor, [visitor] { visitor->abort(); });
    }
}

void ExclusiveRole::answerVisitor(QLocalSocket& visitor) {
    if (!visitor.canReadLine() && visitor.bytesAvailable() < mostBytes) {
        return;
    }
    const QByteArray line = visitor.readLine(mostBytes);
    const auto answer = line.endsWith('\n')
                            ? answer_({line.data(), static_cast<std::size_t>(line.size()) - 1})
                            : std::nullopt;
    if (!answer) {
        visitor.abort();
        return;
    }
    visitor.write(answer->data(), static_cast<qint64>(answer->size()));
    visitor.disconnectFromServer();
}

} // namespace ventaro
