#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/hex.h"
#include "directplay/raw_peer.h"

/// Bytes and behaviour that no well-meaning peer shows, over real sockets. Each is ignored or ends in a line
/// for the operator; the session goes on for everybody else.
namespace corvenna::directplay {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/// A host and a witness, who must not notice anything.
struct HostilePeers : testing::Test {
    void SetUp() override {
        Host.Opens("Host");
        Witness.Joins(Host, "Witness");
        ASSERT_TRUE(Host.SeesSoon(2));
    }

    /// The two still talk to each other, and somebody new can come in.
    void StillServes() {
        Host.Says(Witness.Id, "still here");
        EXPECT_EQ(Witness.Hears(), (Peer::Heard{Host.Id, "still here"}));
        Witness.Says(Host.Id, "so am I");
        EXPECT_EQ(Host.Hears(), (Peer::Heard{Witness.Id, "so am I"}));
        Peer newcomer;
        newcomer.Joins(Host, "Newcomer");
        EXPECT_TRUE(Host.SeesSoon(3));
        newcomer.Says(Witness.Id, "hello");
        EXPECT_EQ(Witness.Hears(), (Peer::Heard{newcomer.Id, "hello"}));
        newcomer.Dp.Close();
        EXPECT_TRUE(Host.SeesSoon(2));
        EXPECT_TRUE(Witness.SeesSoon(2));
    }

    std::uint16_t Port() const { return Host.Dp.TcpPort(); }

    std::string NoticeSoon(const std::string& words) {
        std::string found;
        Eventually([&] {
            for (const std::string& line : Host.Dp.TakeNotices()) {
                if (line.find(words) != std::string::npos) found = line;
            }
            return !found.empty();
        });
        return found;
    }

    /// Everything that was sent before has been dealt with once this has come.
    void Settles(RawPeer& peer) {
        peer.Tells(Port(), RequestId{Command::RequestPlayerId, MemberFlag::System | MemberFlag::OfSender});
        peer.Gets<RequestPlayerReply>();
    }

    Peer Host;
    Peer Witness;
    RawPeer Raw;
};

// ---- Frames

TEST_F(HostilePeers, FramesOfImpossibleSizesEndTheirConnection) {
    for (const std::uint32_t firstWord : {
             0xFAB00000u,               // of no bytes
             0xFAB00013u,               // of 19
             0xFAB00000u + 0x00100000u  // of 2^20, which spoils the token
         }) {
        ByteWriter writer;
        writer.U32(firstWord);
        writer.Zeros(60);
        const auto stream = RawPeer::Connects(Port());
        stream->Sends(writer.Release());
        EXPECT_TRUE(stream->IsEndedByTheOther()) << std::hex << firstWord;
    }
    StillServes();
}

TEST_F(HostilePeers, AnotherLanguageEndsItsConnection) {
    const std::string request = "GET / HTTP/1.1\r\nHost: tower\r\n\r\n";
    const auto stream = RawPeer::Connects(Port());
    stream->Sends(std::as_bytes(std::span(request)));
    EXPECT_TRUE(stream->IsEndedByTheOther());
    StillServes();
}

TEST_F(HostilePeers, TheLargestFrameIsTakenAndMeansNothing) {
    Bytes frame = Frame(Raw.Tcp().Port, Bytes(MaxFrameSize - HeaderSize));
    EXPECT_TRUE(Raw.SendsTo(Port(), frame));
    Settles(Raw);
    StillServes();
}

TEST_F(HostilePeers, SizesThatDisagreeWithWhatIsInsideAreIgnored) {
    const Bytes whole = EncodeSystemMessage(Raw.Announcement(u"A name of some length"));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_TRUE(Raw.SendsTo(Port(), Frame(Raw.Tcp().Port, ByteSpan(whole).first(size)))) << size;
        Raw.SendsDatagram(Host.Dp.UdpPort(), ByteSpan(whole).first(size));
    }
    Settles(Raw);
    StillServes();
}

