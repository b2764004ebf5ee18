#include "link/directplay/outbound_connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <thread>

#include "directplay/io_scene.h"
#include "link/directplay/inbound_connection.h"
#include "link/directplay/listener.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using End = OutboundConnection::End;

constexpr std::uint16_t OwnPort = 2300;

SharedBytes FrameOf(std::size_t payload) {
    return std::make_shared<const Bytes>(FrameFrom(OwnPort, payload));
}

/// What a connection tells of itself.
struct Diary {
    OutboundConnection::Events Events() {
        return {[this](ByteSpan frame) { Frames.emplace_back(frame.begin(), frame.end()); },
                [this](const OutboundConnection&, End end, const std::string& why) {
                    EXPECT_FALSE(Ended) << "it ended twice";
                    Ended = end;
                    Why = why;
                }};
    }

    std::vector<Bytes> Frames;
    std::optional<End> Ended;
    std::string Why;
};

struct Outbound : IoScene, testing::Test {
    void SetUp() override {
        ASSERT_FALSE(Door.Open(ThisComputer, {}));
        Door.Start([this](asio::ip::tcp::socket socket, std::uint32_t ip) {
            Sources.push_back(ip);
            Accepted.push_back(std::move(socket));
            if (Reads) ReadsFrom(Accepted.back());
        });
        Connection = To({ThisComputer, Door.Port()});
    }

    std::shared_ptr<OutboundConnection> To(const Endpoint& place) {
        return std::make_shared<OutboundConnection>(Io, place, Options, Told.Events());
    }

    /// The other side reads all that comes.
    void ReadsFrom(asio::ip::tcp::socket& socket) {
        Reader = std::make_shared<InboundConnection>(
            std::move(socket), ThisComputer, Options,
            InboundConnection::Events{
                [this](std::uint32_t, ByteSpan frame) { Sizes.push_back(frame.size()); },
                [this](InboundConnection&, const std::string&) { ReaderSawTheEnd = true; }});
        Reader->Start();
    }

    bool IsAccepted() {
        return Until([&] { return !Sources.empty(); });
    }
    bool Arrives(std::size_t frames) {
        return Until([&] { return Sizes.size() >= frames; });
    }
    bool Ends() {
        return Until([&] { return Told.Ended.has_value(); });
    }

    /// Until the connection is known to be made, from its own side.
    bool IsReady() {
        if (!IsAccepted()) return false;
        asio::write(Accepted.back(), asio::buffer(FrameFrom(1)));
        return Until([&] { return Told.Frames.size() == 1; });
    }

    Listener Door{Io};
    bool Reads = true;
    std::vector<std::uint32_t> Sources;
    std::vector<asio::ip::tcp::socket> Accepted;
    std::shared_ptr<InboundConnection> Reader;
    std::vector<std::size_t> Sizes;
    bool ReaderSawTheEnd = false;
    Diary Told;
    std::shared_ptr<OutboundConnection> Connection;
};

/// The other side accepts, and reads nothing.
struct OutboundUnread : Outbound {
    OutboundUnread() { Reads = false; }
};

// ---- Frames

TEST_F(Outbound, NothingHappensBeforeTheFirstFrame) {
    ServeWhatIsDue();
    Connection->Check(TimePoint::max() - seconds(1));
    ServeWhatIsDue();
    EXPECT_THAT(Sources, IsEmpty());
    EXPECT_FALSE(Told.Ended);
}

TEST_F(Outbound, FramesArriveInTheirOrderOverOneConnection) {
    for (std::size_t payload = 0; payload < 200; ++payload) Connection->Put(FrameOf(payload));
    ASSERT_TRUE(Arrives(200));
    for (std::size_t i = 0; i < Sizes.size(); ++i) EXPECT_EQ(Sizes[i], HeaderSize + PlayerIdsSize + i);
    Connection->Put(FrameOf(7));
    ASSERT_TRUE(Arrives(201));
    EXPECT_EQ(Sources.size(), 1U);
}

