#include "link/directplay/inbound_connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "directplay/io_scene.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint16_t SendersPort = 2301;
constexpr std::size_t FrameBytes = HeaderSize + PlayerIdsSize;

/// A connection from a peer of bare sockets.
struct Inbound : IoScene, testing::Test {
    void SetUp() override {
        asio::ip::tcp::acceptor door(Io, {asio::ip::address_v4(ThisComputer), 0});
        Peer = RawPeer::Connects(door.local_endpoint().port());
        Connection = std::make_shared<InboundConnection>(
            door.accept(), ThisComputer, Options,
            InboundConnection::Events{[this](std::uint32_t ip, ByteSpan frame) {
                                          Sources.push_back(ip);
                                          Frames.emplace_back(frame.begin(), frame.end());
                                          if (OnFrame) OnFrame();
                                      },
                                      [this](InboundConnection& connection, const std::string& flood) {
                                          EXPECT_EQ(&connection, Connection.get());
                                          EXPECT_FALSE(Ended) << "it ended twice";
                                          Ended = flood;
                                      }});
        Connection->Start();
    }

    bool HearsFrames(std::size_t count) {
        return Until([&] { return Frames.size() >= count; });
    }
    bool Ends() {
        return Until([&] { return Ended.has_value(); });
    }
    bool Holds(std::size_t bytes) {
        return Until([&] { return Connection->Pending() == bytes; });
    }

    std::unique_ptr<RawStream> Peer;
    std::shared_ptr<InboundConnection> Connection;
    std::function<void()> OnFrame;
    std::vector<std::uint32_t> Sources;
    std::vector<Bytes> Frames;
    std::optional<std::string> Ended;
};

// ---- Frames

TEST_F(Inbound, WholeFramesAreHeardInTheirOrder) {
    const Bytes one = FrameFrom(SendersPort, 1);
    const Bytes other = FrameFrom(SendersPort, 2);
    Peer->Sends(one + other);
    ASSERT_TRUE(HearsFrames(2));
    EXPECT_THAT(Frames, ElementsAre(one, other));
    EXPECT_THAT(Sources, ElementsAre(ThisComputer, ThisComputer));
    EXPECT_FALSE(Ended);
}

TEST_F(Inbound, AFrameMayComeByteByByte) {
    const Bytes frame = FrameFrom(SendersPort, 5);
    for (std::size_t i = 0; i < frame.size(); ++i) {
        EXPECT_THAT(Frames, IsEmpty()) << i;
        Peer->Sends(ByteSpan(frame).subspan(i, 1));
        ASSERT_TRUE(Holds(i + 1 == frame.size() ? 0 : i + 1));
    }
    EXPECT_THAT(Frames, ElementsAre(frame));
}

TEST_F(Inbound, TheLargestFrameComesWhole) {
    const Bytes frame = FrameFrom(SendersPort, MaxFrameSize - FrameBytes);
    std::thread sender([&] { Peer->Sends(frame); });
    const bool heard = HearsFrames(1);
    sender.join();
    ASSERT_TRUE(heard);
    EXPECT_EQ(Frames[0], frame);
}

TEST_F(Inbound, OfABegunFrameOnlyTheBytesThatCameAreHeld) {
    ByteWriter claim;
    claim.U32(0xFAB00000 | MaxFrameSize);
    Peer->Sends(FrameFrom(SendersPort) + claim.Release());
    ASSERT_TRUE(HearsFrames(1));
    EXPECT_EQ(Connection->Pending(), 4U);
}

TEST_F(Inbound, ItKnowsWhereTheSenderListensFromHisLastFrame) {
    EXPECT_EQ(Connection->Sender(), (Endpoint{ThisComputer, 0}));
    constexpr std::uint16_t Ports[] = {2301, 65535, 0, 1};
    for (const std::uint16_t port : Ports) {
        Frames.clear();
        Peer->Sends(FrameFrom(port));
        ASSERT_TRUE(HearsFrames(1));
        EXPECT_EQ(Connection->Sender(), (Endpoint{ThisComputer, port}));
    }
}

// ---- Other languages

TEST_F(Inbound, WhoSpeaksAnotherLanguageIsNotHeardAnyFurther) {
    Peer->Sends(FrameFrom(SendersPort) + Bytes(4) + FrameFrom(SendersPort));
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Frames.size(), 1U);
    EXPECT_EQ(*Ended, "");
    EXPECT_TRUE(Peer->IsEndedByTheOther());
}

struct InboundFirstWords : Inbound, testing::WithParamInterface<std::uint32_t> {};