TEST_F(HostilePeers, OffsetsBehindTheMessageAreIgnored) {
    for (const std::size_t field : {20u, 24u}) {  // where the record and the password stand
        for (const std::uint32_t offset : {0x1000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
            ByteWriter writer;
            writer.Append(EncodeSystemMessage(AddForwardRequest{Raw.Record(9), u"Sesam", 0}));
            writer.PutU32(field, offset);
            EXPECT_TRUE(Raw.SendsTo(Port(), Frame(Raw.Tcp().Port, writer.Release())));
        }
    }
    Settles(Raw);
    EXPECT_GE(Host.Dp.DroppedSoFar().Malformed, 8u);
    StillServes();
}

TEST_F(HostilePeers, TextsWithoutAnEndAreIgnored) {
    Raw.Joins(Host, u"Raw", {Witness.Dp.TcpPort()});
    ASSERT_TRUE(Host.SeesSoon(3));
    Bytes message = EncodeSystemMessage(
        NameChanged{Command::PlayerNameChanged, Raw.PlayerId(), std::u16string(100, 'x'), std::nullopt});
    message.resize(message.size() - 2);
    EXPECT_TRUE(Raw.SendsTo(Port(), Frame(Raw.Tcp().Port, message)));
    message.push_back(std::byte{'x'});
    EXPECT_TRUE(Raw.SendsTo(Port(), Frame(Raw.Tcp().Port, message)));
    Settles(Raw);
    EXPECT_EQ(Host.Dp.GetPlayerFriendlyName(static_cast<std::int32_t>(Raw.PlayerId())), "Raw");
    EXPECT_EQ(Host.Dp.DroppedSoFar().Malformed, 2u);
    Raw.IsKilled();
    ASSERT_TRUE(Host.SeesSoon(2));
    ASSERT_TRUE(Witness.SeesSoon(2));
    StillServes();
}

TEST_F(HostilePeers, DatagramsOfAnyBytesAreIgnored) {
    for (std::size_t size = 0; size < 100; ++size) {
        Raw.SendsDatagram(Host.Dp.UdpPort(), Bytes(size, std::byte{0xFF}));
        Raw.SendsDatagram(Host.Dp.NameServerPort(), Bytes(size, std::byte{0x00}));
    }
    StillServes();
}

// ---- Speaking for others

TEST_F(HostilePeers, NobodySpeaksForAnothersPlayers) {
    Raw.Joins(Host, u"Raw", {Witness.Dp.TcpPort()});
    ASSERT_TRUE(Host.SeesSoon(3));
    const auto witness = static_cast<std::uint32_t>(Witness.Id);
    Raw.Says(Port(), witness, 0, "as the witness");
    Raw.Tells(Port(), ChangeMember{Command::DeletePlayer, witness, 0});
    Raw.Tells(Port(), NameChanged{Command::PlayerNameChanged, witness, u"Thief", std::nullopt});
    Raw.Says(Port(), Raw.PlayerId(), 0, "as myself");
    EXPECT_EQ(Host.Hears(), (Peer::Heard{static_cast<std::int32_t>(Raw.PlayerId()), "as myself"}));
    EXPECT_EQ(Host.Dp.GetPlayerFriendlyName(Witness.Id), "Witness");
    EXPECT_EQ(Host.Dp.DroppedSoFar().Foreign, 3u);
    EXPECT_THAT(Host.Dp.TakeNotices(), SizeIs(1));  // told once
    Raw.IsKilled();
    ASSERT_TRUE(Host.SeesSoon(2));
    ASSERT_TRUE(Witness.SeesSoon(2));
    StillServes();
}

TEST_F(HostilePeers, ASecondHostIsToldToLeaveAndNotObeyed) {
    Raw.Joins(Host, u"Raw", {Witness.Dp.TcpPort()});
    IAmNameServer claim;
    claim.Host = Raw.Id();
    claim.Flags = 7;
    claim.Provider = Raw.Record(7).Provider;
    Raw.Tells(Port(), claim);
    Raw.Tells(Witness.Dp.TcpPort(), claim);
    Raw.Gets<YouAreDead>();
    Raw.Tells(Witness.Dp.TcpPort(),
              ChangeMember{Command::DeletePlayer, static_cast<std::uint32_t>(Host.Id), 0});
    EXPECT_TRUE(Host.Dp.IsHost());
    ASSERT_TRUE(Eventually([&] {
        const auto lines = Witness.Dp.TakeNotices();
        return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find("claims to be the host") != std::string::npos;
        });
    }));
    EXPECT_THAT(Witness.Sees(), Contains("Host"));
    Raw.IsKilled();
    ASSERT_TRUE(Host.SeesSoon(2));
    ASSERT_TRUE(Witness.SeesSoon(2));
    StillServes();
}

