#include "link/directplay/session_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/stage.h"

namespace corvenna::directplay {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

struct Search : testing::Test {
    std::vector<EnumSessions> Asked() const { return Net.To<EnumSessions>(Place); }

    static EnumSessionsReply Reply(std::uint32_t instance, std::u16string name = u"Test") {
        EnumSessionsReply reply;
        reply.Description.Instance.Data1 = instance;
        reply.Name = std::move(name);
        return reply;
    }

    Endpoint Place{0x0A000001, 47624};
    Endpoint Host{0x0A000001, 2300};
    Postbook Net;
    Timing Times;
    TimePoint Now{std::chrono::hours(1)};
    SessionSearch Searching{Net, Times};
};

TEST_F(Search, AsksOnceASecondForAnyGame) {
    Searching.Begin({{Place}, {}, {}, {}}, Now);
    Searching.Advance(Now + milliseconds(999));
    EXPECT_THAT(Asked(), SizeIs(1));
    Searching.Advance(Now + seconds(1));
    ASSERT_THAT(Asked(), SizeIs(2));
    EXPECT_TRUE(Asked()[1].Application.IsZero());
    EXPECT_EQ(Asked()[1].Flags, EnumFlag::Available);
}

TEST_F(Search, AsksForTheOlderSimulatorTooWhenNobodyAnswers) {
    Searching.Begin({{Place}, {}, {}, {}}, Now);
    Searching.Advance(Now + milliseconds(2500));
    ASSERT_THAT(Asked(), SizeIs(3));
    EXPECT_TRUE(Asked()[1].Application.IsZero());
    EXPECT_EQ(Asked()[2].Application, SessionSearch::OlderSimulator);
}

TEST_F(Search, AsksByStreamAfterAWhileOfSilence) {
    Searching.Begin({{Place}, Place, {}, {}}, Now);
    Searching.Advance(Now + seconds(1));
    EXPECT_TRUE(Net.All.back().IsDatagram);
    Searching.Advance(Now + seconds(2));
    EXPECT_FALSE(Net.All.back().IsDatagram);
    Searching.End();
    EXPECT_THAT(Net.Disconnected, SizeIs(1));
}

TEST_F(Search, KeepsTheNewestAnswerOfASession) {
    Searching.Begin({{Place}, {}, {}, {}}, Now);
    Searching.OnReply(Host, Reply(1, u"Old"), Now);
    Searching.OnReply(Host, Reply(2, u"Another"), Now);
    Searching.OnReply(Host, Reply(1, u"New"), Now);
    ASSERT_THAT(Searching.Found(), SizeIs(2));
    EXPECT_EQ(Searching.Found()[0].Name, u"New");
}

TEST_F(Search, AnswersThatNobodyWaitsForAreIgnored) {
    Searching.OnReply(Host, Reply(1), Now);
    EXPECT_THAT(Searching.Found(), IsEmpty());
    Searching.Begin({{Place}, {}, {}, {}}, Now);
    Searching.End();
    Searching.OnReply(Host, Reply(1), Now);
    EXPECT_THAT(Searching.Found(), IsEmpty());
}

TEST_F(Search, OfAHostThatInventsSessionsOnlySoManyAreKept) {
    Searching.Begin({{Place}, {}, {}, {}}, Now);
    for (std::uint32_t i = 0; i < 1000; ++i) Searching.OnReply(Host, Reply(i), Now);
    EXPECT_THAT(Searching.Found(), SizeIs(256));
}

TEST_F(Search, ANameBeyondAllMeasureIsCut) {
    Searching.Begin({{Place}, {}, {}, {}}, Now);
    Searching.OnReply(Host, Reply(1, std::u16string(1000, 'x')), Now);
    EXPECT_THAT(Searching.Found()[0].Name, SizeIs(1000));
    Searching.OnReply(Host, Reply(1, std::u16string(400000, 'x')), Now);
    EXPECT_THAT(Searching.Found()[0].Name, SizeIs(4096));
}

}  // namespace
}  // namespace corvenna::directplay
