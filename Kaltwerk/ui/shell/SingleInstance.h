#pragma once

#include "ExclusiveRole.h"

#include <chrono>

namespace ventaro {

/// Sees to it that one user runs one Ventaro on one machine: a later start speaks to the first.
/// Main thread only.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Role {
        first,  ///< this is the running program from now on
        second, ///< another one runs, and has been told
    };
    /// What a second start wants of the first.
    enum class Request { reopen, nothing };

    /// Throws std::runtime_error, with an English sentence, if the folder for the lock cannot be
    /// made or is not this user's alone.
    explicit SingleInstance(const MachineRoot& root) : role_(root, "") {}

    /// Longer than the one that runs takes to hand the fans back at its end, when it does not
    /// answer.
    static constexpr std::chrono::seconds longestEnd{12};

    /// Becomes the first, or hands `request` to the one that is, within `patience`. Throws
    /// std::runtime_error, with an English sentence, if that one does not answer. Blocks.
    Role claim(Request request, std::chrono::milliseconds patience = longestEnd);
    /// Starts to answer; needs the event loop. Only the first may. Throws std::runtime_error, with
    /// an English sentence, if there can be no socket.
    void listen();

Q_SIGNALS:
    /// The user has started the program again.
    void reopenRequested();

private:
    ExclusiveRole role_;
};

} // namespace ventaro
