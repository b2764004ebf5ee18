#include "link/joining.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>

#include "link/fs_messages.h"
#include "support/allocation_count.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t Own = 77;

/// What happens, in its order: what is done with the session layer, what is shown.
using Log = std::vector<std::string>;

/// The session layer as a script: what each operation does is said beforehand.
struct Script {
    std::vector<Connection> Connections{{"IPX", "a1"}, {"TCP/IP", "a2"}, {"Practice", "a3"}};
    std::vector<SessionRecord> Sessions;
    std::vector<SessionMember> Groups;
    std::deque<DirectPlayMessage> Messages;
    std::function<void()> OnReceive;
    std::string Fails;                         ///< the operation that fails
    std::size_t MemoryBehindSearch = NoLimit;  ///< so many bytes at once can be had from then on
    Log Done;
};

class ScriptedSession final : public Session {
  public:
    explicit ScriptedSession(Script& script) : script_(script) { script_.Done.push_back("create"); }
    ~ScriptedSession() override { script_.Done.push_back("release"); }

    std::vector<Connection> GetDPEnumConnections() override { return script_.Connections; }
    void InitializeConnection(const std::string& address) override { Do("initialize", " " + address); }
    std::vector<SessionRecord> GetDPEnumSessions(const SessionRecord& wanted) override {
        Do("search", " [" + wanted.GuidApplication + wanted.SessionPassword + "]");
        std::vector<SessionRecord> found = script_.Sessions;
        LimitAllocations(script_.MemoryBehindSearch);
        return found;
    }
    void Open(const SessionRecord& session, OpenMode mode) override {
        Do("open", (mode == OpenMode::Join ? " join " : " create ") + session.GuidInstance);
    }
    std::int32_t CreatePlayer(const std::string& friendlyName, const std::string& formalName) override {
        Do("player", " " + friendlyName + "/" + formalName);
        return Own;
    }
    void DestroyPlayer(std::int32_t playerId) override { Do("destroy", " " + std::to_string(playerId)); }
    void Close() override { Do("close"); }
    std::vector<SessionMember> GetDPEnumGroups() override { return script_.Groups; }
    std::int32_t CreateGroup(const std::string&) override { return 0; }
    void AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) override {
        Do("group", " " + std::to_string(groupId) + " " + std::to_string(playerId));
    }
    std::vector<SessionMember> GetDPEnumPlayers() override { return {}; }
    std::string GetPlayerFriendlyName(std::int32_t) override { return ""; }
    std::int32_t GetMessageCount(std::int32_t) override {
        return static_cast<std::int32_t>(script_.Messages.size());
    }
    Envelope Receive(DirectPlayMessage& message) override {
        Do("receive");
        message = script_.Messages.front();
        script_.Messages.pop_front();
        if (script_.OnReceive) script_.OnReceive();
        return {5, Own};
    }
    void Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) override {
        DirectPlayMessage copy = message;
        const MessageHeader header = ReadHeader(copy);
        Do("send", " " + std::to_string(from) + " to " + std::to_string(to) + ": " +
                       std::to_string(header.Id) + "/" + std::to_string(header.PayloadSize));
        EXPECT_EQ(copy.Left(), 0u);
    }

  private:
    void Do(const std::string& what, const std::string& with = "") {
        script_.Done.push_back(what + with);
        if (script_.Fails == what) throw SessionError(what + " has failed");
    }
    Script& script_;
};

struct JoiningWindow : testing::Test, OperatorDesk {
    struct Root final : SessionRoot {
        explicit Root(Script& s) : TheScript(s) {}
        std::unique_ptr<Session> DirectPlayCreate() override {
            return std::make_unique<ScriptedSession>(TheScript);
        }
        Script& TheScript;
    };

    JoiningWindow() {
        S.AirportCode = "KTST";
        Objects.MakeRoot = [this] { return std::make_unique<Root>(TheScript); };
        TheScript.Sessions = {Session("Friday", 3, 16), Session("Saturday", 1, 8)};
    }
    ~JoiningWindow() override {
        LimitAllocations(NoLimit);
        Objects = {};
    }

    static SessionRecord Session(const std::string& name, std::int32_t current, std::int32_t maximum) {
        SessionRecord record;
        record.SessionName = name;
        record.CurrentPlayers = current;
        record.MaxPlayers = maximum;
        record.GuidInstance = "instance of " + name;
        record.GuidApplication = "application of " + name;
        return record;
    }

