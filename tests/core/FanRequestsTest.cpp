#include "FanRequests.h"

#include "ControlHolder.h"
#include "ControllerFixture.h"

#include <gmock/gmock.h>

namespace ventaro {
namespace {

using testing::ElementsAre;

class FanRequestsTest : public ControllerFixture {
protected:
    FanRequestsTest() {
        QObject::connect(&requests_, &FanRequests::helperSeen,
                         [this](bool isThere) { told_ += isThere ? "there, " : "not there, "; });
        QObject::connect(&requests_, &FanRequests::reported,
                         [this](const std::optional<std::string>& line, bool isError) {
                             told_ += (isError ? "error: " : "") + *line + ", ";
                         });
        QObject::connect(&requests_, &FanRequests::answered, [this] { told_ += "answered"; });
    }
    /// What the requests have told since the last call.
    std::string told() { return std::exchange(told_, {}); }

    ControlHolder holder_{root_, "Ventaro"};
    FanRequests requests_{client_, holder_, tasks_, [] { return 0; }};
    std::string told_;
};

TEST_F(FanRequestsTest, ADispatchTellsHowItEnded) {
    const auto no = [](const std::string& reason) { return RecordingHelper::refuse(reason); };
    const std::string yes = RecordingHelper::accept("gut");
    const std::string old = RecordingHelper::accept("gut", 2);
    const std::string nothing; // the connection ends without an answer
    const std::string notReady = "not there, error: Bitte zuerst den Hintergrund-Helper oben per "
                                 "Klick installieren., ";
    const std::string noAnswer = "error: Keine Antwort vom Helper erhalten., ";
    const std::string done = "there, Ziel-Drehzahl gesetzt: Links 3000 RPM · Rechts 2900 RPM, ";
    const std::vector<std::string> ping{"ping"};
    const std::vector<std::string> left{"ping", "set 0 3000"};
    const std::vector<std::string> both{"ping", "set 0 3000", "set 1 2900"};
    const std::vector<std::string> all{"ping", "reset"};
    constexpr bool set = false;
    constexpr bool reset = true;
    struct Row {
        bool isReset;
        std::string answers[3]; // to the ping, to the first and to the second command
        std::vector<std::string> requests;
        std::string told;
    };
    const Row rows[] = {
        {set, {old, yes, yes}, ping, notReady},
        {set, {nothing, yes, yes}, ping, notReady},
        {set, {yes, nothing, yes}, left, noAnswer},
        {set, {yes, yes, no("M")}, both, "there, error: M, answered"},
        {set, {yes, yes, nothing}, both, noAnswer},
        {set, {yes, no("L"), no("R")}, both, "there, error: L, answered"},
        {set, {yes, yes, yes}, both, done + "answered"},
        {reset, {yes, no("kaputt")}, all, "there, error: kaputt, answered"},
        {reset, {yes, RecordingHelper::accept("")}, all, "there, , answered"},
        {reset, {yes, nothing}, all, noAnswer},
        {reset, {nothing, yes}, ping, notReady},
    };
    for (const Row& row : rows) {
        helper_.setAnswer([&row](const HelperRequest& request) {
            const bool isPing = request.action == HelperAction::ping;
            return row.answers[isPing ? 0 : 1 + request.fanIndex.value_or(0)];
        });
        if (row.isReset) {
            requests_.sendResetAllToAuto();
        } else {
            requests_.sendTargetRPMs(3000.9, 2900, false);
        }
        EXPECT_EQ(requests_.lastTargets(),
                  row.isReset ? FanTargets() : FanTargets({{0, 3000.9}, {1, 2900}}))
            << "before anything is sent";
        tasks_.runAll();
        EXPECT_EQ(helper_.taken(), row.requests);
        EXPECT_EQ(told(), row.told);
    }
}

TEST_F(FanRequestsTest, TheNewestWishWinsAndASilentSuccessSaysNothing) {
    requests_.sendTargetRPMs(5616, 5200, false);
    requests_.sendResetAllToAuto();
    EXPECT_EQ(tasks_.waiting(), 2U) << "neither waits for the other to begin";
    tasks_.work(1);
    tasks_.work(0);
    tasks_.runAll();
    EXPECT_THAT(helper_.taken(), ElementsAre("ping", "reset"));
    EXPECT_EQ(told(), "there, gut, answered");
    requests_.sendTargetRPMs(3000, 2900, true);
    tasks_.runAll();
    EXPECT_EQ(told(), "there, answered");
}

} // namespace
} // namespace ventaro
