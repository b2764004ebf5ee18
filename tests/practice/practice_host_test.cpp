#include "practice/practice_host.h"

#include <gtest/gtest.h>

#include "practice/practice_session.h"

namespace corvenna {
namespace {

class PracticeHostTest : public testing::Test {
  protected:
    MemoryNetwork Network;
    PracticeHost Host{std::make_unique<MemorySession>(Network), TestSessionName, 8};
    HandPlayed Pilot{Network, "N1"};
};

TEST_F(PracticeHostTest, OpensASessionOfThatNameAndSizeWithTheGroupOfTheAdmitted) {
    MemorySession seeker(Network);
    const auto sessions = seeker.GetDPEnumSessions({});
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].SessionName, TestSessionName);
    EXPECT_EQ(sessions[0].MaxPlayers, 8);
    EXPECT_EQ(sessions[0].CurrentPlayers, 2);
    seeker.Open(sessions[0], OpenMode::Join);
    ASSERT_EQ(seeker.GetDPEnumGroups().size(), 1u);
    EXPECT_EQ(seeker.GetDPEnumGroups()[0].ShortName, RefuseParamsGroup);
}

TEST_F(PracticeHostTest, AdmitsAPlayerByHisOwnId) {
    Pilot.Send(0, WriteEmpty(MessageId::RequestJoinAsPlayer));
    Host.Step();
    auto answers = Pilot.Received();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].MessageId, MessageId::AdmitPlayer);
    EXPECT_EQ(answers[0].Message.ReadLong(), Pilot.Id);
}

TEST_F(PracticeHostTest, AdmitsAnObserver) {
    Pilot.Send(0, WriteEmpty(MessageId::RequestJoinAsObserver));
    Host.Step();
    auto answers = Pilot.Received();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].MessageId, MessageId::AdmitObserver);
    EXPECT_EQ(answers[0].Message.ReadLong(), Pilot.Id);
}

TEST_F(PracticeHostTest, IntroducesItselfAsAnObserver) {
    Pilot.Send(0, WriteEmpty(MessageId::WhoAreYou));
    Host.Step();
    auto answers = Pilot.Received();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].MessageId, MessageId::AdmitObserver);
    EXPECT_EQ(answers[0].Message.ReadLong(), Pilot.IdOf(PracticeHostName));
}

TEST_F(PracticeHostTest, PassesOverAllElse) {
    Pilot.Send(0, WriteChat("hello"));
    Pilot.Send(0, DirectPlayMessage());
    DirectPlayMessage half;
    half.WriteLong(MessageId::RequestJoinAsPlayer);
    Pilot.Send(0, half);
    Host.Step();
    EXPECT_TRUE(Pilot.Received().empty());
}

}  // namespace
}  // namespace corvenna
