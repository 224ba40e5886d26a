#include "InProcessMachine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <thread>

namespace ventaro {
namespace {

using testing::ElementsAre;

TEST(KeyAccess, KeyInformationIsAskedForOnce) {
    InProcessMachine machine;
    machine.service.readKeyRaw("TC0P");
    const SMCRawValue value = machine.service.readKeyRaw("TC0P");
    EXPECT_EQ(value.type, "sp78");
    EXPECT_EQ(value.bytes.size(), 2U);
    machine.service.close();
    machine.service.readKeyRaw("TC0P"); // the cache outlives the connection
    EXPECT_THAT(machine.taken(), ElementsAre("9 TC0P", "5 TC0P", "5 TC0P", "5 TC0P"));
    EXPECT_EQ(machine.ioKit.unreleasedObjects(), 0);
    EXPECT_EQ(machine.ioKit.openConnections(), 1);
}

TEST(KeyAccess, AnUnknownKeyIsAskedForAgain) {
    InProcessMachine machine;
    const auto read = [&] { machine.service.readKeyRaw("ZZZZ"); };
    // A lock left behind by a failed look-up would hang here.
    EXPECT_EQ(errorOf(read), SMCError::keyNotFound("ZZZZ"));
    EXPECT_EQ(errorOf(read), SMCError::keyNotFound("ZZZZ"));
    EXPECT_EQ(errorOf([&] { machine.service.writeValue("ZZZZ", 1); }),
              SMCError::keyNotFound("ZZZZ"));
    EXPECT_EQ(machine.service.readDouble("ZZZZ"), std::nullopt);
    EXPECT_THAT(machine.taken(), ElementsAre("9 ZZZZ", "9 ZZZZ", "9 ZZZZ", "9 ZZZZ"));
    EXPECT_TRUE(machine.service.readDouble("TC0P"));
}

TEST(KeyAccess, TheBlocksOnTheWire) {
    InProcessMachine machine;
    const std::uint8_t bytes[] = {0xAB, 0xCD};
    machine.service.writeKeyRaw("F0Tg", bytes);
    SMCKeyData_t expected[2]{};
    expected[0].key = expected[1].key = 0x46305467; // "F0Tg"
    expected[0].data8 = 9;
    expected[1].data8 = 6;
    expected[1].keyInfo.dataSize = 4;
    expected[1].keyInfo.dataType = 0x666C7420; // "flt "
    expected[1].bytes[0] = 0xAB;
    expected[1].bytes[1] = 0xCD; // and two zero bytes up to the key's own size
    // The gaps between the fields travel, too, and must be zero.
    EXPECT_TRUE(std::ranges::equal(std::as_bytes(std::span(machine.exchanges)),
                                   std::as_bytes(std::span(expected))));

    machine.smc.faults().add("TC0P size 40"); // which is more than a block carries
    EXPECT_EQ(machine.service.readKeyRaw("TC0P").bytes.size(), 32U);
    machine.service.writeKeyRaw("F0Tg", std::vector<std::uint8_t>(40, 0x11));
    EXPECT_EQ(machine.exchanges.back().bytes[31], 0x11);
}

TEST(KeyAccess, FailuresNameKeyAndCodesAndKeepTheConnection) {
    InProcessMachine machine;
    SMCService& service = machine.service;
    service.readKeyRaw("TC0P");
    machine.smc.faults().addAll("TC0P read-fails 85\nF0Md write-fails 86\nTC0F type sp78\n");
    EXPECT_EQ(errorOf([&] { service.readKeyRaw("TC0P"); }), SMCError::readFailed("TC0P", 0x85));
    EXPECT_EQ(errorOf([&] { service.writeValue("F0Md", 1); }),
              SMCError::writeFailed("F0Md", 0, 0x86));
    EXPECT_EQ(errorOf([&] { service.writeValue("TC0F", 1); }),
              SMCError::unsupportedDataType("sp78"));
    machine.smc.faults().clear();
    machine.smc.faults().add("service gone");
    EXPECT_EQ(errorOf([&] { service.readKeyRaw("TC0P"); }), SMCError::readFailed("TC0P", 0));
    EXPECT_EQ(errorOf([&] { service.readKeyRaw("TC0E"); }), SMCError::keyNotFound("TC0E"));
    EXPECT_EQ(machine.ioKit.openConnections(), 1);
    machine.smc.faults().add("service back");
    machine.taken();
    EXPECT_TRUE(service.readDouble("TC0P"));
    EXPECT_THAT(machine.taken(), ElementsAre("5 TC0P"));

    InProcessMachine ordinary({}, false);
    EXPECT_EQ(errorOf([&] { ordinary.service.writeValue("F0Md", 1); }),
              SMCError::writeFailed("F0Md", KernelCode::notPrivileged, 0));
    EXPECT_TRUE(ordinary.service.readDouble("F0Md"));
}

TEST(KeyAccess, ConnectsWhenTheServiceAppears) {
    SimulatedSmc smc({});
    InProcessIOKit ioKit(smc, true);
    {
        const SMCService connected(ioKit);
        EXPECT_EQ(ioKit.openConnections(), 1) << "construction connects";
    }
    EXPECT_EQ(ioKit.openConnections(), 0) << "destruction disconnects";
    smc.faults().add("service gone");
    SMCService service(ioKit);
    EXPECT_EQ(errorOf([&] { service.readKeyRaw("TC0P"); }), SMCError::serviceNotFound());
    EXPECT_EQ(errorOf([&] { service.writeValue("F0Md", 1); }), SMCError::serviceNotFound());
    smc.faults().add("service back");
    ioKit.openResult = KernelCode::notPrivileged;
    EXPECT_EQ(errorOf([&] { service.open(); }),
              SMCError::connectionFailed(KernelCode::notPrivileged));
    EXPECT_EQ(ioKit.unreleasedObjects(), 0) << "the service object is released all the same";
    ioKit.openResult = KernelCode::success;
    EXPECT_TRUE(service.readDouble("TC0P"));
    service.open();
    EXPECT_EQ(ioKit.openConnections(), 1);
    service.close();
    service.close();
    EXPECT_EQ(ioKit.openConnections(), 0);
}

TEST(KeyAccess, ManyThreadsAtOnce) {
    InProcessMachine machine;
    machine.ioKit.onExchange = nullptr;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < 200; ++round) {
                if (thread == 0) {
                    machine.service.setFanTargetRPM(0, 2000 + round);
                } else {
                    EXPECT_TRUE(machine.service.readDouble(round % 2 == 0 ? "TC0P" : "F0Tg"));
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(machine.service.readFanTargetRPM(0), 2199);
}

} // namespace
} // namespace ventaro