TEST_P(InboundFirstWords, ThatBeginNoFrameEndTheConnection) {
    ByteWriter word;
    word.U32(GetParam());
    Peer->Sends(word.Release());
    ASSERT_TRUE(Ends());
    EXPECT_EQ(*Ended, "");
    EXPECT_THAT(Frames, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(FromEndToEnd, InboundFirstWords,
                         testing::Values(0U, 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU,
                                         0xFAB00000U,                   // a frame of nothing
                                         0xFAB00000U + HeaderSize - 1,  // one byte less than a header
                                         0xFAA00000U + FrameBytes,      // the tokens beside the right one
                                         0xFAC00000U + FrameBytes));

// ---- The end

TEST_F(Inbound, TheEndIsToldOnceBehindTheLastFrame) {
    Peer->Sends(FrameFrom(SendersPort));
    Peer.reset();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Frames.size(), 1U);
    EXPECT_EQ(*Ended, "");
    ServeWhatIsDue();
}

TEST_F(Inbound, AFrameThatIsNeverFinishedIsNotHeard) {
    const Bytes frame = FrameFrom(SendersPort, 100);
    Peer->Sends(ByteSpan(frame).first(frame.size() - 1));
    Peer.reset();
    ASSERT_TRUE(Ends());
    EXPECT_THAT(Frames, IsEmpty());
}

TEST_F(Inbound, WhoIsKilledIsToldLikeWhoLeaves) {
    Peer->Resets();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(*Ended, "");
}

TEST_F(Inbound, ClosedByUsItIsNotHeardOfAnyMore) {
    Peer->Sends(FrameFrom(SendersPort));
    Connection->Close();
    EXPECT_TRUE(Peer->IsEndedByTheOther());
    ServeWhatIsDue();
    EXPECT_THAT(Frames, IsEmpty());
    EXPECT_FALSE(Ended);
}

TEST_F(Inbound, ClosedByWhoHearsAFrameItBringsNoFurtherOne) {
    OnFrame = [this] { Connection->Close(); };
    Peer->Sends(FrameFrom(SendersPort) + FrameFrom(SendersPort));
    ASSERT_TRUE(HearsFrames(1));
    ServeWhatIsDue();
    EXPECT_EQ(Frames.size(), 1U);
    EXPECT_FALSE(Ended);
}

// ---- Limits

struct InboundOfThree : Inbound {
    InboundOfThree() { Options.Bounds.MessagesPerSecond = 3; }
};

TEST_F(InboundOfThree, MoreFramesWithinASecondThanAllowedAreAFlood) {
    Bytes four;
    for (int i = 0; i < 4; ++i) four = four + FrameFrom(SendersPort);
    Peer->Sends(four);
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Frames.size(), 3U);
    EXPECT_THAT(*Ended, HasSubstr("more than 3 messages within a second"));
    EXPECT_EQ(Connection->Sender().Port, SendersPort);
}

TEST_F(InboundOfThree, AsManyAsAllowedAreNone) {
    Peer->Sends(FrameFrom(SendersPort) + FrameFrom(SendersPort) + FrameFrom(SendersPort));
    ASSERT_TRUE(HearsFrames(3));
    EXPECT_FALSE(Ended);
}

TEST_F(Inbound, BeforeItsFirstFrameItMayNotBeSilentForLong) {
    const TimePoint soonest = Clock::now();
    Connection->Check(soonest);
    EXPECT_FALSE(Ended);
    Connection->Check(soonest + Options.Bounds.InboundSilence + milliseconds(1));
    ASSERT_TRUE(Ended);
    EXPECT_EQ(*Ended, "");
    EXPECT_TRUE(Peer->IsEndedByTheOther());
}

TEST_F(Inbound, BehindAWholeFrameItMayBeSilentForever) {
    Peer->Sends(FrameFrom(SendersPort));
    ASSERT_TRUE(HearsFrames(1));
    Connection->Check(Connection->LastFrame() + std::chrono::hours(24 * 365));
    EXPECT_FALSE(Ended);
}

TEST_F(Inbound, InTheMiddleOfAFrameItMayNot) {
    Peer->Sends(FrameFrom(SendersPort) + Bytes{std::byte{0x20}});
    ASSERT_TRUE(Holds(1));
    const TimePoint lastBytes = Connection->LastFrame();  // they came with it
    Connection->Check(lastBytes + Options.Bounds.InboundSilence);
    EXPECT_FALSE(Ended);
    Connection->Check(lastBytes + Options.Bounds.InboundSilence + milliseconds(1));
    EXPECT_TRUE(Ended);
}

}  // namespace
}  // namespace corvenna::directplay
