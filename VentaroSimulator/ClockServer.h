#pragma once

#include "EventLoop.h"
#include "FileDescriptor.h"
#include "MachineClock.h"
#include "MachineRoot.h"

#include <chrono>
#include <map>
#include <memory>
#include <string>

namespace ventaro {

/// Sends ticks of the machine's time to the programs that ask for them. Time that passes at once
/// makes one tick, however long it was. One thread.
class ClockServer {
public:
    /// All must outlive the server. Throws std::system_error if the socket cannot be made.
    ClockServer(EventLoop& loop, const MachineClock& clock, const MachineRoot& root);
    ~ClockServer();
    ClockServer(const ClockServer&) = delete;
    ClockServer& operator=(const ClockServer&) = delete;

    /// Sends the ticks that are due; to be called when the clock was stepped.
    void sendDueTicks();

private:
    struct Listener {
        FileDescriptor socket;
        std::chrono::milliseconds interval{0}; ///< 0 until the program has asked
        std::chrono::milliseconds next{0};
    };

    void accept();
    void receive(int descriptor);
    void sendIfDue(Listener& listener);
    /// Waits for the next tick, if the clock runs by itself.
    void await(const std::shared_ptr<Listener>& listener);

    EventLoop& loop_;
    const MachineClock& clock_;
    const std::string path_;
    FileDescriptor socket_;
    std::map<int, std::shared_ptr<Listener>> listeners_;
};

} // namespace ventaro
