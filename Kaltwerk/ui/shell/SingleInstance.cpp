#include "SingleInstance.h"

#include "SystemCalls.h"
#include "UnixSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSocketNotifier>
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
constexpr std::string_view reopenMessage = "reopen";
constexpr std::string_view nothingMessage = "nothing";
constexpr std::string_view answer = "ok";
constexpr std::size_t mostVisitors = 8;
constexpr milliseconds pauseBetweenTries(20);

constexpr mode_t permissionBits = 07777;

bool isOwnFolder(const struct stat& status) {
    return S_ISDIR(status.st_mode) && status.st_uid == ::getuid() &&
           (status.st_mode & permissionBits) == S_IRWXU;
}

/// The user's run-time folder where the machine has one, which nobody else can take; otherwise a
/// folder with the user's number in its name.
std::filesystem::path folderPath(const MachineRoot& root) {
    const std::string user = std::to_string(::getuid());
    const std::filesystem::path runtime = root.resolve("/run/user/" + user);
    struct stat status {};
    if (::lstat(runtime.c_str(), &status) == 0 && isOwnFolder(status)) {
        return runtime / "ventaro";
    }
    return root.resolve("/tmp/ventaro-" + user);
}

[[noreturn]] void refuse(const std::filesystem::path& path, const std::string& reason) {
    throw std::runtime_error("\"" + path.string() + "\" cannot be used: " + reason);
}

std::string reasonOf(int error) { return std::generic_category().message(error); }

FileDescriptor openOwnFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        refuse(path, reasonOf(errno));
    }
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!folder || ::fstat(folder.get(), &status) != 0) {
        refuse(path, reasonOf(errno));
    }
    if (!isOwnFolder(status)) {
        refuse(path, "it is not this user's alone");
    }
    return folder;
}

} // namespace

/// A connection that has not said yet what it wants.
struct SingleInstance::Visitor {
    explicit Visitor(FileDescriptor connection)
        : socket(std::move(connection)),
          notifier(std::make_unique<QSocketNotifier>(socket.get(), QSocketNotifier::Read)) {}
    FileDescriptor socket;
    std::unique_ptr<QSocketNotifier> notifier;
};

SingleInstance::SingleInstance(const MachineRoot& root)
    : folder_(openOwnFolder(folderPath(root))) {}

SingleInstance::~SingleInstance() {
    if (listener_) {
        ::unlinkat(folder_.get(), socketName, 0); // while the lock is still held
    }
}

SingleInstance::Role SingleInstance::claim(Request request, milliseconds patience) {
    const auto end = SteadyClock::now() + patience;
    // Once more as long as there is time: the first may not listen yet, or may be about to end.
    for (auto left = patience; left > milliseconds::zero();
         left = std::chrono::ceil<milliseconds>(end - SteadyClock::now())) {
        if (lock()) {
            return Role::first;
        }
        if (tell(request, left)) {
            return Role::second;
        }
        std::this_thread::sleep_for(std::min(left, pauseBetweenTries));
    }
    throw std::runtime_error("Ventaro is running already, but it does not answer.");
}

bool SingleInstance::lock() {
    constexpr mode_t mode = S_IRUSR | S_IWUSR;
    FileDescriptor file(
        ::openat(folder_.get(), lockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file) {
        refuse(lockName, reasonOf(errno));
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    lock_ = std::move(file);
    return true;
}

/// By way of the open folder: as short as an address must be, and nobody can exchange the folder.
std::string SingleInstance::path(const char* name) const {
    return "/proc/self/fd/" + std::to_string(folder_.get()) + '/' + name;
}

bool SingleInstance::tell(Request request, milliseconds patience) const {
    const FileDescriptor socket = connectToUnixSocket(path(socketName), patience);
    if (!socket || peerUser(socket.get()) != ::getuid()) {
        return false;
    }
    setSocketTimeout(socket.get(), SO_RCVTIMEO, patience);
    const std::string_view message = request == Request::reopen ? reopenMessage : nothingMessage;
    std::array<char, answer.size() + 1> buffer{};
    if (::send(socket.get(), message.data(), message.size(), MSG_NOSIGNAL) < 0) {
        return false;
    }
    const ssize_t count = ::recv(socket.get(), buffer.data(), buffer.size(), 0);
    return count > 0 && std::string_view(buffer.data(), static_cast<std::size_t>(count)) == answer;
}

void SingleInstance::listen() {
    ::unlinkat(folder_.get(), socketName, 0); // of a first one that crashed
    listener_ = listenOnUnixSocket(path(socketName), S_IRUSR | S_IWUSR);
    notifier_ = std::make_unique<QSocketNotifier>(listener_.get(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SingleInstance::welcome);
}

void SingleInstance::welcome() {
    FileDescriptor socket = acceptConnection(listener_.get());
    if (!socket || peerUser(socket.get()) != ::getuid()) {
        return;
    }
    if (visitors_.size() == mostVisitors) {
        visitors_.erase(visitors_.begin());
    }
    visitors_.push_back(std::make_unique<Visitor>(std::move(socket)));
    Visitor& visitor = *visitors_.back();
    connect(visitor.notifier.get(), &QSocketNotifier::activated, this,
            [this, &visitor] { hear(visitor); });
}

void SingleInstance::hear(Visitor& visitor) {
    std::array<char, 16> buffer{};
    const ssize_t count = ::recv(visitor.socket.get(), buffer.data(), buffer.size(), MSG_TRUNC);
    const std::string_view message(
        buffer.data(),
        std::min(static_cast<std::size_t>(std::max<ssize_t>(count, 0)), buffer.size()));
    const bool isReopen = message == reopenMessage;
    if (isReopen || message == nothingMessage) {
        ::send(visitor.socket.get(), answer.data(), answer.size(), MSG_NOSIGNAL);
    }
    dismiss(visitor);
    if (isReopen) {
        Q_EMIT reopenRequested();
    }
}

void SingleInstance::dismiss(const Visitor& visitor) {
    const auto found =
        std::find_if(visitors_.begin(), visitors_.end(),
                     [&visitor](const auto& each) { return each.get() == &visitor; });
    QSocketNotifier* notifier = (*found)->notifier.release(); // which is just speaking
    notifier->setEnabled(false);
    notifier->deleteLater();
    visitors_.erase(found);
}

} // namespace ventaro
