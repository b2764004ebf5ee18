#include "link/directplay/directplay_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/peers.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::UnorderedElementsAre;

std::string WhyItFails(const std::function<void()>& action) {
    try {
        action();
    } catch (const SessionError& error) {
        return error.what();
    }
    return "it does not fail";
}

// ---- Connections offered

TEST(DirectPlayConnections, AreIpxTcpIpAndThisComputer) {
    Peer peer;
    const auto connections = peer.Dp.GetDPEnumConnections();
    ASSERT_THAT(connections, SizeIs(3));
    EXPECT_EQ(connections[0].Name, "IPX Connection For DirectPlay");
    EXPECT_EQ(connections[1].Name, "Internet TCP/IP Connection For DirectPlay");
    EXPECT_EQ(connections[2].Name, "Practice Session On This Computer");
}

TEST(DirectPlayConnections, IpxIsNotUsable) {
    Peer peer;
    peer.Dp.InitializeConnection(peer.Dp.GetDPEnumConnections()[0].Address);
    EXPECT_THROW(peer.Dp.GetDPEnumSessions({}), SessionError);
}

TEST(DirectPlayConnections, ThisComputerIsSearchedWithoutAQuestion) {
    Peer host;
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    options.Sockets.NameServer = host.Dp.NameServerPort();
    options.AskHost = []() -> std::optional<std::string> { throw std::logic_error("nobody is to be asked"); };
    DirectPlaySession dp(options);
    dp.InitializeConnection(dp.GetDPEnumConnections()[2].Address);
    EXPECT_THAT(dp.GetDPEnumSessions({}), SizeIs(1));
}

// ---- Searching

TEST(Searching, ShowsTheSessionWithItsPlayersFlagsAndHost) {
    Peer host;
    host.Opens("Host", 5, "Friday evening");
    Peer client;
    const auto sessions = client.Searches(host);
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_EQ(sessions[0].SessionName, "Friday evening");
    EXPECT_EQ(sessions[0].CurrentPlayers, 1);
    EXPECT_EQ(sessions[0].MaxPlayers, 5);
    EXPECT_EQ(sessions[0].Flags, 0x44u);
    EXPECT_EQ(sessions[0].Host, "127.0.0.1:" + std::to_string(host.Dp.TcpPort()));
    EXPECT_EQ(sessions[0].GuidApplication, "{CC080A27-6D4E-11D0-8E21-00A0C90542EF}");
    EXPECT_THAT(sessions[0].GuidInstance, SizeIs(38));
}

TEST(Searching, FindsNothingWhereNobodyIsAndSaysWhatToTry) {
    Peer host;
    host.Opens("Host");
    const std::uint16_t port = host.Dp.NameServerPort();
    host.Dp.Close();
    DirectPlayOptions options = TestOptions();
    options.Sockets.Times.SearchByStream = directplay::milliseconds(0);
    options.EnumerationTime = directplay::milliseconds(300);
    Peer client(options);
    EXPECT_THAT(client.SearchesAt(port), SizeIs(0));
    const auto notices = client.Dp.TakeNotices();
    ASSERT_THAT(notices, SizeIs(1));
    EXPECT_THAT(notices[0], HasSubstr("127.0.0.1:" + std::to_string(port)));
    EXPECT_THAT(notices[0], HasSubstr("connection refused"));
    EXPECT_THAT(notices[0], HasSubstr("firewall"));
    EXPECT_THAT(client.Dp.TakeNotices(), SizeIs(0));
}

TEST(Searching, ReachesAHostThatOnlyAnswersByStream) {
    Peer host;
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    options.Sockets.Times.SearchByStream = directplay::milliseconds(0);
    Peer client(options);
    EXPECT_THAT(client.Searches(host), SizeIs(1));
}

TEST(Searching, ByBroadcastFindsAHostOnThisComputer) {
    DirectPlayOptions hostOptions = TestOptions();
    hostOptions.Sockets.BindIp = 0;
    Peer host(hostOptions);
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    options.Sockets.BindIp = 0;
    options.Sockets.NameServer = host.Dp.NameServerPort();
    options.EnumerationTime = directplay::milliseconds(2000);
    Peer client(options);
    client.Host = "";
    client.Dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
    EXPECT_THAT(client.Dp.GetDPEnumSessions({}), SizeIs(1));
}