TEST_F(Outbound, TheLargestFrameArrives) {
    Options.Bounds.OutboundBytes = MaxFrameSize;
    Connection->Put(FrameOf(MaxFrameSize - HeaderSize - PlayerIdsSize));
    ASSERT_TRUE(Arrives(1));
    EXPECT_THAT(Sizes, ElementsAre(MaxFrameSize));
}

TEST_F(Outbound, FramesMayBePutInByManyThreads) {
    constexpr std::size_t Threads = 4;
    constexpr std::size_t FramesOfEach = 100;
    std::vector<std::thread> writers;
    writers.reserve(Threads);
    for (std::size_t writer = 0; writer < Threads; ++writer) {
        writers.emplace_back([this, writer] {
            for (std::size_t i = 0; i < FramesOfEach; ++i)
                Connection->Put(FrameOf(writer * FramesOfEach + i));
        });
    }
    const bool all = Arrives(Threads * FramesOfEach);
    for (std::thread& writer : writers) writer.join();
    ASSERT_TRUE(all);
    for (std::size_t writer = 0; writer < Threads; ++writer) {
        std::vector<std::size_t> own;
        for (const std::size_t size : Sizes) {
            const std::size_t payload = size - HeaderSize - PlayerIdsSize;
            if (payload / FramesOfEach == writer) own.push_back(payload);
        }
        EXPECT_EQ(own.size(), FramesOfEach);
        EXPECT_TRUE(std::is_sorted(own.begin(), own.end()));
    }
}

TEST_F(Outbound, ItComesFromTheAddressWhereWeListen) {
    Options.BindIp = 0x7F000003;
    Connection->Put(FrameOf(0));
    ASSERT_TRUE(IsAccepted());
    EXPECT_THAT(Sources, ElementsAre(0x7F000003));
}

// ---- Closed by us

TEST_F(Outbound, AllThatWaitsIsSentBeforeItIsClosed) {
    for (int i = 0; i < 100; ++i) Connection->Put(FrameOf(1000));
    Connection->CloseWhenSent();
    ASSERT_TRUE(Until([&] { return ReaderSawTheEnd; }));
    EXPECT_EQ(Sizes.size(), 100U);
    EXPECT_EQ(Told.Ended, End::Closed);
    EXPECT_EQ(Told.Why, "");
    EXPECT_FALSE(Connection->Put(FrameOf(0)));
}

TEST_F(Outbound, AFrameThatFollowsKeepsItOpen) {
    Connection->Put(FrameOf(0));
    Connection->CloseWhenSent();
    Connection->Put(FrameOf(1));
    ASSERT_TRUE(Arrives(2));
    ServeWhatIsDue();
    EXPECT_FALSE(Told.Ended);
    EXPECT_TRUE(Connection->Put(FrameOf(2)));
    EXPECT_TRUE(Arrives(3));
}

TEST_F(OutboundUnread, AbortedItEndsWithAllThatWaited) {
    for (int i = 0; i < 50; ++i) Connection->Put(FrameOf(10000));
    Connection->Abort();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Told.Ended, End::Closed);
    EXPECT_FALSE(Connection->Put(FrameOf(0)));
    Connection->Abort();
    Connection->CloseWhenSent();
    ServeWhatIsDue();  // the end is told once
}

// ---- Ended by the other side

TEST_F(Outbound, WhereNobodyListensItSaysSo) {
    Endpoint nobody;
    {
        const RawPeer gone;
        nobody = gone.Tcp();
    }
    const auto connection = To(nobody);
    connection->Put(FrameOf(0));
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Told.Ended, End::Unreachable);
    EXPECT_THAT(Told.Why, HasSubstr("nothing listens there"));
    EXPECT_FALSE(connection->Put(FrameOf(0)));
}

TEST_F(Outbound, PlacesThatAreNoneAreUnreachable) {
    for (const Endpoint& place : {Endpoint{ThisComputer, 0}, Endpoint{0xFFFFFFFF, 65535}}) {
        Told = {};
        const auto connection = To(place);
        connection->Put(FrameOf(0));
        ASSERT_TRUE(Ends()) << EndpointText(place);
        EXPECT_EQ(Told.Ended, End::Unreachable) << EndpointText(place);
        EXPECT_THAT(Told.Why, HasSubstr("no")) << EndpointText(place);
    }
}