// ---- Connections

TEST_F(HostilePeers, HalfAFrameAndThenTheEndIsNoFrame) {
    Raw.Joins(Host, u"Raw", {Witness.Dp.TcpPort()});
    ASSERT_TRUE(Host.SeesSoon(3));
    const Bytes leave =
        Frame(Raw.Tcp().Port, EncodeSystemMessage(ChangeMember{Command::DeletePlayer, Raw.PlayerId(), 0}));
    const auto stream = RawPeer::Connects(Port());
    stream->Sends(ByteSpan(leave).first(leave.size() - 1));
    stream->Resets();
    Settles(Raw);
    EXPECT_THAT(Host.Sees(), Contains("Raw"));
}

TEST_F(HostilePeers, ConnectionsThatBringNothingAreClosedAfterAWhile) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.Bounds.InboundSilence = milliseconds(200);
    Peer host(options);
    host.Opens("Host");
    const auto silent = RawPeer::Connects(host.Dp.TcpPort());
    const auto stuck = RawPeer::Connects(host.Dp.TcpPort());
    stuck->Sends(FromHex("1c 00 b0 fa 02 00"));
    EXPECT_TRUE(silent->IsEndedByTheOther());
    EXPECT_TRUE(stuck->IsEndedByTheOther());
}

TEST_F(HostilePeers, AMemberMayBeSilentForAsLongAsItLikes) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.Bounds.InboundSilence = seconds(1);
    Peer host(options);
    host.Opens("Host");
    RawPeer member;
    member.Joins(host, u"Raw");
    ASSERT_TRUE(host.SeesSoon(2));
    const auto silent = RawPeer::Connects(host.Dp.TcpPort());
    ASSERT_TRUE(silent->IsEndedByTheOther());  // so the time is over
    EXPECT_TRUE(member.Says(host.Dp.TcpPort(), member.PlayerId(), 0, "not gone"));
    EXPECT_EQ(host.Hears().Text, "not gone");
}

TEST_F(HostilePeers, AFrameBegunAfterALongSilenceMayComeInTwoParts) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.Bounds.InboundSilence = seconds(2);
    Peer host(options);
    host.Opens("Host");
    RawPeer member;
    member.Joins(host, u"Raw");
    ASSERT_TRUE(host.SeesSoon(2));
    const auto silent = RawPeer::Connects(host.Dp.TcpPort());
    ASSERT_TRUE(silent->IsEndedByTheOther());  // the member has been silent for as long
    ByteWriter writer;
    writer.U32(member.PlayerId());
    writer.U32(0);
    writer.U32(0x41414141);
    const Bytes frame = Frame(member.Tcp().Port, writer.Release());
    member.SendsTo(host.Dp.TcpPort(), ByteSpan(frame).first(10));
    const auto later = RawPeer::Connects(host.Dp.TcpPort());  // the thread looks at its deadlines meanwhile
    member.SendsTo(host.Dp.TcpPort(), ByteSpan(frame).subspan(10));
    EXPECT_EQ(host.Hears().Text, "AAAA");
}

TEST_F(HostilePeers, TooManyConnectionsMakeWayForEachOtherNotForTheMembers) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.Bounds.InboundConnections = 8;
    Peer host(options);
    host.Opens("Host");
    RawPeer member;
    member.Joins(host, u"Raw");
    ASSERT_TRUE(host.SeesSoon(2));
    std::vector<std::unique_ptr<RawStream>> crowd;
    crowd.reserve(30);
    for (int i = 0; i < 30; ++i) crowd.push_back(RawPeer::Connects(host.Dp.TcpPort()));
    EXPECT_TRUE(crowd[0]->IsEndedByTheOther());
    EXPECT_TRUE(member.Says(host.Dp.TcpPort(), member.PlayerId(), 0, "not pushed out"));
    EXPECT_EQ(host.Hears().Text, "not pushed out");
    EXPECT_THAT(host.Sees(), Contains("Raw"));
}

