#include "Commands.h"

#include "InProcessIOKit.h"
#include "JsonObject.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <sstream>

namespace ventaro {
namespace {

class CommandLine : public testing::Test {
protected:
    SimulatedSmc smc_{{}};
    InProcessIOKit ioKit_{smc_, false};
    SMCService service_{ioKit_};
    HelperClient nobody_{"/nonexistent/helper.sock"};
    std::ostringstream out_;
    Commands commands_{service_, nobody_, MachineKind::simulated, out_};
};

TEST_F(CommandLine, JsonArraysOfTheRecords) {
    commands_.fans(true);
    const auto fans = readJsonObjects(out_.str());
    ASSERT_EQ(fans.size(), 2U);
    EXPECT_EQ(fans[0].string("name"), "Linker Lüfter (CPU)");
    EXPECT_EQ(fans[1].integer("id"), 1);

    smc_.faults().add("F0Ac value nan");
    EXPECT_THROW(commands_.fans(true), EncodingError) << "JSON has no such number";
    EXPECT_NO_THROW(commands_.fans(false));
}

TEST_F(CommandLine, OneKey) {
    commands_.key("F0Mn", true);
    EXPECT_EQ(out_.str(), R"({"key":"F0Mn","type":"flt ","bytes":"0080E544","value":1836.0})"
                          "\n");
    out_.str("");
    commands_.key("F0Mn", false);
    EXPECT_EQ(out_.str(), "Key    F0Mn\nType   flt \nBytes  0080E544\nValue  1836.0000\n");
    out_.str("");
    commands_.key("#KEY", false);
    EXPECT_NE(out_.str().find("Value  –\n"), std::string::npos);
    EXPECT_THROW(commands_.key("ZZZZ", false), SMCError);
}

TEST_F(CommandLine, WithoutAnAnswerThereAreNoInventedFans) {
    smc_.faults().add("service gone");
    EXPECT_THROW(commands_.fans(false), SMCError);
    EXPECT_THROW(commands_.sensors(false, {}), SMCError);
    const Telemetry telemetry = commands_.look();
    EXPECT_TRUE(telemetry.fans.empty() && !telemetry.failure.empty());
}

} // namespace
} // namespace ventaro