TEST_F(Outbound, WhoDoesNotAnswerInTimeIsUnreachable) {
    const TimePoint latest = Clock::now() + Options.Times.Connect;
    Connection->Put(FrameOf(0));
    Io.restart();
    ASSERT_EQ(Io.poll_one(), 1U);  // it begins to connect
    Connection->Check(latest - milliseconds(1));
    EXPECT_FALSE(Told.Ended);
    Connection->Check(Clock::now() + Options.Times.Connect);
    EXPECT_EQ(Told.Ended, End::Unreachable);
    EXPECT_THAT(Told.Why, HasSubstr("timed out"));
}

TEST_F(OutboundUnread, WhoHangsUpIsToldApartFromUs) {
    Connection->Put(FrameOf(0));
    ASSERT_TRUE(IsAccepted());
    Accepted.clear();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Told.Ended, End::Disconnected);
    EXPECT_FALSE(Connection->Put(FrameOf(0)));
}

TEST_F(OutboundUnread, AFrameFromTheOtherSideIsHeard) {
    Connection->Put(FrameOf(0));
    ASSERT_TRUE(IsReady());
    EXPECT_THAT(Told.Frames, ElementsAre(FrameFrom(1)));
    EXPECT_FALSE(Told.Ended);
}

TEST_F(OutboundUnread, AnotherLanguageFromTheOtherSideEndsIt) {
    Connection->Put(FrameOf(0));
    ASSERT_TRUE(IsAccepted());
    const Bytes anything(4, std::byte{0xFF});
    asio::write(Accepted.back(), asio::buffer(anything));
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Told.Ended, End::Disconnected);
    EXPECT_EQ(Told.Why, "it speaks another language");
}

// ---- Limits

TEST_F(OutboundUnread, WhoLetsMoreWaitThanAllowedIsCutOff) {
    Options.Bounds.OutboundBytes = FrameOf(100)->size();
    Connection->Put(FrameOf(100));  // as much as is allowed
    ASSERT_TRUE(IsReady());
    EXPECT_FALSE(Told.Ended);
    Connection->Put(FrameOf(101));
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Told.Ended, End::Stuck);
    EXPECT_EQ(Told.Why, "it does not read: 129 bytes wait for it");
}

/// Of so many bytes the two ends of a connection hold only a part.
TEST_F(OutboundUnread, WhoReadsNothingForTooLongIsCutOff) {
    Options.Bounds.OutboundBytes = std::size_t{64} << 20;
    const SharedBytes frame = FrameOf(1'000'000);
    for (int i = 0; i < 40; ++i) Connection->Put(frame);
    ASSERT_TRUE(IsReady());
    ServeWhatIsDue();
    Connection->Check(Clock::now());
    EXPECT_FALSE(Told.Ended);
    Connection->Check(Clock::now() + Options.Bounds.OutboundStall);
    EXPECT_EQ(Told.Ended, End::Stuck);
    EXPECT_THAT(Told.Why, HasSubstr("not read anything for too long"));
}

TEST_F(Outbound, WithNothingToSendTheOtherSideMayBeSilentForever) {
    Connection->Put(FrameOf(0));
    ASSERT_TRUE(Arrives(1));
    ServeWhatIsDue();
    Connection->Check(Clock::now() + std::chrono::hours(24 * 365));
    EXPECT_FALSE(Told.Ended);
}

TEST_F(Outbound, WithoutADescriptorToSpareItConnectsLater) {
    Connection->Put(FrameOf(0));
    {
        const NothingMoreOpens none;
        if (!none.Holds()) GTEST_SKIP() << NoSuchLimit;
        ServeWhatIsDue();
        EXPECT_FALSE(Told.Ended);
    }
    Connection->Check(Clock::now());
    EXPECT_TRUE(Arrives(1));
}

}  // namespace
}  // namespace corvenna::directplay
