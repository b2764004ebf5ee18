#include "link/session_objects.h"

#include <gmock/gmock.h>

#include "support/scripted_session.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Objects : public testing::Test {
  protected:
    Objects() {
        objects.MakeRoot = [this] {
            ++rootsMade;
            return std::make_unique<ScriptedRoot>(script);
        };
    }

    SessionScript script;
    SessionObjects objects;
    int rootsMade = 0;
};

TEST_F(Objects, CreatingMakesTheRootTheSessionAndTheListOfConnections) {
    CreateSessionObjects(objects);
    EXPECT_NE(objects.DxRoot, nullptr);
    EXPECT_NE(objects.Dp, nullptr);
    EXPECT_THAT(objects.DpConnections, SizeIs(2));
    EXPECT_THAT(script.Calls, ElementsAre("DirectPlayCreate", "GetDPEnumConnections"));
}

TEST_F(Objects, TheRootIsMadeOnce) {
    CreateSessionObjects(objects);
    const SessionRoot* root = objects.DxRoot.get();
    ReleaseSessionObjects(objects);
    EXPECT_EQ(objects.DxRoot.get(), root);
    CreateSessionObjects(objects);
    EXPECT_EQ(objects.DxRoot.get(), root);
    EXPECT_EQ(rootsMade, 1);
}

TEST_F(Objects, ReleasingDropsConnectionsSessionsAndTheSession) {
    CreateSessionObjects(objects);
    objects.DpSessions.resize(3);
    script.Calls.clear();
    ReleaseSessionObjects(objects);
    EXPECT_THAT(objects.DpConnections, IsEmpty());
    EXPECT_THAT(objects.DpSessions, IsEmpty());
    EXPECT_EQ(objects.Dp, nullptr);
    EXPECT_THAT(script.Calls, ElementsAre("released"));
}

TEST_F(Objects, ReleasingTwiceIsNoFailure) {
    ReleaseSessionObjects(objects);
    CreateSessionObjects(objects);
    ReleaseSessionObjects(objects);
    ReleaseSessionObjects(objects);
    EXPECT_EQ(objects.Dp, nullptr);
}

TEST_F(Objects, TheOpenSessionIsThatOfTheObjectsAndThereMayBeNone) {
    EXPECT_THROW(objects.OpenSession(), SessionError);
    CreateSessionObjects(objects);
    EXPECT_EQ(&objects.OpenSession(), objects.Dp.get());
    ReleaseSessionObjects(objects);
    EXPECT_THROW(objects.OpenSession(), SessionError);
}

}  // namespace
}  // namespace corvenna
