#pragma once

#include "FileDescriptor.h"

#include <QElapsedTimer>
#include <QTimer>
#include <filesystem>
#include <memory>

class QSocketNotifier;

namespace ventaro {

/// The watcher beside the running program; empty if there is none.
std::filesystem::path watcherProgram();

/// Keeps a small program beside this one that hands the fans back should this one end without
/// having done so, by whatever cause. Main thread only.
class ControlWatcher : public QObject {
    Q_OBJECT

public:
    /// `program`: the watcher's; empty if there is none, and then nothing is watched. `controlLock`
    /// and `helperSocket` are what it is told.
    ControlWatcher(std::filesystem::path program, std::filesystem::path controlLock,
                   std::filesystem::path helperSocket);
    /// The watcher stays, unless it has been told that all is well.
    ~ControlWatcher() override;

    /// From now on the end of this process hands the fans back. The watcher is started anew should
    /// it end.
    void begin();
    /// All is well.
    void end();

private:
    void start();
    void hasEnded();

    const std::filesystem::path program_;
    const std::filesystem::path controlLock_;
    const std::filesystem::path helperSocket_;
    bool isWanted_ = false;
    FileDescriptor link_; ///< whose end the watcher waits for
    FileDescriptor life_; ///< which ends with the watcher
    std::unique_ptr<QSocketNotifier> lifeEnds_;
    QElapsedTimer lastStart_;
    QTimer restart_;
};

} // namespace ventaro