TEST_F(HostilePeers, FramesThatNeverEndTakeOnlySoMuchMemory) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.Bounds.InboundBytes = 1 << 20;
    Peer host(options);
    host.Opens("Host");
    ByteWriter writer;
    writer.U32(0xFABFFFFF);
    writer.Zeros(700000);
    const Bytes begun = writer.Release();
    const auto one = RawPeer::Connects(host.Dp.TcpPort());
    one->Sends(begun);
    const auto two = RawPeer::Connects(host.Dp.TcpPort());
    two->Sends(ByteSpan(begun).first(600000));
    EXPECT_TRUE(one->IsEndedByTheOther());
    RawPeer member;
    member.Joins(host, u"Raw");
    EXPECT_TRUE(host.SeesSoon(2));
}

// ---- Floods, and who does not read

TEST_F(HostilePeers, AFloodIsCutOffWithTheReason) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.Bounds.MessagesPerSecond = 50;
    Peer host(options);
    host.Opens("Host");
    RawPeer flooder;
    flooder.Joins(host, u"Flooder");
    ASSERT_TRUE(host.SeesSoon(2));
    while (flooder.Says(host.Dp.TcpPort(), flooder.PlayerId(), 0x4711, "x")) {
    }
    EXPECT_TRUE(host.SeesSoon(1));
    std::string lines;
    for (const std::string& line : host.Dp.TakeNotices()) lines += line;
    EXPECT_THAT(lines, HasSubstr("Flooder"));
    EXPECT_THAT(lines, HasSubstr("more than 50 messages within a second"));
}

TEST_F(HostilePeers, AMachineThatDoesNotReadIsCutOffTheOthersHearEverything) {
    Raw.Joins(Host, u"Raw", {Witness.Dp.TcpPort()});
    ASSERT_TRUE(Host.SeesSoon(3));
    ASSERT_TRUE(Witness.SeesSoon(3));
    const std::string text(100000, 'x');
    std::size_t said = 0;
    while (Host.Dp.GetDPEnumPlayers().size() == 3 && said < 200) {
        Host.Says(0, text + std::to_string(said));
        ASSERT_EQ(Witness.Hears().Text, text + std::to_string(said));
        ++said;
    }
    EXPECT_THAT(Host.Sees(), UnorderedElementsAre("Host", "Witness"));
    EXPECT_THAT(NoticeSoon("Raw"), HasSubstr("does not read"));
    ASSERT_TRUE(Witness.SeesSoon(2));
    StillServes();
}

TEST_F(HostilePeers, AMachineThatIsKilledIsMissedByAll) {
    Raw.Joins(Host, u"Raw", {Witness.Dp.TcpPort()});
    ASSERT_TRUE(Host.SeesSoon(3));
    ASSERT_TRUE(Witness.SeesSoon(3));
    Raw.IsKilled();
    EXPECT_TRUE(Host.SeesSoon(2));
    EXPECT_TRUE(Witness.SeesSoon(2));
    EXPECT_THAT(NoticeSoon("Raw"), HasSubstr("has left the session"));
    StillServes();
}

TEST_F(HostilePeers, AMachineThatNeverSpeaksAgainAfterAskingToComeInBarsNobody) {
    for (int i = 0; i < 3; ++i) {
        Raw.Tells(Port(), RequestId{Command::RequestPlayerId, MemberFlag::System});
        Raw.Gets<RequestPlayerReply>();
    }
    StillServes();
}

// ---- A host of bare sockets

SessionDescription Description() {
    SessionDescription description;
    description.Flags = SessionFlag::KeepAlive;
    description.Instance = RandomGuid();
    description.Reserved1 = 0x00A50000;
    return description;
}

struct Names {
    std::u16string OnTheWire;
    std::string Shown;
};