    void ShowBox(BoxIcon icon, std::string_view text) override {
        TheScript.Done.push_back((icon == BoxIcon::Information ? "(i) " : "(!) ") + std::string(text));
    }

    /// What happened since it was last asked.
    Log Happened() { return std::exchange(TheScript.Done, {}); }

    void Loads() {
        Form.Load();
        Happened();
    }
    void Finds() {
        Loads();
        Form.SelectConnection(0);
        Form.Search();
        Happened();
    }
    void Requests() {
        Finds();
        Form.SelectSession(0);
        Form.Join();
        Happened();
    }
    void Receives(const DirectPlayMessage& message) { TheScript.Messages.push_back(message); }
    void Receives(std::int32_t id) { Receives(WriteEmpty(id)); }
    void Admits(std::int32_t id) { Receives(WriteAdmission(MessageId::AdmitPlayer, id)); }
    void Ticks(int times = 1) {
        for (int i = 0; i < times; ++i) Form.RunTimer();
    }
    std::string_view Status() const { return Form.Form().Label6; }

    Station S;
    Script TheScript;
    SessionObjects Objects;
    Joining Form{S,
                 Objects,
                 *this,
                 {[this] { Statuses.emplace_back(Form.Form().Label6); },
                  [this] { TheScript.Done.push_back("station window"); },
                  [this] { TheScript.Done.push_back("end of the program"); }}};
    Log Statuses;
};

const Log TornDown{"release", "create"};

// ---- Load

TEST_F(JoiningWindow, StartsDisconnectedWithTheAirportsNameForTheController) {
    Form.Load();
    EXPECT_EQ(Form.Form().Text2, "KTST_Controller");
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_FALSE(Form.Form().Timer1);
    EXPECT_THAT(Form.Form().List2, IsEmpty());
    EXPECT_THAT(Happened(), ElementsAre("create"));
}

TEST_F(JoiningWindow, ListsAllConnectionsButTheFirst) {
    Form.Load();
    EXPECT_THAT(Form.Form().List1, ElementsAre("TCP/IP", "Practice"));
}

TEST_F(JoiningWindow, WithOneConnectionListsNoneAndCannotSearch) {
    TheScript.Connections.resize(1);
    Loads();
    EXPECT_THAT(Form.Form().List1, IsEmpty());
    Form.Search();
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "(i) Please Select one Type of Connection",
                                        "release", "create"));
}

TEST_F(JoiningWindow, LoadedAgainIsAsAtFirst) {
    Requests();
    Form.Unload();
    Form.Load();
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_FALSE(Form.Form().List1Selected);
    EXPECT_THAT(Form.Form().List1, ElementsAre("TCP/IP", "Practice"));
}

// ---- Search

TEST_F(JoiningWindow, SearchWithoutASelectedConnectionAsksForOne) {
    Loads();
    Form.Search();
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "(i) Please Select one Type of Connection",
                                        "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
}

TEST_F(JoiningWindow, SearchListsTheSessionsWithTheirPlayers) {
    Loads();
    Form.SelectConnection(0);
    Happened();
    Statuses.clear();
    Form.Search();
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "initialize a2", "search []"));
    EXPECT_THAT(Form.Form().List2, ElementsAre("Friday (3/16)", "Saturday (1/8)"));
    EXPECT_THAT(Statuses, ElementsAre("Disconnected", "Searching for FS Multiplayer Sessions", "Done"));
}

TEST_F(JoiningWindow, SearchUsesTheConnectionTwoBehindTheEntry) {
    Loads();
    Form.SelectConnection(1);
    Happened();
    Form.Search();
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "initialize a3", "search []"));
}

TEST_F(JoiningWindow, AConnectionThatCannotBePreparedIsThrown) {
    TheScript.Fails = "initialize";
    Loads();
    Form.SelectConnection(0);
    Happened();
    EXPECT_THROW(Form.Search(), SessionError);
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "initialize a2"));
    EXPECT_EQ(Status(), "Disconnected");
}

