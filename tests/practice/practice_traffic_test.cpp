#include "practice/practice_traffic.h"

#include <gmock/gmock.h>

#include "practice/practice_session.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;

class PracticeTrafficTest : public testing::Test {
  protected:
    void StepTo(std::chrono::milliseconds until) {
        for (; Now <= until; Now += 100ms) {
            Host.Step();
            Traffic.Step(Now);
        }
    }

    std::function<std::unique_ptr<Session>()> MoreSessions() {
        return [this] { return std::make_unique<MemorySession>(Network); };
    }

    TestField Field;
    MemoryNetwork Network;
    TestHost Host{Network, 8};
    HandPlayed Controller{Network, "KTST_Controller"};
    PracticeTraffic Traffic{
        std::make_shared<AirportChart>(Field.S), MoreSessions(), TestSessionName, {.Pilots = 2}, {}};
    std::chrono::milliseconds Now{0};
};

TEST_F(PracticeTrafficTest, PilotsArriveOneAfterTheOther) {
    StepTo(2900ms);
    EXPECT_EQ(Controller.Received(MessageId::RequestJoinAsPlayer).size(), 1u);
    StepTo(3000ms);
    EXPECT_EQ(Controller.Received(MessageId::RequestJoinAsPlayer).size(), 1u);
    StepTo(20000ms);
    EXPECT_EQ(Controller.Received(MessageId::RequestJoinAsPlayer).size(), 0u);
}

TEST_F(PracticeTrafficTest, BetweenJoiningAndAdmissionSomebodyWaits) {
    EXPECT_FALSE(Traffic.SomebodyAwaitsAdmission());
    Traffic.Step(0ms);
    EXPECT_TRUE(Traffic.SomebodyAwaitsAdmission());
    Host.Step();
    Traffic.Step(100ms);
    EXPECT_FALSE(Traffic.SomebodyAwaitsAdmission());
}

TEST_F(PracticeTrafficTest, WhoLeavesIsFollowedByAnotherOne) {
    StepTo(5000ms);
    const std::int32_t first = Controller.IdOf("N101CV");
    ASSERT_NE(first, 0);
    Controller.Send(first, WriteEmpty(MessageId::Removed));
    StepTo(7900ms);
    EXPECT_EQ(Controller.IdOf("N101CV"), 0);
    EXPECT_EQ(Controller.IdOf("N127CV"), 0);
    StepTo(8200ms);
    EXPECT_NE(Controller.IdOf("N127CV"), 0);
    EXPECT_NE(Controller.IdOf("N114CV"), 0);
}

TEST_F(PracticeTrafficTest, TheSeedIsTheNumberOfTheFirstPilot) {
    PracticeTraffic others(std::make_shared<AirportChart>(Field.S), MoreSessions(), TestSessionName,
                           {.Pilots = 1, .Seed = 10}, {});
    others.Step(0ms);
    EXPECT_NE(Controller.IdOf("N231CV"), 0);
}

TEST_F(PracticeTrafficTest, WhoCannotJoinIsToldAndTriesAgain) {
    HandPlayed namesake(Network, "N101CV");
    std::vector<std::string> failures;
    TrafficEvents events;
    events.Failed = [&](const PracticePilot& pilot, const std::string& why) {
        failures.push_back(pilot.Name() + ": " + why);
    };
    PracticeTraffic others(std::make_shared<AirportChart>(Field.S), MoreSessions(), TestSessionName,
                           {.Pilots = 1}, events);
    others.Step(0ms);
    EXPECT_THAT(failures, testing::ElementsAre(
                              "N101CV: there is a N101CV in the session already; choose another name"));
    others.Step(PracticeTraffic::RetryInterval - 1ms);
    EXPECT_EQ(failures.size(), 1u);
    others.Step(PracticeTraffic::RetryInterval);
    EXPECT_EQ(failures.size(), 2u);
}

TEST_F(PracticeTrafficTest, ComingAndLeavingAreTold) {
    std::vector<std::string> told;
    TrafficEvents events;
    events.Came = [&](const PracticePilot& pilot) { told.push_back("came " + pilot.Name()); };
    events.Left = [&](const PracticePilot& pilot) { told.push_back("left " + pilot.Name()); };
    PracticeTraffic others(std::make_shared<AirportChart>(Field.S), MoreSessions(), TestSessionName,
                           {.Pilots = 1, .Seed = 10}, events);
    for (auto now = 0ms; now < 2s; now += 100ms) {
        others.Step(now);
        Host.Step();
    }
    EXPECT_THAT(told, testing::ElementsAre("came N231CV"));
    Controller.Send(Controller.IdOf("N231CV"), WriteEmpty(MessageId::Removed));
    others.Step(2s);
    EXPECT_THAT(told, testing::ElementsAre("came N231CV", "left N231CV"));
}

TEST_F(PracticeTrafficTest, AllLeaveTogether) {
    StepTo(5000ms);
    int present = 0;
    Traffic.ForEach([&](const PracticePilot&) { ++present; });
    EXPECT_EQ(present, 2);
    Traffic.Leave();
    EXPECT_EQ(Controller.IdOf("N101CV"), 0);
    EXPECT_EQ(Controller.IdOf("N114CV"), 0);
    Traffic.ForEach([&](const PracticePilot&) { ADD_FAILURE() << "somebody is left"; });
}

TEST_F(PracticeTrafficTest, AnUnrulyOneMayComeAgainUnderHisName) {
    PracticeTraffic others(std::make_shared<AirportChart>(Field.S), MoreSessions(), TestSessionName,
                           {.Pilots = 1, .Seed = 2, .Unruly = true}, {});
    int comings = 0;
    bool present = false;
    for (auto now = 0ms; now < 3h; now += 500ms) {
        others.Step(now);
        Host.Step();
        const bool here = Controller.IdOf("N127CV") != 0;
        comings += here && !present ? 1 : 0;
        present = here;
    }
    EXPECT_GT(comings, 1);
}

}  // namespace
}  // namespace corvenna
