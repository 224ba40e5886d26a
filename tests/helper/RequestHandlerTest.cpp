#include "RequestHandler.h"

#include "BudgetedIOKit.h"
#include "InProcessIOKit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

namespace ventaro {
namespace {

class Handling : public testing::Test {
protected:
    HelperResponse handle(HelperAction action, std::optional<std::int64_t> fan = {},
                          std::optional<double> rpm = {}) {
        return RequestHandler(service_, log_).handle({action, fan, rpm});
    }
    int writes() const { return writes_; }

    SimulatedSmc smc_{{}};
    InProcessIOKit ioKit_{smc_, true};
    SMCService service_{ioKit_};
    HelperLog log_{-1, -1};
    int writes_ = 0;

    void SetUp() override {
        ioKit_.onExchange = [this](const SMCKeyData_t& block) {
            writes_ += block.data8 == SMC_CMD_WRITE_BYTES ? 1 : 0;
        };
    }
};

TEST_F(Handling, SentencesTellWhatWasDone) {
    struct Row {
        HelperAction action;
        std::optional<std::int64_t> fan;
        std::optional<double> rpm;
        const char* sentence;
        int writes;
    };
    const Row rows[] = {
        {HelperAction::ping, {}, {}, "VentaroHelper ist bereit.", 0},
        {HelperAction::setFanRPM, 0, 4000, "Linker Lüfter (CPU) auf 4000 RPM gesetzt.", 2},
        {HelperAction::setFanRPM, 1, 1e300, "Rechter Lüfter (GPU) auf 5200 RPM gesetzt.", 2},
        {HelperAction::setFanRPM, 1, -5, "Rechter Lüfter (GPU) auf 1700 RPM gesetzt.", 2},
        {HelperAction::setFanRPM, 0, 2500.5, "Linker Lüfter (CPU) auf 2501 RPM gesetzt.", 2},
        {HelperAction::resetFanAuto, 1, {}, "Rechter Lüfter (GPU) auf macOS-Automatik.", 1},
        {HelperAction::resetAllAuto, {}, {}, "Alle Lüfter auf macOS-Automatik.", 2},
    };
    for (const Row& row : rows) {
        writes_ = 0;
        EXPECT_EQ(handle(row.action, row.fan, row.rpm), (HelperResponse{true, row.sentence, 1}));
        EXPECT_EQ(writes(), row.writes) << row.sentence;
    }
}

TEST_F(Handling, WhatCannotBeDoneIsRefusedWithoutAWrite) {
    struct Row {
        HelperAction action;
        std::optional<std::int64_t> fan;
        std::optional<double> rpm;
        const char* sentence;
    };
    const char* noSuchFan = " gibt es nicht. Gemeldete Lüfter: 2, gezählt ab 0.";
    const Row rows[] = {
        {HelperAction::setFanRPM, {}, 4000, "Für „setFanRPM“ fehlt die Lüfternummer."},
        {HelperAction::setFanRPM, 0, {}, "Für „setFanRPM“ fehlt die Drehzahl."},
        {HelperAction::setFanRPM, 0, std::nan(""), "Die Drehzahl ist keine endliche Zahl."},
        {HelperAction::setFanRPM, 0, INFINITY, "Die Drehzahl ist keine endliche Zahl."},
        {HelperAction::setFanRPM, 2, 4000, "Einen Lüfter mit der Nummer 2"},
        {HelperAction::setFanRPM, -1, 4000, "Einen Lüfter mit der Nummer -1"},
        {HelperAction::setFanRPM, 4294967296, 4000, "Einen Lüfter mit der Nummer 4294967296"},
        {HelperAction::resetFanAuto, {}, {}, "Für „resetFanAuto“ fehlt die Lüfternummer."},
        {HelperAction::resetFanAuto, 7, {}, "Einen Lüfter mit der Nummer 7"},
    };
    for (const Row& row : rows) {
        std::string sentence = row.sentence;
        sentence += sentence.starts_with("Einen") ? noSuchFan : "";
        EXPECT_EQ(handle(row.action, row.fan, row.rpm), (HelperResponse{false, sentence, 1}));
    }
    EXPECT_EQ(writes(), 0);
}

TEST_F(Handling, AFailingWriteAnswersWithTheErrorItself) {
    smc_.faults().add("F0Md write-fails 86");
    const std::string sentence = SMCError::writeFailed("F0Md", 0, 0x86).errorDescription();
    EXPECT_EQ(handle(HelperAction::setFanRPM, 0, 4000).message, sentence);
    EXPECT_EQ(handle(HelperAction::resetFanAuto, 0).message, sentence);
    EXPECT_EQ(handle(HelperAction::resetAllAuto).message, sentence);
    EXPECT_FALSE(handle(HelperAction::resetAllAuto).success);
    EXPECT_TRUE(handle(HelperAction::ping).success) << "a ping touches nothing";
}

TEST_F(Handling, AResetIsASuccessOnlyIfTheSmcConfirmsIt) {
    // The reset itself takes a key that does not answer for one the machine does not have.
    const auto resets = [this] {
        return std::vector{handle(HelperAction::resetAllAuto),
                           handle(HelperAction::resetFanAuto, 1)};
    };
    for (const char* faults : {"service gone", "FNum read-fails\nF1Md read-fails"}) {
        smc_.faults().addAll(faults);
        for (const HelperResponse& response : resets()) {
            EXPECT_FALSE(response.success) << faults;
        }
        smc_.faults().clear();
    }
    smc_.faults().add("F1Md value 01"); // it takes the write and stays as it is
    for (const HelperResponse& response : resets()) {
        EXPECT_EQ(response.message,
                  "Rechter Lüfter (GPU) ist weiterhin auf eine feste Drehzahl gestellt.");
    }
    smc_.faults().clear();
    smc_.faults().add("F1Md info-fails"); // a machine without modes has nothing to reset
    for (const HelperResponse& response : resets()) {
        EXPECT_TRUE(response.success);
    }
}

TEST_F(Handling, ASpeedThatCannotBeReadBackIsNotMadeUp) {
    smc_.faults().add("F0Tg read-fails");
    EXPECT_EQ(handle(HelperAction::setFanRPM, 0, 4000).message,
              "Linker Lüfter (CPU) auf feste Drehzahl gesetzt.");
}

TEST(Budget, ExchangesFailAtOnceWhenItIsUsedUp) {
    SimulatedSmc smc({});
    InProcessIOKit inner(smc, true);
    int exchanges = 0;
    inner.onExchange = [&](const SMCKeyData_t&) { ++exchanges; };
    BudgetedIOKit ioKit(inner);
    SMCService service(ioKit);
    EXPECT_TRUE(service.readDouble("TC0P"));
    ioKit.restart(BudgetedIOKit::Clock::now());
    EXPECT_FALSE(service.readDouble("TC0P"));
    EXPECT_EQ(exchanges, 2);
    service.close();
    EXPECT_THROW(service.open(), SMCError);
    ioKit.restart(BudgetedIOKit::Clock::now() + std::chrono::minutes(1));
    EXPECT_TRUE(service.readDouble("TC0P"));
}

TEST(Budget, WorkThatHangsIsGivenUpWhenTheProcessIsToEnd) {
    SimulatedSmc smc({});
    InProcessIOKit inner(smc, true);
    bool stopping = true;
    BudgetedIOKit ioKit(inner, [&] { return stopping; });
    SMCService service(ioKit);
    const auto later = BudgetedIOKit::Clock::now() + std::chrono::minutes(1);
    ioKit.restart(later);
    EXPECT_NO_THROW(service.setFanTargetRPM(0, 3000)) << "what is quick is finished";
    inner.onExchange = [](const SMCKeyData_t&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(110)); // an SMC that hangs
    };
    EXPECT_THROW(service.setFanTargetRPM(0, 4000), SMCError);
    stopping = false;
    inner.onExchange = nullptr;
    EXPECT_NO_THROW(service.setFanTargetRPM(0, 4000));
}

} // namespace
} // namespace ventaro
