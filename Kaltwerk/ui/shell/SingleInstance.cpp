#include "SingleInstance.h"

#include "FileLock.h"
#include "UnixSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QLocalSocket>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

namespace ventaro {

namespace {

using SteadyClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr const char* lockName = "lock";
constexpr const char* socketName = "socket";
constexpr std::string_view reopenLine = "reopen\n";
constexpr std::string_view nothingLine = "nothing\n";
constexpr std::string_view answer = "ok";
constexpr milliseconds pauseBetweenTries(20);
constexpr milliseconds longestLine(1000); ///< to wait for what a start has to say

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

} // namespace

SingleInstance::SingleInstance(const MachineRoot& root) : folder_(makeOwnFolder(folderPath(root))) {
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::acceptStarts);
}

SingleInstance::Role SingleInstance::claim(Request request, milliseconds patience) {
    const auto end = SteadyClock::now() + patience;
    // Once more as long as there is time: the first may not listen yet, or may be about to end.
    for (auto left = patience; left > milliseconds::zero();
         left = std::chrono::ceil<milliseconds>(end - SteadyClock::now())) {
        lock_ = tryLockFile(folder_ / lockName);
        if (lock_) {
            return Role::first;
        }
        if (tell(request, left)) {
            return Role::second;
        }
        std::this_thread::sleep_for(std::min(left, pauseBetweenTries));
    }
    throw std::runtime_error("Ventaro is running already, but it does not answer.");
}

/// Without the toolkit's sockets, which need the application that a second start never becomes.
bool SingleInstance::tell(Request request, milliseconds patience) const {
    const FileDescriptor socket = connectToUnixSocket(folder_ / socketName, patience);
    const std::string_view line = request == Request::reopen ? reopenLine : nothingLine;
    std::array<char, answer.size()> buffer{};
    return socket && ::send(socket.get(), line.data(), line.size(), MSG_NOSIGNAL) > 0 &&
           receiveAll(socket.get(), std::as_writable_bytes(std::span(buffer)),
                      SteadyClock::now() + patience) &&
           std::string_view(buffer.data(), buffer.size()) == answer;
}

void SingleInstance::listen() {
    const QString path = QString::fromStdString((folder_ / socketName).string());
    QLocalServer::removeServer(path); // of a first one that crashed
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(path)) {
        throw std::runtime_error("\"" + path.toStdString() +
                                 "\" cannot be used: " + server_.errorString().toStdString());
    }
}

void SingleInstance::acceptStarts() {
    while (QLocalSocket* start = server_.nextPendingConnection()) {
        connect(start, &QLocalSocket::disconnected, start, &QObject::deleteLater);
        connect(start, &QLocalSocket::readyRead, this, [this, start] { answerStart(*start); });
        QTimer::singleShot(longestLine, start, [start] { start->abort(); });
    }
}

void SingleInstance::answerStart(QLocalSocket& start) {
    constexpr qint64 most = 16;
    if (!start.canReadLine() && start.bytesAvailable() < most) {
        return;
    }
    const QByteArray line = start.readLine(most);
    const bool isReopen = line == reopenLine.data();
    if (isReopen || line == nothingLine.data()) {
        start.write(answer.data(), answer.size());
        start.disconnectFromServer();
    } else {
        start.abort();
    }
    if (isReopen) {
        Q_EMIT reopenRequested();
    }
}

} // namespace ventaro
