#include "FanSupervisor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ventaro {
namespace {

using Action = FanSupervisor::Action;
using Notice = FanSupervisor::Notice;
using Outcome = FanSupervisor::Outcome;
using Source = TemperatureTrust::State;

const FanTargets fast{{0, 9000}, {1, 3000}};
const FanTargets slow{{0, 1836}, {1, 1700}};

/// A supervisor with what it is told, tick by tick, and what it says as one line.
class Watched : public FanSupervisor {
public:
    static std::vector<FanReadBack> held(FanHold hold, std::optional<double> left = 5616,
                                         std::optional<double> right = 3000) {
        return {{0, hold, left, {1836, 5616}}, {1, hold, right, {1700, 5200}}};
    }
    /// The newest request has ended.
    std::string end(Outcome outcome = Outcome::ended) {
        return text(onOutcome(outcome, tick_, readouts_));
    }
    /// One more tick with one more readout.
    std::string look(const std::vector<FanReadBack>& fans) {
        fans_ = fans;
        return look();
    }
    std::string look() {
        const auto step =
            onReadout({++readouts_, ++tick_, source, fans_, isHelperThere, isGuardUp});
        if (step.action == Action::sendTargets || step.action == Action::sendReset) {
            end(); // which takes no time here
        }
        return text(step);
    }
    /// What several ticks say, one after the other.
    std::string looks(int count) {
        std::string all;
        for (int look = 0; look < count; ++look) {
            all += this->look() + (look + 1 < count ? " " : "");
        }
        return all;
    }
    void sleep(std::int64_t ticks) { tick_ += ticks; }
    std::uint64_t readouts() const { return readouts_; }

    Source source = Source::known;
    bool isHelperThere = true;
    bool isGuardUp = false;

private:
    static std::string text(const Step& step) {
        constexpr const char* actions[] = {"-", "set", "reset", "step"};
        constexpr const char* notices[] = {"",          "+blind", "+seeing",     "+astray",
                                           "+followed", "+guard", "+guardPause", "+guardEnd"};
        return std::string(actions[static_cast<int>(step.action)]) +
               notices[static_cast<int>(step.notice)];
    }

