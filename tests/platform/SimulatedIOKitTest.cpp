#include "SimulatedIOKit.h"

#include "SmcWire.h"
#include "TestSupport.h"
#include "UnixSocket.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <thread>

namespace ventaro {
namespace {

using std::chrono::milliseconds;

/// A service that answers each request with what `answer` makes of it; an empty packet closes.
class ScriptedService {
public:
    using Answer = std::function<std::string(std::uint32_t selector)>;

    ScriptedService(const std::filesystem::path& path, Answer answer)
        : path_(path),
          answer_(std::move(answer)),
          listener_(listenOnUnixSocket(path, 0600)),
          thread_([this] { serve(); }) {}
    ~ScriptedService() {
        stop_ = true;
        thread_.join();
        ::unlink(path_.c_str());
    }

private:
    void serve() {
        FileDescriptor client;
        while (!stop_) {
            if (FileDescriptor next{::accept(listener_.get(), nullptr, nullptr)}) {
                client = std::move(next);
            }
            std::array<char, sizeof(SmcWire::RequestHeader) + SmcWire::maximumBlockSize> bytes{};
            if (client && ::recv(client.get(), bytes.data(), bytes.size(), MSG_DONTWAIT) > 0) {
                SmcWire::RequestHeader request{};
                std::memcpy(&request, bytes.data(), sizeof request);
                const std::string reply = answer_(request.selector);
                if (reply == "close") {
                    client.reset();
                } else if (!reply.empty()) {
                    ::send(client.get(), reply.data(), reply.size(), MSG_NOSIGNAL);
                }
            }
            std::this_thread::yield();
        }
    }

    std::filesystem::path path_;
    Answer answer_;
    FileDescriptor listener_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

std::string answerWith(KernelReturn kernelReturn, const std::string& output) {
    const SmcWire::AnswerHeader header{kernelReturn, static_cast<std::uint32_t>(output.size())};
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + output;
}

class SimulatedService : public testing::Test {
protected:
    IOConnection open(IOKit& ioKit) {
        const IOObject service = ioKit.serviceGetMatchingService(ioKit.serviceMatching("AppleSMC"));
        EXPECT_NE(service, 0U);
        IOConnection connection = 0;
        EXPECT_EQ(ioKit.serviceOpen(service, 0, connection), KernelCode::success);
        EXPECT_EQ(ioKit.objectRelease(service), KernelCode::success);
        return connection;
    }
    KernelReturn call(IOKit& ioKit, IOConnection connection, std::uint32_t selector = 2) {
        outputSize_ = sizeof output_;
        return ioKit.connectCallStructMethod(connection, selector, "in", 2, output_, outputSize_);
    }

    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_.path() / "smc.sock";
    char output_[8] = {};
    std::size_t outputSize_ = 0;
};

TEST_F(SimulatedService, CarriesBlocksAndCodes) {
    const ScriptedService service(path_, [](std::uint32_t selector) {
        return answerWith(-7, "s" + std::to_string(selector));
    });
    SimulatedIOKit ioKit(path_);
    const IOConnection connection = open(ioKit);
    EXPECT_EQ(call(ioKit, connection, 5), -7);
    EXPECT_EQ(std::string(output_, outputSize_), "s5");
    EXPECT_EQ(ioKit.serviceGetMatchingService(ioKit.serviceMatching("AppleFan")), 0U);
    EXPECT_EQ(call(ioKit, connection + 1), KernelCode::notOpen);
    EXPECT_EQ(ioKit.serviceClose(connection), KernelCode::success);
    EXPECT_EQ(ioKit.serviceClose(connection), KernelCode::badArgument);
    EXPECT_EQ(call(ioKit, connection), KernelCode::notOpen);
}

TEST_F(SimulatedService, ALateAnswerIsNeverTakenForTheNextOne) {
    std::atomic<int> requests{0};
    const ScriptedService service(path_, [&](std::uint32_t) {
        return requests++ == 0 ? std::string() : answerWith(0, "ok");
    });
    SimulatedIOKit ioKit(path_, milliseconds(50));
    const IOConnection connection = open(ioKit);
    EXPECT_EQ(call(ioKit, connection), KernelCode::timeout);
    EXPECT_EQ(call(ioKit, connection), KernelCode::success) << "on a fresh connection";
    EXPECT_EQ(std::string(output_, outputSize_), "ok");
}

TEST_F(SimulatedService, ReconnectsBelowTheSameHandle) {
    const auto answer = [](std::uint32_t) { return answerWith(0, ""); };
    SimulatedIOKit ioKit(path_);
    IOConnection connection = 0;
    {
        const ScriptedService service(path_, answer);
        connection = open(ioKit);
        EXPECT_EQ(call(ioKit, connection), KernelCode::success);
    }
    EXPECT_EQ(ioKit.serviceGetMatchingService(ioKit.serviceMatching("AppleSMC")), 0U);
    EXPECT_EQ(call(ioKit, connection), KernelCode::noDevice);
    EXPECT_EQ(call(ioKit, connection), KernelCode::noDevice);
    const ScriptedService service(path_, answer);
    EXPECT_EQ(call(ioKit, connection), KernelCode::success);
}

TEST_F(SimulatedService, BadAnswersAndBrokenConnectionsAreErrors) {
    const std::pair<std::string, KernelReturn> rows[] = {
        {"close", KernelCode::noDevice},
        {"half", KernelCode::timeout},
        {answerWith(0, std::string(sizeof output_ + 1, 'x')), KernelCode::noDevice},
    };
    for (const auto& [reply, code] : rows) {
        const ScriptedService service(path_, [&reply = reply](std::uint32_t) { return reply; });
        SimulatedIOKit ioKit(path_, milliseconds(200));
        EXPECT_EQ(call(ioKit, open(ioKit)), code) << reply;
        EXPECT_EQ(output_[0], 0) << "never more than there is room for";
    }
}

} // namespace
} // namespace ventaro
