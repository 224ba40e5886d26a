#pragma once

#include "EventLoop.h"
#include "UnixSocket.h"
#include "WakeUp.h"

#include <deque>
#include <functional>
#include <thread>

namespace ventaro {

/// A Unix socket whose connections are treated as a script says, each on a thread of its own, and
/// end with it. The destructor cuts them off and removes the socket.
class ScriptedServer {
public:
    using Script = std::function<void(int client)>;

    ScriptedServer(std::filesystem::path path, Script script)
        : path_(std::move(path)), script_(std::move(script)) {}
    ~ScriptedServer() {
        stop_.signal();
        server_.join();
        for (const FileDescriptor& client : clients_) {
            ::shutdown(client.get(), SHUT_RDWR);
        }
        for (std::thread& thread : threads_) {
            thread.join();
        }
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

private:
    void serve() {
        EventLoop loop;
        loop.watch(stop_.descriptor(), [&] { loop.stop(); });
        loop.watch(listener_.get(), [this] {
            const FileDescriptor& client =
                clients_.emplace_back(::accept(listener_.get(), nullptr, nullptr));
            threads_.emplace_back([this, socket = client.get()] {
                script_(socket);
                ::shutdown(socket, SHUT_RDWR);
            });
        });
        loop.run();
    }

    const std::filesystem::path path_;
    const Script script_;
    const FileDescriptor listener_ = listenOnUnixSocket(path_, 0600);
    WakeUp stop_;
    std::deque<FileDescriptor> clients_; ///< of `server_` until that has ended, like their threads
    std::deque<std::thread> threads_;
    std::thread server_{[this] { serve(); }};
};

/// What arrives in one read; empty at the end.
inline std::string receiveText(int socket) {
    std::string text(5000, '\0');
    const ssize_t count = ::recv(socket, text.data(), text.size(), 0);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}
inline void sendText(int socket, std::string_view text) {
    ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
}

} // namespace ventaro
