#include "BudgetedIOKit.h"
#include "FileDescriptor.h"
#include "InProcessIOKit.h"
#include "ManualSession.h"
#include "RequestHandler.h"
#include "RequestReader.h"
#include "TestSupport.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <thread>

namespace ventaro {
namespace {

using namespace std::string_literals;
using enum HelperAction;
using State = RequestReader::State;
using testing::Each;
using testing::Field;
using testing::HasSubstr;
using testing::StartsWith;

class Handling : public testing::Test {
protected:
    HelperResponse handle(HelperAction action, std::optional<std::int64_t> fan = {},
                          std::optional<double> rpm = {}) {
        return handler_.handle({action, fan, rpm});
    }
    /// How the resets of all fans and of one end.
    std::vector<HelperResponse> resets(const char* faults) {
        smc_.faults().clear();
        smc_.faults().addAll(faults);
        return {handle(resetAllAuto), handle(resetFanAuto, 1)};
    }
    void SetUp() override {
        ioKit_.onExchange = [this](const SMCKeyData_t& block) {
            writes_ += block.data8 == SMC_CMD_WRITE_BYTES ? 1 : 0;
            ++exchanges_;
        };
    }

    SimulatedSmc smc_{{}};
    InProcessIOKit ioKit_{smc_, true};
    SMCService service_{ioKit_};
    HelperLog log_{-1, -1};
    FanRelease release_{service_, log_};
    ManualClock clock_;
    EventLoop loop_;
    FanWatch watch_{service_, release_, clock_, loop_, log_};
    RequestHandler handler_{service_, release_, watch_, log_};
    int writes_ = 0;
    int exchanges_ = 0;
};

TEST_F(Handling, SentencesTellWhatWasDoneAndWhatCannotBe) {
    struct Row {
        HelperAction action;
        std::optional<std::int64_t> fan;
        std::optional<double> rpm;
        bool success;
        int writes;
        std::string sentence;
        const char* faults = "";
    };
    const std::string noSuchFan = " gibt es nicht. Gemeldete Lüfter: 2, gezählt ab 0.";
    const Row rows[] = {
        {ping, {}, {}, true, 0, "VentaroHelper ist bereit."},
        {setFanRPM, 0, 4000, true, 2, "Linker Lüfter (CPU) auf 4000 RPM gesetzt."},
        {setFanRPM, 1, 1e300, true, 2, "Rechter Lüfter (GPU) auf 5200 RPM gesetzt."},
        {setFanRPM, 1, -5, true, 2, "Rechter Lüfter (GPU) auf 1700 RPM gesetzt."},
        {setFanRPM, 0, 2500.5, true, 2, "Linker Lüfter (CPU) auf 2501 RPM gesetzt."},
        {resetFanAuto, 1, {}, true, 1, "Rechter Lüfter (GPU) auf macOS-Automatik."},
        {resetAllAuto, {}, {}, true, 2, "Alle Lüfter auf macOS-Automatik."},
        {setFanRPM, {}, 4000, false, 0, "Für „setFanRPM“ fehlt die Lüfternummer."},
        {setFanRPM, 0, {}, false, 0, "Für „setFanRPM“ fehlt die Drehzahl."},
        {setFanRPM, 0, NAN, false, 0, "Die Drehzahl ist keine endliche Zahl."},
        {setFanRPM, 0, INFINITY, false, 0, "Die Drehzahl ist keine endliche Zahl."},
        {setFanRPM, 2, 4000, false, 0, "Einen Lüfter mit der Nummer 2" + noSuchFan},
        {setFanRPM, -1, 4000, false, 0, "Einen Lüfter mit der Nummer -1" + noSuchFan},
        {setFanRPM, 1LL << 32, 1, false, 0, "Einen Lüfter mit der Nummer 4294967296" + noSuchFan},
        {resetFanAuto, {}, {}, false, 0, "Für „resetFanAuto“ fehlt die Lüfternummer."},
        {resetFanAuto, 7, {}, false, 0, "Einen Lüfter mit der Nummer 7" + noSuchFan},
        // What is not known, or not to be trusted, is not forced.
        {setFanRPM, 0, 4000, false, 0,
         "Ob Linker Lüfter (CPU) auf macOS-Automatik ist, kann nicht gelesen werden. Nichts "
         "geändert.",
         "F0Md read-fails"},
        {setFanRPM, 0, 4000, false, 0,
         "Das SMC nennt für Linker Lüfter (CPU) eine Höchstdrehzahl von 0 RPM. Darauf ist kein "
         "Verlass.",
         "F0Mx value 00000000"},
        {setFanRPM, 0, 4000, false, 0,
         "Das SMC nennt für Linker Lüfter (CPU) eine Höchstdrehzahl von 20000 RPM. Darauf ist kein "
         "Verlass.",
         "F0Mx value 00409C46"},
    };
    for (const Row& row : rows) {
        smc_.faults().clear();
        smc_.faults().addAll(row.faults);
        writes_ = 0;
        HelperResponse response = handle(row.action, row.fan, row.rpm);
        EXPECT_EQ(response.build.has_value() && response.started > 0, row.action == ping);
        response.build.reset();
        response.started.reset();
        EXPECT_EQ(response, (HelperResponse{row.success, row.sentence, 1}));
        EXPECT_EQ(writes_, row.writes) << row.sentence;
    }
}

TEST_F(Handling, WhatTheSmcRefusesOrDoesNotSayIsNotMadeUp) {
    smc_.faults().addAll("F0Md write-fails 86\nF1Tg read-fails");
    const HelperResponse refusal{false, SMCError::writeFailed("F0Md", 0, 0x86).errorDescription(),
                                 1};
    EXPECT_EQ(handle(setFanRPM, 0, 4000), refusal);
    EXPECT_EQ(handle(resetFanAuto, 0), refusal);
    EXPECT_EQ(handle(resetAllAuto), refusal);
    EXPECT_TRUE(handle(ping).success) << "a ping touches nothing";
    EXPECT_EQ(handle(setFanRPM, 1, 4000).message,
              "Rechter Lüfter (GPU) auf feste Drehzahl gesetzt.");
}

TEST_F(Handling, AResetIsASuccessOnlyIfTheSmcConfirmsIt) {
    for (const char* faults : {"service gone", "FNum read-fails\nF1Md read-fails"}) {
        EXPECT_THAT(resets(faults), Each(Field(&HelperResponse::success, false))) << faults;
    }
    EXPECT_THAT(resets("service back\nF1Md value 01"), // it takes the write and stays as it is
                Each(HelperResponse{false,
                                    "Rechter Lüfter (GPU) ist weiterhin auf eine feste Drehzahl "
                                    "gestellt. Der Helper versucht es weiter.",
                                    1}));
    for (const char* faults : {"F1Md info-fails", // a machine without modes has nothing to reset
                               "FNum value 00", "FNum read-fails"}) {
        EXPECT_THAT(resets(faults), Each(Field(&HelperResponse::success, true))) << faults;
    }
}

TEST_F(Handling, AFanThatWasAutomaticIsSoAgainAfterATargetThatFails) {
    ASSERT_TRUE(handle(setFanRPM, 1, 4000).success);
    smc_.faults().addAll("F0Tg write-fails 86\nF1Tg write-fails 86");
    for (const int fan : {0, 1}) {
        EXPECT_FALSE(handle(setFanRPM, fan, 5000).success);
        EXPECT_EQ(service_.readFanForced(fan), fan == 1) << "as before";
    }
    EXPECT_FALSE(release_.due());
}

TEST_F(Handling, WhatIsNotConfirmedIsTriedUntilItIsOrTheFanIsForcedAnew) {
    const auto force = [this] {
        smc_.faults().clear();
        for (const int fan : {0, 1}) {
            ASSERT_TRUE(handle(setFanRPM, fan, 4000).success);
        }
    };
    const FanRelease::Fan left{0, "links"};
    force();
    EXPECT_FALSE(release_.due()) << "nothing to do, no time to wake up for";
    smc_.faults().addAll("F0Md read-fails\nF1Md write-fails 86");
    EXPECT_FALSE(handle(resetAllAuto).success);
    smc_.faults().clear();
    EXPECT_EQ(service_.readFanForced(0), false) << "written, though not confirmed";
    EXPECT_EQ(service_.readFanForced(1), true);
    for (int steps = 0; release_.due(); ++steps) {
        ASSERT_LT(steps, 6);
        const int before = exchanges_;
        release_.step();
        EXPECT_LE(exchanges_ - before, 1) << "requests may come in between";
    }
    EXPECT_EQ(service_.readFanForced(1), false);

    force();
    smc_.faults().addAll("F0Md write-fails 86\nF1Md write-fails 86");
    EXPECT_FALSE(handle(resetAllAuto).success);
    EXPECT_FALSE(handle(setFanRPM, 0, 4000).success) << "refused, so the older wish stands";
    release_.step();
    release_.step();
    EXPECT_GT(*release_.due() - FanRelease::Clock::now(), std::chrono::milliseconds(500));
    EXPECT_FALSE(release_.releaseLater(std::span(&left, 1))) << "it is at it";
    EXPECT_GT(*release_.due() - FanRelease::Clock::now(), std::chrono::milliseconds(300));
    smc_.faults().clear();
    ASSERT_TRUE(handle(setFanRPM, 0, 4500).success);
    ASSERT_TRUE(release_.due()) << "for the other one";
    release_.step();
    release_.step();
    EXPECT_FALSE(release_.due());
    EXPECT_EQ(service_.readFanForced(0), true);
    EXPECT_EQ(service_.readFanForced(1), false);
}

TEST_F(Handling, TheWatchFreesFansThatAreForcedLowOnAHotMachine) {
    const auto look = [this] {
        clock_.tick();
        loop_.turn(std::chrono::milliseconds(0));
        while (watch_.due()) {
            const int before = exchanges_;
            watch_.step();
            EXPECT_LE(exchanges_ - before, 2) << "requests may come in between";
        }
        while (release_.due()) {
            release_.step();
        }
    };
    watch_.begin();
    look();
    EXPECT_EQ(clock_.tickers, 0) << "nothing is forced, nobody wakes up";
    watch_.begin();
    for (int piece = 0; piece < 10; ++piece) {
        watch_.step(); // both fans are found automatic
    }
    EXPECT_TRUE(handle(setFanRPM, 0, 2000).success);
    look();
    EXPECT_EQ(clock_.tickers, 1) << "forced while the look was under way";
    EXPECT_TRUE(handle(setFanRPM, 1, 5000).success); // 94 % of its range
    EXPECT_EQ(clock_.tickers, 1);
    smc_.faults().add("TC5C value 6300"); // 99 °C, while the die says something else
    for (int number = 0; number < 3; ++number) {
        look();
    }
    EXPECT_EQ(service_.readFanForced(0), true);
    look();
    EXPECT_EQ(service_.readFanForced(0), false);
    EXPECT_EQ(service_.readFanForced(1), true) << "fast enough";
    EXPECT_EQ(handle(setFanRPM, 0, 5200),
              (HelperResponse{false,
                              "Der Rechner war zu heiß. Bis er eine halbe Minute unter 90 °C war, "
                              "nimmt der Helper nur macOS-Automatik oder mindestens 90 % an.",
                              1, GuardCause::hot}));
    EXPECT_EQ(handle(ping).guard, GuardCause::hot);
    EXPECT_TRUE(handle(setFanRPM, 0, 5300).success);
    EXPECT_TRUE(handle(resetAllAuto).success);
    smc_.faults().clear();
    for (int number = 0; number < 6; ++number) {
        EXPECT_EQ(clock_.tickers, 1) << "it waits for the machine to cool down";
        look();
    }
    EXPECT_EQ(clock_.tickers, 0);
    EXPECT_FALSE(handle(ping).guard);
    EXPECT_TRUE(handle(setFanRPM, 0, 2000).success);

    smc_.faults().addAll("TCXC read-fails\nTC0F value 0000\nTC0E value 8100\nF0Tg read-fails");
    for (int core = 1; core <= 8; ++core) {
        smc_.faults().add("TC" + std::to_string(core) + "C read-fails");
    }
    for (int number = 0; number < 6; ++number) {
        EXPECT_EQ(service_.readFanForced(0), true) << number;
        look();
    }
    EXPECT_EQ(service_.readFanForced(0), false);
    EXPECT_THAT(handle(setFanRPM, 0, 3000).message, StartsWith("Die CPU-Temperatur war nicht"));
}

TEST(Budget, ExchangesFailAtOnceWhenItIsUsedUpOrTheProcessIsToEnd) {
    SimulatedSmc smc({});
    InProcessIOKit inner(smc, true);
    int exchanges = 0;
    inner.onExchange = [&](const SMCKeyData_t&) { ++exchanges; };
    bool stopping = false;
    BudgetedIOKit ioKit(inner, [&] { return stopping; });
    SMCService service(ioKit);
    EXPECT_TRUE(service.readDouble("TC0P"));
    ioKit.restart(BudgetedIOKit::Clock::now());
    EXPECT_FALSE(service.readDouble("TC0P"));
    EXPECT_EQ(exchanges, 2);
    service.close();
    EXPECT_THROW(service.open(), SMCError);

    ioKit.restart(BudgetedIOKit::Clock::now() + std::chrono::minutes(1));
    stopping = true;
    EXPECT_NO_THROW(service.setFanTargetRPM(0, 3000)) << "what is quick is finished";
    inner.onExchange = [](const SMCKeyData_t&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(110)); // an SMC that hangs
    };
    EXPECT_THROW(service.setFanTargetRPM(0, 4000), SMCError);
    stopping = false;
    inner.onExchange = nullptr;
    EXPECT_NO_THROW(service.setFanTargetRPM(0, 4000));
}

TEST(Log, NobodyFillsTheDisk) {
    const TemporaryFolder folder;
    const FileDescriptor file(
        ::open((folder.path() / "log").c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    BoundedLog log(file.get());
    const auto written = [&] {
        const std::string text = readFile(folder.path() / "log");
        return std::count(text.begin(), text.end(), '\n');
    };
    BoundedLog::Clock::time_point now = BoundedLog::Clock::now();
    for (int line = 0; line < 5100; ++line) {
        log.line("refused", now += std::chrono::milliseconds(10));
    }
    EXPECT_EQ(written(), 100);
    log.line("a minute later", now + std::chrono::seconds(10));
    EXPECT_EQ(written(), 102);
    EXPECT_THAT(readFile(folder.path() / "log"), HasSubstr("Z 5000 more lines left out\n"));
    ASSERT_EQ(::ftruncate(file.get(), BoundedLog::largestFile + 1), 0);
    log.line("begun anew", now);
    EXPECT_EQ(std::filesystem::file_size(folder.path() / "log"),
              std::string_view("2026-11-24T12:00:00Z begun anew\n").size());
}

/// However the stream is cut, the decision and what is kept of `text` are the same.
void expectDecision(const std::string& text, State state, const std::string& kept) {
    for (const std::size_t piece : {1UL, 2UL, 3UL, 7UL, text.size() + 1}) {
        RequestReader reader;
        for (std::size_t at = 0; at < text.size(); at += piece) {
            reader.feed(std::string_view(text).substr(at, piece));
        }
        EXPECT_EQ(reader.feed({}), state) << piece << text.substr(0, 60);
        EXPECT_EQ(reader.text(), kept) << piece << text.substr(0, 60);
    }
}

TEST(RequestReading, DecidesByWhatArrived) {
    const std::string limit(maximumHelperMessageSize - 2, ' ');
    for (const std::string& object :
         {R"({"action":"ping"})"s, " \t\r\n{}"s, R"({"a":"}"})"s, R"({"a":"\"}"})"s,
          R"({"a":"\\"})"s, R"({"a":[{"b":"]"}]})"s, "{\"a\":\"ü\"}"s, "{" + limit + "}"}) {
        expectDecision(object, State::complete, object);
        expectDecision(object + "}x", State::complete, object);
    }
    for (const char* text : {R"({"a":"{)", R"({"a":"\")", "", "  ", "{[[[[[[["}) {
        expectDecision(text, State::incomplete, text);
    }
    for (const std::string& text : {"[]"s, "}"s, "\"{}\""s, "\0"s}) {
        expectDecision(text, State::notAnObject, text.substr(0, 1));
    }
    expectDecision("{ " + limit + "}", State::tooLong, "{ " + limit);
    expectDecision(limit + "  " + "{}", State::tooLong, limit + "  ");
    expectDecision("{[[[[[[[[", State::tooDeep, "{[[[[[[[[");
    expectDecision("{{{{{{{{{", State::tooDeep, "{{{{{{{{{");
}

} // namespace
} // namespace ventaro
