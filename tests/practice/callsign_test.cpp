#include "practice/callsign.h"

#include <gmock/gmock.h>

#include "practice/data_files.h"
#include "practice/practice_session.h"

namespace corvenna {
namespace {

class CallsignTest : public testing::Test {
  protected:
    CallsignTest() { Newcomer.Open(Newcomer.GetDPEnumSessions({}).at(0), OpenMode::Join); }

    MemoryNetwork Network;
    TestHost Host{Network, 8};
    HandPlayed Pilot{Network, "N1"};
    MemorySession Newcomer{Network};
};

TEST_F(CallsignTest, ANameOfOnesOwnMayBeTaken) {
    RefuseTakenName(Newcomer, "N2");
    EXPECT_GT(Newcomer.CreatePlayer("N2", "Player"), 0);
}

TEST_F(CallsignTest, ANameThatBeginsOrEndsLikeAnotherIsNotTaken) {
    RefuseTakenName(Newcomer, "N");
    RefuseTakenName(Newcomer, "N11");
    RefuseTakenName(Newcomer, "n1");
}

TEST_F(CallsignTest, OfANameThatSomebodyHasTheSessionIsLeft) {
    EXPECT_EQ(ComplaintOf<SessionError>([&] { RefuseTakenName(Newcomer, "N1"); }),
              "there is a N1 in the session already; choose another name");
    EXPECT_THROW(Newcomer.GetDPEnumPlayers(), SessionError);
}

}  // namespace
}  // namespace corvenna