    std::uint64_t readouts_ = 0;
    std::int64_t tick_ = 0;
    std::vector<FanReadBack> fans_ = held(FanHold::automatic);
};

const auto automatic = Watched::held(FanHold::automatic);
const auto followed = Watched::held(FanHold::forced);

TEST(FanSupervisorTest, WhatDoesNotFollowForTwoReadoutsIsSentAgain) {
    Watched fans;
    EXPECT_EQ(fans.look(followed), "-") << "nobody has asked for anything";
    fans.wishSpeeds(fast);
    EXPECT_EQ(fans.looks(3), "- - -") << "the request is under way";
    fans.end();
    const auto followedBy = [&](FanHold hold, std::optional<double> left, double right) {
        fans.wishSpeeds(fast);
        fans.end();
        fans.look(Watched::held(hold, left, right));
        EXPECT_EQ(fans.isInForce(), true) << "one readout is none";
        return fans.look() == "-" && fans.isInForce();
    };
    EXPECT_TRUE(followedBy(FanHold::forced, 5616, 3001)) << "as far as the range lets it";
    EXPECT_FALSE(followedBy(FanHold::forced, 5616, 3001.25));
    EXPECT_FALSE(followedBy(FanHold::forced, 9000, 3000));
    EXPECT_FALSE(followedBy(FanHold::automatic, 5616, 3000));
    EXPECT_TRUE(followedBy(FanHold::untold, 5616, 3000)) << "there is no mode to ask for";
    EXPECT_FALSE(followedBy(FanHold::untold, 5616, 2000));
    EXPECT_TRUE(followedBy(FanHold::forced, {}, 3000)) << "nor can that be known";
    EXPECT_TRUE(followedBy(FanHold::unread, 2000, 2000));
    EXPECT_EQ(fans.look({}), "-") << "fans that are not there";

    fans.wishSpeeds(fast);
    fans.end();
    fans.look(automatic);
    fans.look(followed);
    EXPECT_EQ(fans.look(automatic), "-") << "not two in a row";
    fans.isHelperThere = false;
    EXPECT_EQ(fans.looks(9), "- - - - - - - - -") << "nobody would carry it out";
    fans.isHelperThere = true;
    EXPECT_EQ(fans.look(), "set") << "it is back";
}

TEST(FanSupervisorTest, ReadoutsThatBeganBeforeTheAnswerSayNothing) {
    Watched fans;
    fans.wishSpeeds(fast);
    const auto early = fans.readouts() + 1;
    fans.onOutcome(Outcome::ended, 0, early); // one has begun meanwhile
    EXPECT_EQ(fans.looks(3), "- - set") << "the first does not count";
}

TEST(FanSupervisorTest, AfterFiveTriesItSaysSoAndTriesMoreSlowly) {
    Watched fans;
    fans.wishSpeeds(fast);
    fans.end();
    EXPECT_EQ(fans.looks(10), "- set - set - set - set - set");
    EXPECT_EQ(fans.looks(10), "- -+astray - - set - - - - set");
    EXPECT_FALSE(fans.isInForce());
    EXPECT_EQ(fans.look(followed), "-+followed");
    EXPECT_TRUE(fans.isInForce());
    EXPECT_EQ(fans.looks(2), "- -");
    fans.look(automatic);
    EXPECT_EQ(fans.look(), "set") << "quickly again";
}

TEST(FanSupervisorTest, AHandBackIsWishedUntilItIsConfirmed) {
    for (const FanHold hold : {FanHold::forced, FanHold::unread}) {
        Watched fans;
        fans.wishAutomatic();
        fans.end();
        fans.look(Watched::held(hold));
        EXPECT_EQ(fans.look(), "reset");
        EXPECT_EQ(fans.wish(), FanSupervisor::Wish::automatic);
        EXPECT_EQ(fans.look(automatic), "-");
        EXPECT_EQ(fans.wish(), FanSupervisor::Wish::none);
        fans.look(followed);
        EXPECT_EQ(fans.looks(3), "- - -") << "somebody else forces them";
    }
    Watched older;
    older.wishAutomatic();
    older.end();
    older.look(Watched::held(FanHold::untold));
    EXPECT_EQ(older.wish(), FanSupervisor::Wish::none);
}

TEST(FanSupervisorTest, ACurveThatCannotSeeLetsGoAndComesBack) {
    Watched fans;
    fans.source = Source::pending;
    fans.wishCurve(false);
    EXPECT_TRUE(fans.isCurveHeld());
    EXPECT_EQ(fans.look(automatic), "-") << "nothing has been read yet";
    fans.source = Source::known;
    EXPECT_EQ(fans.look(), "step");
    fans.steer(fast);
    fans.end();
    EXPECT_EQ(fans.look(followed), "-");
    fans.source = Source::lost;
    EXPECT_EQ(fans.look(), "reset+blind");
    EXPECT_FALSE(fans.isInForce());
    EXPECT_EQ(fans.looks(3), "- reset -") << "until it is confirmed";
    EXPECT_EQ(fans.look(automatic), "-");
    EXPECT_EQ(fans.look(followed), "-") << "then whoever forces them is let alone";
    EXPECT_EQ(fans.looks(2), "- -");
    fans.source = Source::known;
    EXPECT_EQ(fans.look(), "step+seeing");
    fans.steer(slow);
    EXPECT_FALSE(fans.isCurveHeld());
    fans.wishSpeeds(slow);
    fans.end();
    fans.source = Source::lost;
    EXPECT_EQ(fans.look(Watched::held(FanHold::forced, 1836, 1700)), "-") << "needs none";
}

TEST(FanSupervisorTest, TheGuardEndsASpeedAndPausesACurveOnce) {
    Watched fans;
    fans.wishSpeeds(slow);
    EXPECT_EQ(fans.end(Outcome::refusedByGuard), "-+guard");
    EXPECT_EQ(fans.looks(4), "- - - -");

    fans.wishCurve(true);
    const auto guarded = [&] {
        fans.steer(slow);
        const std::string said = fans.end(Outcome::refusedByGuard);
        fans.isGuardUp = true;
        EXPECT_EQ(fans.looks(3), "- - -");
        EXPECT_TRUE(fans.isCurveHeld());
        fans.isGuardUp = false;
        return said + " " + fans.look();
    };
    EXPECT_EQ(guarded(), "-+guardPause step");
    fans.sleep(1801);
    EXPECT_EQ(guarded(), "-+guardPause step") << "more than an hour later";
    EXPECT_EQ(guarded(), "-+guardEnd -");
    fans.wishCurve(true);
    EXPECT_FALSE(fans.isCurveHeld()) << "chosen anew";
    EXPECT_EQ(guarded(), "-+guardPause step");
}

TEST(SteeringTemperaturesTest, TwoBadReadingsLoseWhatTwoGoodOnesBringBack) {
    TemperatureTrust trust;
    std::int64_t tick = 0;
    const auto see = [&](const std::string& readings) { // one a tick: + good, - bad
        std::string states;
        for (const char reading : readings) {
            trust.see(reading == '+' ? std::optional(60.0) : std::nullopt, ++tick);
            states += "pkl"[static_cast<int>(trust.state())];
        }
        return states;
    };
    EXPECT_EQ(see("-+-+--"), "pkkkkl");
    EXPECT_FALSE(trust.celsius());
    EXPECT_EQ(see("+-++"), "lllk");
    EXPECT_EQ(trust.celsius(), 60);
    EXPECT_EQ(see("--++++++++++++++++"), "kl" + std::string(15, 'l') + "k")
        << "for the second time soon";
    tick += 301;
    EXPECT_EQ(see("--++"), "kllk");

    SteeringTemperatures both;
    const auto feed = [&](std::optional<double> cpu, std::optional<double> gpu) {
        for (int reading = 0; reading < 2; ++reading) {
            both.see(cpu, gpu, ++tick);
        }
        std::string text;
        for (const CurveSensorSource source : allCurveSensorSources) {
            const auto celsius = both.celsius(source);
            text += celsius ? std::to_string(static_cast<int>(*celsius)) + " " : "- ";
        }
        return text;
    };
    EXPECT_EQ(feed(60, 70), "70 60 70 ");
    EXPECT_EQ(feed(61, {}), "61 61 - ") << "the GPU may be off";
    EXPECT_EQ(feed({}, 70), "- - 70 ");
    EXPECT_EQ(both.state(CurveSensorSource::maxCpuGpu), Source::lost);
}

} // namespace
} // namespace ventaro
