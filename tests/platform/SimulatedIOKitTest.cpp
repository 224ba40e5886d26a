#include "SimulatedIOKit.h"

#include "ScriptedServer.h"
#include "SmcWire.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <functional>

namespace ventaro {
namespace {

/// Answers each request with what `answer` makes of its selector; "" keeps silent, "close" closes
/// the connection.
ScriptedServer::Script answering(std::function<std::string(std::uint32_t)> answer) {
    return [answer = std::move(answer)](int client) {
        for (std::string bytes; !(bytes = receiveText(client)).empty();) {
            SmcWire::RequestHeader request{};
            std::memcpy(&request, bytes.data(), sizeof request);
            const std::string reply = answer(request.selector);
            if (reply == "close") {
                return;
            }
            sendText(client, reply);
        }
    };
}

std::string answerWith(KernelReturn kernelReturn, const std::string& output) {
    const SmcWire::AnswerHeader header{kernelReturn, static_cast<std::uint32_t>(output.size())};
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + output;
}

class SimulatedService : public testing::Test {
protected:
    IOConnection open() {
        const IOObject service = find("AppleSMC");
        EXPECT_NE(service, 0U);
        IOConnection connection = 0;
        EXPECT_EQ(ioKit_.serviceOpen(service, 0, connection), KernelCode::success);
        EXPECT_EQ(ioKit_.objectRelease(service), KernelCode::success);
        return connection;
    }
    IOObject find(const char* name) {
        return ioKit_.serviceGetMatchingService(ioKit_.serviceMatching(name));
    }
    KernelReturn call(IOConnection connection, std::uint32_t selector = 2) {
        char output[8] = {};
        std::size_t size = sizeof output;
        const auto code =
            ioKit_.connectCallStructMethod(connection, selector, "in", 2, output, size);
        output_.assign(output, size);
        return code;
    }

    TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_.path() / "smc.sock";
    SimulatedIOKit ioKit_{path_};
    std::string output_;
};

TEST_F(SimulatedService, CarriesBlocksAndCodes) {
    const ScriptedServer service(path_, answering([](std::uint32_t selector) {
                                     return answerWith(-7, "s" + std::to_string(selector));
                                 }));
    const IOConnection connection = open();
    EXPECT_EQ(call(connection, 5), -7);
    EXPECT_EQ(output_, "s5");
    EXPECT_EQ(find("AppleFan"), 0U);
    EXPECT_EQ(call(connection + 1), KernelCode::notOpen);
    EXPECT_EQ(ioKit_.serviceClose(connection), KernelCode::success);
    EXPECT_EQ(ioKit_.serviceClose(connection), KernelCode::badArgument);
    EXPECT_EQ(call(connection), KernelCode::notOpen);
}

TEST_F(SimulatedService, ALateAnswerIsNeverTakenForTheNextOne) {
    std::atomic<int> requests{0};
    const ScriptedServer service(path_, answering([&](std::uint32_t) {
                                     return requests++ == 0 ? "" : answerWith(0, "ok");
                                 }));
    const IOConnection connection = open();
    EXPECT_EQ(call(connection), KernelCode::timeout);
    EXPECT_EQ(call(connection), KernelCode::success) << "on a fresh connection";
    EXPECT_EQ(output_, "ok");
}

TEST_F(SimulatedService, ReconnectsBelowTheSameHandle) {
    const auto script = answering([](std::uint32_t) { return answerWith(0, ""); });
    std::optional<ScriptedServer> service;
    service.emplace(path_, script);
    const IOConnection connection = open();
    EXPECT_EQ(call(connection), KernelCode::success);
    service.reset();
    EXPECT_EQ(find("AppleSMC"), 0U);
    EXPECT_EQ(call(connection), KernelCode::noDevice);
    EXPECT_EQ(call(connection), KernelCode::noDevice);
    service.emplace(path_, script);
    EXPECT_EQ(call(connection), KernelCode::success);
}

TEST_F(SimulatedService, BadAnswersAndBrokenConnectionsAreErrors) {
    const std::pair<std::string, KernelReturn> rows[] = {
        {"close", KernelCode::noDevice},
        {"half", KernelCode::timeout},
        {answerWith(0, std::string(200, 'x')), KernelCode::noDevice}};
    for (const auto& [answer, code] : rows) {
        const ScriptedServer service(path_,
                                     answering([reply = answer](std::uint32_t) { return reply; }));
        EXPECT_EQ(call(open()), code) << answer;
    }
    EXPECT_EQ(output_.find('x'), std::string::npos) << "never more than there is room for";
}

} // namespace
} // namespace ventaro
