#pragma once

#include "EventLoop.h"
#include "FileDescriptor.h"
#include "MachineRoot.h"
#include "SimulatedSmc.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ventaro {

/// Offers the simulated SMC to other processes over two sockets, one for the logged-in user and one
/// for the machine's root. One thread.
class SmcServer {
public:
    /// All must outlive the server. `bringUpToDate` is called before each exchange. Throws
    /// std::system_error if the sockets cannot be made.
    SmcServer(EventLoop& loop, SimulatedSmc& smc, const MachineRoot& root,
              std::function<void()> bringUpToDate);
    ~SmcServer();
    SmcServer(const SmcServer&) = delete;
    SmcServer& operator=(const SmcServer&) = delete;

    /// Makes the service appear or disappear, as the SMC's faults say now.
    void applyServiceFault();

private:
    struct Listener {
        std::string path;
        mode_t mode;
        bool privileged;
        FileDescriptor socket;
    };

    struct Connection {
        FileDescriptor socket;
        bool privileged;
        std::vector<std::byte> received{}; ///< of a request that is not whole yet
    };

    void appear();
    void disappear();
    void acceptFrom(const Listener& listener);
    void receive(const std::shared_ptr<Connection>& connection);
    void exchange(const std::shared_ptr<Connection>& connection);
    void disconnect(int socket);

    EventLoop& loop_;
    SimulatedSmc& smc_;
    const std::function<void()> bringUpToDate_;
    Listener user_;
    Listener root_;
    std::map<int, std::shared_ptr<Connection>> connections_;
};

} // namespace ventaro
