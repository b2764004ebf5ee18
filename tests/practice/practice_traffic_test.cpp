#include "practice/practice_traffic.h"

#include <gmock/gmock.h>

#include "practice/practice_host.h"
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

    TestField Field;
    MemoryNetwork Network;
    PracticeHost Host{std::make_unique<MemorySession>(Network), TestSessionName, 8};
    HandPlayed Controller{Network, "KTST_Controller"};
    PracticeTraffic Traffic{
        Field.S, [this] { return std::make_unique<MemorySession>(Network); }, TestSessionName, 2, {}};
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

}  // namespace
}  // namespace corvenna
