#pragma once

#include "FileDescriptor.h"

#include <QLocalServer>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

class QLocalSocket;

namespace ventaro {

class MachineRoot;

/// What only one process of a user does on one machine, such as being the application. A lock
/// decides who; the others speak to it over a socket beside the lock, a line at a time. Main thread
/// only.
class ExclusiveRole : public QObject {
    Q_OBJECT

public:
    /// Answers a line, which comes without its end; no value ends the connection.
    using Answer = std::function<std::optional<std::string>(std::string_view line)>;

    /// The others' side. A plain value; any thread.
    struct Files {
        std::filesystem::path lock;
        std::filesystem::path socket;

        /// Whether a process has the role.
        bool isTaken() const;
        /// What that one answers within `patience`; no value if it does not, or if there is none.
        /// Blocks.
        std::optional<std::string> ask(std::string_view line,
                                       std::chrono::milliseconds patience) const;
    };

    /// `prefix` of the two files tells roles apart. Throws std::runtime_error, with an English
    /// sentence, if their folder cannot be made or is not this user's alone.
    ExclusiveRole(const MachineRoot& root, const std::string& prefix);

    bool isMine() const { return static_cast<bool>(lock_); }
    /// Takes it unless another process has it. Throws std::system_error if there can be no lock.
    bool claim();
    /// Starts to answer; needs the event loop and the role. Throws std::runtime_error, with an
    /// English sentence, if there can be no socket.
    void listen(Answer answer);
    /// Gives it up.
    void release();

    const Files& files() const { return files_; }

private:
    void acceptVisitors();
    void answerVisitor(QLocalSocket& visitor);

    const Files files_;
    FileDescriptor lock_; ///< held until the server is gone
    Answer answer_;
    QLocalServer server_;
};

} // namespace ventaro