TEST(NamesOfSessions, OfAThousandCharactersOrOutsideTheCodePageAreShown) {
    for (const Names& names : {Names{std::u16string(1000, 'x'), std::string(1000, 'x')},
                               Names{u"\u4E00 \u20AC \xD83D\xDE00 \xDC00", "? \x80 ?? ?"}, Names{u"", ""}}) {
        RawPeer host;
        std::thread answers([&] { host.AnswersSearch(Description(), names.OnTheWire); });
        Peer client;
        const auto sessions = client.SearchesAt(host.Udp().Port);
        answers.join();
        ASSERT_THAT(sessions, SizeIs(1));
        EXPECT_EQ(sessions[0].SessionName, names.Shown);
    }
}

/// How far a host comes before it dies.
enum class Step {
    Found,          ///< it has answered the search
    AskedForPlace,  ///< it has been asked for an id
    GavePlace,      ///< it has given one
    AskedToJoin,    ///< it has been asked to make the newcomer known
    HalfTable,      ///< it has sent half of the name table
    AskedForPlayer  ///< the newcomer is in and asks for a player
};

struct HostThatDies : testing::TestWithParam<Step> {
    /// Goes through the steps up to the last one.
    void Serves(RawPeer& host, std::uint16_t client, Step last) const {
        if (last == Step::Found) return;
        host.Gets<RequestId>();
        if (last == Step::AskedForPlace) return;
        RequestPlayerReply place;
        place.Id = 0x00A50000 ^ 0x00010002;
        host.Tells(client, place);
        if (last == Step::GavePlace) return;
        host.Gets<AddForwardRequest>();
        if (last == Step::AskedToJoin) return;
        NameTable table;
        table.Description = Description();
        table.Players.push_back(host.Record(MemberFlag::System | MemberFlag::NameServer));
        table.Players[0].Id = 0x00A50000 ^ 0x00010000;
        const Bytes frame = Frame(host.Tcp().Port, EncodeSystemMessage(table));
        if (last == Step::HalfTable)
            return void(host.SendsTo(client, ByteSpan(frame).first(frame.size() / 2)));
        host.SendsTo(client, frame);
        host.Gets<RequestId>();
    }

    std::string WhyJoiningFails(bool isKilled) const {
        RawPeer host;
        DirectPlayOptions options = TestOptions();
        options.Sockets.Times.Request = options.Sockets.Times.Table = milliseconds(isKilled ? 30000 : 1000);
        Peer client(options);
        std::thread answers([&] { host.AnswersSearch(Description(), u"Test"); });
        const auto sessions = client.SearchesAt(host.Udp().Port);
        answers.join();
        const std::uint16_t port = client.Dp.TcpPort();
        std::thread serves([&] {
            Serves(host, port, GetParam());
            if (isKilled) host.IsKilled();
        });
        std::string why = "it does not fail";
        try {
            client.Dp.Open(sessions.at(0), OpenMode::Join);
            client.Dp.CreatePlayer("Client", "Player");
        } catch (const SessionError& error) {
            why = error.what();
        }
        serves.join();
        ExpectUsable(client);
        return why;
    }

    /// The failure leaves nothing behind that would keep the client from another session.
    static void ExpectUsable(Peer& client) {
        try {
            client.Dp.Close();
        } catch (const SessionError&) {  // it never came in
        }
        Peer other;
        other.Opens("Other");
        client.Joins(other, "Client");
        EXPECT_TRUE(other.SeesSoon(2));
    }
};

TEST_P(HostThatDies, EndsInAClearErrorWhenItIsKilled) {
    const std::string why = WhyJoiningFails(true);
    EXPECT_THAT(why, testing::StartsWith("cannot "));
    EXPECT_THAT(why, testing::AnyOf(HasSubstr("127.0.0.1:"), HasSubstr("the host has left the session")));
}

TEST_P(HostThatDies, EndsInAClearErrorWhenItFallsSilent) {
    EXPECT_THAT(WhyJoiningFails(false), HasSubstr("no answer from the host at 127.0.0.1:"));
}

INSTANTIATE_TEST_SUITE_P(AtEachStep, HostThatDies,
                         testing::Values(Step::Found, Step::AskedForPlace, Step::GavePlace, Step::AskedToJoin,
                                         Step::HalfTable, Step::AskedForPlayer));

}  // namespace
}  // namespace corvenna::directplay