TEST(Searching, EndsWhenTheOperatorGivesUpAtTheQuestion) {
    DirectPlayOptions options = TestOptions();
    options.AskHost = [] { return std::optional<std::string>(); };
    DirectPlaySession dp(options);
    dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
    EXPECT_THAT(WhyItFails([&] { dp.GetDPEnumSessions({}); }), HasSubstr("gave up"));
}

TEST(Searching, EndsWhenTheOperatorGivesUpMeanwhile) {
    DirectPlayOptions options = TestOptions();
    int asked = 0;
    options.KeepWaiting = [&] { return ++asked < 3; };
    Peer client(options);
    EXPECT_THAT(WhyItFails([&] { client.SearchesAt(1); }), HasSubstr("gave up"));
    EXPECT_EQ(asked, 3);
}

TEST(Searching, ANameThatIsNobodysIsSaid) {
    Peer client;
    client.Host = "no.such.host.invalid";
    client.Dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
    EXPECT_THAT(client.Dp.GetDPEnumSessions({}), SizeIs(0));
    EXPECT_THAT(client.Dp.TakeNotices(), ElementsAre(HasSubstr("no.such.host.invalid")));
}

TEST(Searching, APortThatIsNoneIsSaid) {
    Peer client;
    for (const char* host : {"127.0.0.1:", "127.0.0.1:x", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1:1 "}) {
        client.Host = host;
        client.Dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
        EXPECT_THAT(WhyItFails([&] { client.Dp.GetDPEnumSessions({}); }), HasSubstr("no port")) << host;
    }
}

TEST(Searching, AFullSessionIsShownOnlyToWhoAsksForAll) {
    Peer host;
    host.Opens("Host", 1);
    DirectPlayOptions options = TestOptions();
    options.EnumerationTime = directplay::milliseconds(300);
    Peer client(options);
    EXPECT_THAT(client.Searches(host), SizeIs(0));
    options.EnumerationFlags = directplay::EnumFlag::All;
    Peer curious(options);
    EXPECT_THAT(curious.Searches(host), SizeIs(1));
}

// ---- Joining

TEST(JoiningASession, MakesPlayersKnownToBothSides) {
    Peer host;
    host.Opens("Host");
    Peer client;
    client.Joins(host, "Client");
    EXPECT_GT(client.Id, 0);
    EXPECT_THAT(client.Sees(), ElementsAre("Host", "Client"));
    ASSERT_TRUE(host.SeesSoon(2));
    EXPECT_THAT(host.Sees(), ElementsAre("Host", "Client"));
    EXPECT_EQ(host.Dp.GetPlayerFriendlyName(client.Id), "Client");
    EXPECT_EQ(client.Dp.GetPlayerFriendlyName(host.Id), "Host");
    EXPECT_TRUE(host.Dp.IsHost());
    EXPECT_FALSE(client.Dp.IsHost());
}

TEST(JoiningASession, TheThirdMeetsTheSecond) {
    Peer host;
    host.Opens("Host");
    Peer second;
    second.Joins(host, "Second");
    Peer third;
    third.Joins(host, "Third");
    EXPECT_THAT(third.Sees(), UnorderedElementsAre("Host", "Second", "Third"));
    EXPECT_TRUE(second.SeesSoon(3));
    third.Says(second.Id, "hello");
    EXPECT_EQ(second.Hears(), (Peer::Heard{third.Id, "hello"}));
    second.Says(third.Id, "and to you");
    EXPECT_EQ(third.Hears(), (Peer::Heard{second.Id, "and to you"}));
}

TEST(JoiningASession, AFullOneIsRefusedWithTheReason) {
    Peer host;
    host.Opens("Host", 2);
    Peer late;
    auto sessions = late.Searches(host);
    ASSERT_THAT(sessions, SizeIs(1));
    Peer client;
    client.Joins(host, "Client");
    ASSERT_TRUE(host.SeesSoon(2));
    const std::string why = WhyItFails([&] { late.Dp.Open(sessions[0], OpenMode::Join); });
    EXPECT_THAT(why, HasSubstr("full"));
    EXPECT_THAT(why, HasSubstr("127.0.0.1:" + std::to_string(host.Dp.TcpPort())));
    EXPECT_THROW(late.Dp.GetDPEnumPlayers(), SessionError);
}

TEST(JoiningASession, TheLastPlaceMayGoToAnotherBetweenEnteringAndThePlayer) {
    Peer host;
    host.Opens("Host", 2);
    Peer slow;
    slow.Enters(host);
    Peer quick;
    quick.Joins(host, "Quick");
    ASSERT_TRUE(host.SeesSoon(2));
    EXPECT_THAT(WhyItFails([&] { slow.Dp.CreatePlayer("Slow", "Player"); }), HasSubstr("full"));
}

TEST(JoiningASession, AWrongPasswordIsRefusedTheRightOneLetsIn) {
    Peer host;
    host.Password = "Sesam";
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    options.EnumerationFlags = directplay::EnumFlag::Available | directplay::EnumFlag::PasswordRequired;
    Peer client(options);
    client.Password = "sesam";
    EXPECT_THAT(WhyItFails([&] { client.Enters(host); }), HasSubstr("password"));
    client.Password = "Sesam";
    client.Joins(host, "Client");
    EXPECT_TRUE(host.SeesSoon(2));
}

TEST(JoiningASession, ThatHasGoneMeanwhileFails) {
    Peer client;
    std::vector<SessionRecord> sessions;
    {
        Peer host;
        host.Opens("Host");
        sessions = client.Searches(host);
        ASSERT_THAT(sessions, SizeIs(1));
    }
    EXPECT_THAT(WhyItFails([&] { client.Dp.Open(sessions[0], OpenMode::Join); }),
                HasSubstr("connection refused"));
    sessions[0].GuidInstance = "{00000000-0000-0000-0000-000000000001}";
    EXPECT_THAT(WhyItFails([&] { client.Dp.Open(sessions[0], OpenMode::Join); }), HasSubstr("no session"));
}

TEST(JoiningASession, MayBeDoneAgainAfterClosing) {
    Peer host;
    host.Opens("Host");
    Peer client;
    client.Joins(host, "Client");
    const std::int32_t first = client.Id;
    client.Dp.Close();
    ASSERT_TRUE(host.SeesSoon(1));
    client.Joins(host, "Client");
    EXPECT_NE(client.Id, first);
    EXPECT_TRUE(host.SeesSoon(2));
}

TEST(JoiningASession, ANameKeepsWhatTheCodePageHas) {
    Peer host;
    host.Opens("Z\xFCrich Tower \x80", 0, "Caf\xE9");
    Peer client;
    EXPECT_EQ(client.Searches(host).at(0).SessionName, "Caf\xE9");
    client.Joins(host, "Client");
    EXPECT_EQ(client.Dp.GetPlayerFriendlyName(host.Id), "Z\xFCrich Tower \x80");
}

TEST(JoiningASession, ASessionNameOfAThousandCharactersIsShownWhole) {
    Peer host;
    host.Opens("Host", 0, std::string(1000, 'x'));
    Peer client;
    EXPECT_EQ(client.Searches(host).at(0).SessionName, std::string(1000, 'x'));
    client.Joins(host, "Client");
    EXPECT_TRUE(host.SeesSoon(2));
}

// ---- Messages

struct ThreePeers : testing::Test {
    void SetUp() override {
        One.Opens("One");
        Two.Joins(One, "Two");
        Three.Joins(One, "Three");
        ASSERT_TRUE(One.SeesSoon(3));
        ASSERT_TRUE(Two.SeesSoon(3));
    }
    Peer One, Two, Three;
};

TEST_F(ThreePeers, EverybodyHearsEveryoneButHimself) {
    One.Says(0, "from one");
    EXPECT_EQ(Two.Hears(), (Peer::Heard{One.Id, "from one"}));
    EXPECT_EQ(Three.Hears(), (Peer::Heard{One.Id, "from one"}));
    Two.Says(0, "from two");
    EXPECT_EQ(One.Hears(), (Peer::Heard{Two.Id, "from two"}));
    EXPECT_EQ(Three.Hears(), (Peer::Heard{Two.Id, "from two"}));
    EXPECT_EQ(One.Dp.GetMessageCount(One.Id), 0);
    EXPECT_EQ(Two.Dp.GetMessageCount(Two.Id), 0);
}

TEST_F(ThreePeers, OneAloneHearsWhatIsForHim) {
    Three.Says(Two.Id, "for two");
    Three.Says(One.Id, "for one");
    EXPECT_EQ(Two.Hears().Text, "for two");
    EXPECT_EQ(One.Hears().Text, "for one");
    EXPECT_EQ(Two.Dp.GetMessageCount(Two.Id), 0);
}

TEST_F(ThreePeers, UnguaranteedMessagesArriveByDatagram) {
    Two.SaysOnce(Three.Id, "position");
    EXPECT_EQ(Three.Hears(), (Peer::Heard{Two.Id, "position"}));
    Two.SaysOnce(0, "position to all");
    EXPECT_EQ(One.Hears().Text, "position to all");
    EXPECT_EQ(Three.Hears().Text, "position to all");
}

TEST_F(ThreePeers, ALargeUnguaranteedMessageArrivesAllTheSame) {
    const std::string text(100000, 'x');
    Two.SaysOnce(One.Id, text);
    EXPECT_EQ(One.Hears().Text, text);
}

TEST_F(ThreePeers, AMessageThatLooksLikeASystemMessageIsWrapped) {
    const std::string text = "123456789012play\x0B and so on";
    Two.SaysOnce(One.Id, text);
    EXPECT_EQ(One.Hears(), (Peer::Heard{Two.Id, text}));
    Two.Says(One.Id, text);
    EXPECT_EQ(One.Hears(), (Peer::Heard{Two.Id, text}));
}

TEST_F(ThreePeers, TheOrderOfOneSenderIsKept) {
    constexpr int count = 2000;
    for (int i = 0; i < count; ++i) Three.Says(One.Id, std::to_string(i));
    for (int i = 0; i < count; ++i) ASSERT_EQ(One.Hears().Text, std::to_string(i));
}

TEST_F(ThreePeers, OfTwoOwnPlayersTheOtherHearsIt) {
    const std::int32_t second = Two.Dp.CreatePlayer("Two B", "Player");
    ASSERT_TRUE(One.SeesSoon(4));
    Two.Says(0, "all");
    EXPECT_EQ(Two.Dp.GetMessageCount(second), 1);
    EXPECT_EQ(Two.Dp.GetMessageCount(Two.Id), 0);
    DirectPlayMessage message;
    const Envelope envelope = Two.Dp.Receive(message);
    EXPECT_EQ(envelope.From, Two.Id);
    EXPECT_EQ(envelope.To, second);
}

TEST_F(ThreePeers, AGroupHearsWhatIsForIt) {
    const std::int32_t group = One.Dp.CreateGroup("FS61_REFUSE_PARAMS");
    ASSERT_TRUE(Eventually([&] { return Two.Dp.GetDPEnumGroups().size() == 1; }));
    ASSERT_TRUE(Eventually([&] { return Three.Dp.GetDPEnumGroups().size() == 1; }));
    EXPECT_EQ(Two.Dp.GetDPEnumGroups()[0].ShortName, "FS61_REFUSE_PARAMS");
    Two.Dp.AddPlayerToGroup(group, Two.Id);
    Two.Says(One.Id, "I am in");  // behind the membership on the same connection
    ASSERT_EQ(One.Hears().Text, "I am in");
    One.Says(group, "for the group");
    EXPECT_EQ(Two.Hears(), (Peer::Heard{One.Id, "for the group"}));
    One.Says(Three.Id, "for you");
    EXPECT_EQ(Three.Hears().Text, "for you");  // and nothing before it
}

TEST_F(ThreePeers, AGroupAndItsMembersAreToldToWhoComesLater) {
    const std::int32_t group = Two.Dp.CreateGroup("Formation");
    Two.Dp.AddPlayerToGroup(group, Two.Id);
    Two.Says(One.Id, "done");
    ASSERT_EQ(One.Hears().Text, "done");
    Peer late;
    late.Joins(One, "Late");
    ASSERT_THAT(late.Dp.GetDPEnumGroups(), SizeIs(1));
    late.Says(late.Dp.GetDPEnumGroups()[0].Id, "formation only");
    EXPECT_EQ(Two.Hears().Text, "formation only");
}

TEST_F(ThreePeers, AMessageToSomebodyWhoHasGoneIsDroppedWithoutAWord) {
    Three.Dp.Close();
    ASSERT_TRUE(One.SeesSoon(2));
    EXPECT_NO_THROW(One.Says(Three.Id, "still there?"));
    EXPECT_NO_THROW(One.Says(12345, "whoever"));
    One.Says(Two.Id, "but you are");
    EXPECT_EQ(Two.Hears().Text, "but you are");
}

TEST_F(ThreePeers, NobodySpeaksForAnother) {
    DirectPlayMessage message;
    EXPECT_THROW(One.Dp.Send(Two.Id, 0, message), SessionError);
}

// ---- Leaving

TEST_F(ThreePeers, LeavingIsSeenByAll) {
    Two.Dp.Close();
    EXPECT_TRUE(One.SeesSoon(2));
    EXPECT_TRUE(Three.SeesSoon(2));
    EXPECT_THROW(One.Dp.GetPlayerFriendlyName(Two.Id), SessionError);
    EXPECT_THROW(Two.Dp.GetDPEnumPlayers(), SessionError);
    One.Says(Three.Id, "we are still here");
    EXPECT_EQ(Three.Hears().Text, "we are still here");
}

TEST_F(ThreePeers, APlayerDestroyedIsGoneTheMachineStays) {
    Two.Dp.DestroyPlayer(Two.Id);
    EXPECT_TRUE(One.SeesSoon(2));
    Two.Id = Two.Dp.CreatePlayer("Two again", "Player");
    EXPECT_TRUE(One.SeesSoon(3));
    EXPECT_TRUE(Three.SeesSoon(3));
}

TEST_F(ThreePeers, WhenTheHostLeavesAnotherTakesOver) {
    One.Dp.Close();
    ASSERT_TRUE(Two.SeesSoon(2));
    ASSERT_TRUE(Three.SeesSoon(2));
    ASSERT_TRUE(Eventually([&] { return Two.Dp.IsHost() || Three.Dp.IsHost(); }));
    Peer& host = Two.Dp.IsHost() ? Two : Three;  // whose id is the lower one hangs on the session's key
    Peer& other = Two.Dp.IsHost() ? Three : Two;
    EXPECT_FALSE(other.Dp.IsHost());
    host.Says(other.Id, "I have it");
    EXPECT_EQ(other.Hears().Text, "I have it");

    Peer newcomer;
    newcomer.Joins(host, "Newcomer");
    EXPECT_THAT(newcomer.Sees(), UnorderedElementsAre("Two", "Three", "Newcomer"));
    EXPECT_TRUE(other.SeesSoon(3));
    other.Says(newcomer.Id, "welcome");
    EXPECT_EQ(newcomer.Hears().Text, "welcome");
}

// ---- Before and after

TEST(AClosedSession, WorksForNobody) {
    Peer peer;
    DirectPlayMessage message;
    EXPECT_THROW(peer.Dp.CreatePlayer("x", "Player"), SessionError);
    EXPECT_THROW(peer.Dp.DestroyPlayer(1), SessionError);
    EXPECT_THROW(peer.Dp.Close(), SessionError);
    EXPECT_THROW(peer.Dp.GetDPEnumGroups(), SessionError);
    EXPECT_THROW(peer.Dp.CreateGroup("x"), SessionError);
    EXPECT_THROW(peer.Dp.AddPlayerToGroup(1, 1), SessionError);
    EXPECT_THROW(peer.Dp.GetDPEnumPlayers(), SessionError);
    EXPECT_THROW(peer.Dp.GetPlayerFriendlyName(1), SessionError);
    EXPECT_THROW(peer.Dp.GetMessageCount(1), SessionError);
    EXPECT_THROW(peer.Dp.Receive(message), SessionError);
    EXPECT_THROW(peer.Dp.Send(1, 0, message), SessionError);
    EXPECT_EQ(peer.Dp.TcpPort(), 0);
}

TEST(AClosedSession, AnOpenOneCannotBeOpenedAgain) {
    Peer host;
    host.Opens("Host");
    EXPECT_THROW(host.Dp.Open({}, OpenMode::Create), SessionError);
}

TEST(Hosting, AtAPortThatIsTakenFailsAndNamesIt) {
    Peer host;
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    options.Sockets.NameServer = host.Dp.NameServerPort();
    Peer second(options);
    EXPECT_THAT(WhyItFails([&] { second.Opens("Second"); }),
                HasSubstr(std::to_string(host.Dp.NameServerPort())));
}

TEST(Hosting, WithoutAFreePortForConnectionsFailsAndNamesTheRange) {
    Peer host;
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    options.Sockets.Tcp = {host.Dp.TcpPort(), host.Dp.TcpPort()};
    Peer second(options);
    EXPECT_THAT(WhyItFails([&] { second.Opens("Second"); }),
                HasSubstr("TCP port " + std::to_string(host.Dp.TcpPort())));
}

TEST(Hosting, TheFirstFreePortOfTheRangeIsTaken) {
    Peer host;
    host.Opens("Host");
    DirectPlayOptions options = TestOptions();
    const std::uint16_t taken = host.Dp.TcpPort();
    if (taken > 65000) GTEST_SKIP() << "no room for a range above port " << taken;
    options.Sockets.Tcp = {taken, static_cast<std::uint16_t>(taken + 200)};
    Peer second(options);
    second.Opens("Second");
    EXPECT_GT(second.Dp.TcpPort(), taken);
}

}  // namespace
}  // namespace corvenna