TEST_F(JoiningWindow, SearchThatFindsNothingGoesBackToDisconnectedWithoutABox) {
    TheScript.Sessions.clear();
    Loads();
    Form.SelectConnection(0);
    Happened();
    Form.Search();
    EXPECT_THAT(Happened(),
                ElementsAre("release", "create", "initialize a2", "search []", "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
}

TEST_F(JoiningWindow, SearchThatFailsWasCancelledByTheUser) {
    TheScript.Fails = "search";
    Loads();
    Form.SelectConnection(0);
    Happened();
    Form.Search();
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "initialize a2", "search []",
                                        "(i) User Canceled Connection.", "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_THAT(Form.TakeNotices(), ElementsAre("search has failed"));
    EXPECT_THAT(Form.TakeNotices(), IsEmpty());
}

TEST_F(JoiningWindow, SearchWhoseSessionsCannotBeListedTearsDown) {
    TheScript.Sessions.push_back(Session(std::string(5000, 'x'), 1, 2));
    TheScript.MemoryBehindSearch = 4000;
    Loads();
    Form.SelectConnection(0);
    Happened();
    Statuses.clear();
    Form.Search();
    EXPECT_THAT(Happened(), ElementsAre("release", "create", "initialize a2", "search []",
                                        "(!) Error in enumeration functions.", "release", "create"));
    EXPECT_THAT(Statuses,
                ElementsAre("Disconnected", "Searching for FS Multiplayer Sessions", "Disconnected"));
    EXPECT_THAT(Form.Form().List2, IsEmpty());
    EXPECT_THAT(Objects.DpSessions, IsEmpty());
    EXPECT_THAT(Form.TakeNotices(), testing::SizeIs(1));
}

TEST_F(JoiningWindow, ASessionWithoutANameIsListedByItsPlayers) {
    TheScript.Sessions = {Session("", 1, 2)};
    Finds();
    EXPECT_THAT(Form.Form().List2, ElementsAre(" (1/2)"));
    EXPECT_EQ(Status(), "Done");
}

TEST_F(JoiningWindow, SearchAgainForgetsTheSessionsAndTheSelection) {
    Finds();
    Form.SelectSession(1);
    TheScript.Sessions.pop_back();
    Form.Search();
    EXPECT_THAT(Form.Form().List2, ElementsAre("Friday (3/16)"));
    EXPECT_FALSE(Form.Form().List2Selected);
}

TEST_F(JoiningWindow, SelectingAConnectionTearsDown) {
    Finds();
    Form.SelectConnection(1);
    EXPECT_EQ(Happened(), TornDown);
    EXPECT_THAT(Form.Form().List2, IsEmpty());
    EXPECT_EQ(Status(), "Disconnected");
}

// ---- Join

TEST_F(JoiningWindow, JoinEntersTheSessionMakesThePlayerAndAsksAll) {
    Finds();
    Form.SelectSession(1);
    Form.WriteNickname("Tower");
    Statuses.clear();
    Form.Join();
    EXPECT_THAT(Happened(),
                ElementsAre("open join instance of Saturday", "player Tower/Player", "send 77 to 0: 4097/0"));
    EXPECT_THAT(Statuses, ElementsAre("Creating Player", "Player created", "First Request Sent"));
    EXPECT_EQ(S.SessionGuid, "application of Saturday");
    EXPECT_EQ(S.SessionMaxPlayers, 8);
    EXPECT_EQ(S.ControllerId, Own);
    EXPECT_EQ(Form.Form().RetryCountdown, 30);
    EXPECT_TRUE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, JoinWithoutASelectedSessionAsksForOne) {
    Finds();
    Form.Join();
    EXPECT_THAT(Happened(), ElementsAre("(!) Please select a FS Multiplayer Session.", "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
}

TEST_F(JoiningWindow, JoinWithoutANicknameAsksForOne) {
    Finds();
    Form.SelectSession(0);
    Form.WriteNickname("");
    Form.Join();
    EXPECT_THAT(Happened(), ElementsAre("(!) Please write a nickname.", "release", "create"));
}

TEST_F(JoiningWindow, JoinWithoutBothShowsTwoBoxesInARow) {
    Finds();
    Form.WriteNickname("");
    Form.Join();
    EXPECT_THAT(Happened(), ElementsAre("(!) Please select a FS Multiplayer Session.",
                                        "(!) Please write a nickname.", "release", "create"));
}

TEST_F(JoiningWindow, JoinThatCannotOpenTearsDown) {
    TheScript.Fails = "open";
    Finds();
    Form.SelectSession(0);
    Form.Join();
    EXPECT_THAT(Happened(),
                ElementsAre("open join instance of Friday", "(!) Failed to Join Game.", "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_THAT(Form.Form().List2, IsEmpty());
    EXPECT_FALSE(Form.Form().Timer1);
    EXPECT_EQ(S.SessionMaxPlayers, 16);  // read from the record before the session was opened
    EXPECT_THAT(Form.TakeNotices(), ElementsAre("open has failed"));
}

TEST_F(JoiningWindow, JoinThatCannotMakeThePlayerTearsDown) {
    TheScript.Fails = "player";
    Finds();
    Form.SelectSession(0);
    Form.Join();
    EXPECT_THAT(Happened(), ElementsAre("open join instance of Friday", "player KTST_Controller/Player",
                                        "(!) Failed to Create Player.", "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_FALSE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, JoinWhoseRequestCannotBeSentIsThrownAndDoesNotWait) {
    TheScript.Fails = "send";
    Finds();
    Form.SelectSession(0);
    EXPECT_THROW(Form.Join(), SessionError);
    EXPECT_EQ(Status(), "Player created");
    EXPECT_FALSE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, JoinBeforeAnySearchAsksForASession) {
    Loads();
    Form.Join();
    EXPECT_THAT(Happened(), ElementsAre("(!) Please select a FS Multiplayer Session.", "release", "create"));
}

// ---- The timer

TEST_F(JoiningWindow, TheRequestIsRepeatedAfterThirtySeconds) {
    Requests();
    Ticks(29);
    EXPECT_EQ(Form.Form().RetryCountdown, 1);
    EXPECT_THAT(Happened(), IsEmpty());
    Statuses.clear();
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("send 77 to 0: 4104/0", "send 77 to 0: 4097/0"));
    EXPECT_THAT(Statuses, ElementsAre("Resending Request", "Request Resent"));
    EXPECT_EQ(Form.Form().RetryCountdown, 30);
}

TEST_F(JoiningWindow, TheRequestIsRepeatedWithoutEnd) {
    Requests();
    Ticks(30 * 100);
    EXPECT_EQ(Happened().size(), 200u);
    EXPECT_EQ(Status(), "Request Resent");
}

TEST_F(JoiningWindow, ARepetitionThatCannotBeSentIsThrown) {
    Requests();
    TheScript.Fails = "send";
    Ticks(29);
    EXPECT_THROW(Ticks(), SessionError);
}

TEST_F(JoiningWindow, AdmissionLeadsToTheStationWindow) {
    Requests();
    Admits(Own);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive", "(i) Connected to FS Session!", "station window"));
    EXPECT_EQ(Status(), "Connected to Session");
    EXPECT_FALSE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, AdmissionEntersTheGroupOfThatNameAndNoOther) {
    Requests();
    TheScript.Groups = {{8, "FS61_REQUEST_PARAMS"}, {9, "FS61_REFUSE_PARAMS"}, {10, "fs61_refuse_params"}};
    Admits(Own);
    Ticks();
    EXPECT_THAT(Happened(),
                ElementsAre("receive", "group 9 77", "(i) Connected to FS Session!", "station window"));
}

TEST_F(JoiningWindow, AdmissionThatCannotEnterTheGroupLeavesTheWindowWaiting) {
    Requests();
    TheScript.Groups = {{9, "FS61_REFUSE_PARAMS"}};
    TheScript.Fails = "group";
    Admits(Own);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive", "group 9 77"));
    EXPECT_EQ(Status(), "First Request Sent");
    EXPECT_TRUE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, AdmissionOfSomebodyElseLeavesTheWindowWaiting) {
    Requests();
    Admits(Own + 1);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive"));
    EXPECT_EQ(Status(), "First Request Sent");
    Admits(Own);
    Ticks();
    EXPECT_EQ(Status(), "Connected to Session");
}

TEST_F(JoiningWindow, TheRestOfTheTicksMessagesIsGoneThrough) {
    Requests();
    Admits(Own);
    Receives(MessageId::Position);
    Receives(MessageId::WhoAreYou);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive", "(i) Connected to FS Session!", "station window",
                                        "receive", "receive"));
}

TEST_F(JoiningWindow, AnAdmissionToldTwiceInOneTickCountsTwice) {
    Requests();
    Admits(Own);
    Admits(Own);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive", "(i) Connected to FS Session!", "station window",
                                        "receive", "(i) Connected to FS Session!", "station window"));
}

TEST_F(JoiningWindow, OneTickTakesNoMoreMessagesThanWaitedAsItBegan) {
    Requests();
    Receives(MessageId::Position);
    TheScript.OnReceive = [this] { Admits(Own); };
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive"));
    EXPECT_EQ(Status(), "First Request Sent");
}

TEST_F(JoiningWindow, MessagesThatConcernObserversOrOthersArePassedOver) {
    Requests();
    Receives(WriteAdmission(MessageId::AdmitObserver, Own));
    Receives(MessageId::RefuseObserver);
    Receives(MessageId::Removed);
    Receives(4096);
    Ticks();
    EXPECT_EQ(Status(), "First Request Sent");
    EXPECT_THAT(TheScript.Messages, IsEmpty());
}

TEST_F(JoiningWindow, AMessageThatIsTooShortEndsTheTickTheNextGoesOn) {
    Requests();
    Receives(DirectPlayMessage{});
    Admits(Own);
    Ticks();
    EXPECT_EQ(Status(), "First Request Sent");
    Ticks();
    EXPECT_EQ(Status(), "Connected to Session");
}

TEST_F(JoiningWindow, AnAdmissionWithoutAPlayerIdEndsTheTick) {
    Requests();
    Receives(MessageId::AdmitPlayer);
    Ticks();
    EXPECT_EQ(Status(), "First Request Sent");
    EXPECT_TRUE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, RefusalTearsDown) {
    Requests();
    Statuses.clear();
    Receives(MessageId::RefusePlayer);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive", "(!) Connection Refused.", "release", "create"));
    EXPECT_THAT(Statuses, ElementsAre("Failed Connection", "Disconnected"));
    EXPECT_FALSE(Form.Form().Timer1);
    EXPECT_THAT(Form.Form().List2, IsEmpty());
}

TEST_F(JoiningWindow, RefusedItIsReadyForAnotherTry) {
    Requests();
    Receives(MessageId::RefusePlayer);
    Ticks();
    Form.Search();
    Form.SelectSession(0);
    Form.Join();
    Admits(Own);
    Ticks();
    EXPECT_EQ(Status(), "Connected to Session");
}

TEST_F(JoiningWindow, RefusalAfterARepetitionEndsAsOneAfterTheFirstRequest) {
    Requests();
    Ticks(30);
    Happened();
    Receives(MessageId::RefusePlayer);
    Ticks();
    EXPECT_THAT(Happened(), ElementsAre("receive", "(!) Connection Refused.", "release", "create"));
    EXPECT_EQ(Status(), "Disconnected");
}

TEST_F(JoiningWindow, SearchWhileWaitingAbandonsTheJoin) {
    Requests();
    Form.Search();
    EXPECT_FALSE(Form.Form().Timer1);
    EXPECT_EQ(Status(), "Done");
}

TEST_F(JoiningWindow, SelectingAConnectionWhileWaitingAbandonsTheJoin) {
    Requests();
    Form.SelectConnection(0);
    EXPECT_FALSE(Form.Form().Timer1);
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_EQ(Happened(), TornDown);
}

// ---- Close and unload

TEST_F(JoiningWindow, CloseLeavesTheSessionAndEndsTheProgram) {
    Requests();
    Form.Close();
    EXPECT_THAT(Happened(), ElementsAre("destroy 77", "close", "release", "end of the program"));
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_FALSE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, CloseThatFailsEndsTheProgramAtOnce) {
    TheScript.Fails = "destroy";
    Requests();
    Form.Close();
    EXPECT_THAT(Happened(), ElementsAre("destroy 77", "end of the program"));
    EXPECT_EQ(Status(), "First Request Sent");
}

TEST_F(JoiningWindow, UnloadLeavesTheSessionAndTheProgramGoesOn) {
    Requests();
    Form.Unload();
    EXPECT_THAT(Happened(), ElementsAre("destroy 77", "close", "release"));
    EXPECT_EQ(Status(), "Disconnected");
    EXPECT_FALSE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, UnloadThatFailsSkipsTheRest) {
    TheScript.Fails = "close";
    Requests();
    Form.Unload();
    EXPECT_THAT(Happened(), ElementsAre("destroy 77", "close"));
    EXPECT_TRUE(Form.Form().Timer1);
}

TEST_F(JoiningWindow, CloseAndUnloadOutsideAnySessionDoNoHarm) {
    Loads();
    TheScript.Fails = "destroy";
    Form.Unload();
    Form.Close();
    EXPECT_THAT(Happened(), ElementsAre("destroy 0", "destroy 0", "end of the program"));
}

TEST_F(JoiningWindow, UnloadOnceConnectedKeepsTheSession) {
    Requests();
    Admits(Own);
    Ticks();
    Happened();
    Form.Unload();
    EXPECT_THAT(Happened(), IsEmpty());
    EXPECT_EQ(Status(), "Connected to Session");
}

}  // namespace
}  // namespace corvenna
