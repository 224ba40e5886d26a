#include "RecordingHelper.h"

#include "EventLoop.h"
#include "NumberFormat.h"
#include "UnixSocket.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <utility>

namespace ventaro {

namespace {

std::string describe(const HelperRequest& request) {
    switch (request.action) {
    case HelperAction::ping:
        return "ping";
    case HelperAction::setFanRPM:
        return "set " + std::to_string(*request.fanIndex) + " " + formatWhole(*request.rpm);
    case HelperAction::resetAllAuto:
        return "reset";
    case HelperAction::resetFanAuto:
        break;
    }
    return "?";
}

} // namespace

RecordingHelper::RecordingHelper(const std::filesystem::path& path)
    : listener_(listenOnUnixSocket(path, 0600)), thread_([this] { serve(); }) {}

RecordingHelper::~RecordingHelper() {
    stop_.signal();
    thread_.join();
    for (std::thread& exchange : exchanges_) {
        exchange.join();
    }
}

void RecordingHelper::setAnswer(Answer answer) {
    const std::lock_guard guard(lock_);
    answer_ = std::move(answer);
}

std::vector<std::string> RecordingHelper::taken() {
    const std::lock_guard guard(lock_);
    return std::exchange(requests_, {});
}

RecordingHelper::Answer RecordingHelper::record(std::string line) {
    const std::lock_guard guard(lock_);
    pollfd entry{hung_.get(), POLLIN, 0};
    if (hung_ && ::poll(&entry, 1, 0) == 0) {
        line += " meanwhile";
    }
    requests_.push_back(std::move(line));
    return answer_;
}

void RecordingHelper::hangOn(int client) {
    {
        const std::lock_guard guard(lock_);
        hung_.reset(::dup(client));
    }
    char byte = 0;
    ::recv(client, &byte, 1, 0);
}

void RecordingHelper::serve() {
    EventLoop loop;
    loop.watch(stop_.descriptor(), [&] { loop.stop(); });
    loop.watch(listener_.get(), [this] {
        exchanges_.emplace_back([this, socket = ::accept(listener_.get(), nullptr, nullptr)] {
            exchange(FileDescriptor(socket));
        });
    });
    loop.run();
}

void RecordingHelper::exchange(const FileDescriptor& client) {
    std::string text(maximumHelperMessageSize, '\0');
    const ssize_t count = ::recv(client.get(), text.data(), text.size(), 0);
    if (count <= 0) {
        return; // nothing was asked in the end
    }
    text.resize(static_cast<std::size_t>(count));
    const HelperRequest request = decodeHelperRequest(text);
    const std::string response = record(describe(request))(request);
    if (response == hang) {
        hangOn(client.get());
        return;
    }
    ::send(client.get(), response.data(), response.size(), MSG_NOSIGNAL);
}

} // namespace ventaro
