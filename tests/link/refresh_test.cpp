#include "link/refresh.h"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

#include "support/plain_lists.h"
#include "support/session_field.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const SessionField::Sent AskedWho(std::int32_t id) {
    return SessionField::To(id, WriteEmpty(MessageId::WhoAreYou));
}
const SessionField::Sent AskedAircraft(std::int32_t id) {
    return SessionField::To(id, WriteEmpty(MessageId::AskAircraft));
}

class Refresh : public testing::Test {
  protected:
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const PlayerRecord& record : s.Players.Valid()) names.push_back(record.Name);
        return names;
    }

    void Run() {
        field.TakeSent();
        field.Refresh();
    }

    SessionField field;
    Station& s = field.S;
};

TEST_F(Refresh, OfASessionWithOnlyTheControllerSendsNothing) {
    Run();
    EXPECT_THAT(field.TakeSent(), IsEmpty());
}

TEST_F(Refresh, AParticipantWithoutARecordIsAskedWhoHeIs) {
    field.Enters(2, "N1");
    Run();
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(2)));
    EXPECT_EQ(s.PlayerCount(), 0);
}

TEST_F(Refresh, AParticipantIsAskedAgainUntilHeAnswers) {
    field.Enters(2, "N1");
    Run();
    Run();
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(2)));
    field.Sends(2, WriteAdmission(MessageId::AdmitObserver, 2));
    field.Pump();
    Run();
    EXPECT_THAT(field.TakeSent(), IsEmpty());
}

TEST_F(Refresh, EveryPlayerIsAskedForHisAircraftAlsoWhenItIsKnownAndObserversAreNot) {
    field.Joins(2, "N1");
    field.Joins(3, "N2", MessageId::AdmitObserver);
    field.Joins(4, "N3");
    field.Pilot("N1").AircraftName = "Learjet 45";
    for (int i = 0; i < 2; ++i) {
        Run();
        EXPECT_THAT(field.TakeSent(), ElementsAre(AskedAircraft(2), AskedAircraft(4)));
    }
}

TEST_F(Refresh, QuestionsGoOutBeforeTheRequestsForAircraft) {
    field.Joins(2, "N1");
    field.Enters(3, "N2");
    Run();
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(3), AskedAircraft(2)));
}

TEST_F(Refresh, WhoBearsTheControllersNameIsPassedOver) {
    field.Enters(2, "KTST_Controller");
    field.Enters(3, "N1");
    Run();
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(3)));
}

TEST_F(Refresh, TheControllersNameIsTheOneHeHasNow) {
    field.Enters(2, "KTST_Controller");
    field.Room->Rename(1, "Somebody");
    Run();
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(2)));
}

TEST_F(Refresh, OfTwoPlayersTheOneAtIndex0LeavesAndTheOtherComesBackAsANewRecord) {
    field.Joins(2, "N1");
    field.IsServed(3, "N2").Phase = "Approach";
    field.Room->Leave(2);
    Run();
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(3)));  // in the same refresh

    field.Sends(3, WriteAdmission(MessageId::AdmitPlayer, 3));
    field.Pump();
    EXPECT_THAT(Names(), ElementsAre("N2"));
    EXPECT_EQ(field.Pilot("N2").Phase, "");
    EXPECT_EQ(field.Pilot("N2").InService, OpeningDialogue);
}

TEST_F(Refresh, TheLastOfThreeLeavesAndNoOtherRecordChanges) {
    for (std::int32_t id : {2, 3, 4}) field.IsServed(id, "N" + std::to_string(id)).Phase = "Approach";
    const PlayerRecord first = s.Players[0];
    const PlayerRecord second = s.Players[1];
    field.Room->Leave(4);
    Run();
    EXPECT_EQ(s.PlayerCount(), 2);
    EXPECT_EQ(AllOf(s.Players), (std::vector<PlayerRecord>{first, second, {}}));
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedAircraft(2), AskedAircraft(3)));
}

TEST_F(Refresh, TheFirstOfThreeLeavesAndTheLastLosesHisDialogue) {
    for (std::int32_t id : {2, 3, 4}) field.IsServed(id, "N" + std::to_string(id)).Phase = "Approach";
    field.Room->Leave(2);
    Run();
    EXPECT_THAT(Names(), ElementsAre("N3"));
    EXPECT_EQ(field.Pilot("N3").Phase, "Approach");
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(4), AskedAircraft(3)));
}

TEST_F(Refresh, APilotWhoChangesHisNameIsTreatedAsGoneAndNew) {
    field.IsServed(2, "N1").Phase = "Approach";
    field.Room->Rename(2, "N9");
    Run();
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(2)));
    field.Sends(2, WriteAdmission(MessageId::AdmitPlayer, 2));
    field.Pump();
    EXPECT_THAT(Names(), ElementsAre("N9"));
    EXPECT_EQ(field.Pilot("N9").Phase, "");
}

TEST_F(Refresh, APilotWhoComesBackWithAnotherIdIsTreatedAsGoneAndNew) {
    field.IsServed(2, "N1");
    field.Room->Leave(2);
    field.Enters(5, "N1");
    Run();
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_THAT(field.TakeSent(), ElementsAre(AskedWho(5)));
}

TEST_F(Refresh, WhoLeavesIsTakenOutOfAllLists) {
    PlayerRecord& pilot = field.IsServed(2, "N1");
    AddToTakeoffQueue(s, pilot);
    AddToLandingQueue(s, pilot);
    TaxiRouteRecord route;
    route.PilotName = "N1";
    s.TaxiRoutes.Add(route);
    field.Room->Leave(2);
    Run();
    EXPECT_EQ(s.TakeoffQueueCount(), 0);
    EXPECT_EQ(s.LandingQueueCount(), 0);
    EXPECT_EQ(s.TaxiRouteCount(), 0);
}

TEST_F(Refresh, TheBlankElementTakenAsLeftTakesTheBlanksOfAQueueWithIt) {
    for (std::int32_t id : {2, 3}) field.IsServed(id, "N" + std::to_string(id));
    for (const char* name : {"", "N3"}) s.TakeoffQueue.Add(name);
    field.Room->Leave(2);
    Run();
    EXPECT_EQ(AllOf(s.TakeoffQueue), (std::vector<std::string>{""}));
}

TEST_F(Refresh, WithoutASessionThrows) {
    field.Objects.Dp->Close();
    EXPECT_THROW(field.Refresh(), SessionError);
    field.Objects.Dp.reset();
    EXPECT_THROW(field.Refresh(), SessionError);
}

TEST_F(Refresh, WhoHasGoneBetweenTheListAndTheQuestionIsNoFailure) {
    field.Joins(2, "N1");
    field.Enters(3, "N2");
    field.Room->OnSend = [this](auto...) { field.Room->Leave(3); };
    EXPECT_NO_THROW(field.Refresh());
}

// ---- The purge

TEST_F(Refresh, APurgeOfNobodyChangesNothing) {
    s.Players[0].Name = "left in the spare element";
    PurgeLeftPlayers(s, *field.Objects.Dp);
    EXPECT_EQ(s.PlayerCount(), 0);
    EXPECT_EQ(s.Players[0].Name, "left in the spare element");
}

TEST_F(Refresh, NamesAreComparedExactly) {
    field.Joins(2, "N1");
    field.Room->Rename(2, "n1");
    PurgeLeftPlayers(s, *field.Objects.Dp);
    EXPECT_EQ(s.PlayerCount(), 0);
}

TEST_F(Refresh, APurgeEqualsThePlainOneOnRandomSessionsPurgedAgainAndAgain) {
    for (unsigned seed = 1; seed <= 1500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        ClearTraffic(s);
        for (const SessionMember& member : field.Objects.Dp->GetDPEnumPlayers()) {
            if (member.Id != 1) field.Room->Leave(member.Id);
        }
        PlainTraffic plain;
        const auto anyName = [&] { return random() % 5 == 0 ? "" : "N" + std::to_string(random() % 6); };
        std::int32_t lastId = 1;
        for (int round = 0; round < 5; ++round) {
            for (auto newcomers = random() % 7; newcomers > 0; --newcomers) {
                PlayerRecord record;
                record.Id = ++lastId;
                record.Name = anyName();
                record.Role = Role::Player;
                record.Phase = "Approach";
                field.Enters(record.Id, record.Name);
                s.Players.Add(record);
                plain.Players.Add(record);
            }
            for (auto entries = random() % 5; entries > 0; --entries) {
                const std::string name = anyName();
                s.TakeoffQueue.Add(name);
                plain.TakeoffQueue.Add(name);
                s.LandingQueue.Add(name + "0");
                plain.LandingQueue.Add(name + "0");
                TaxiRouteRecord route;
                route.PilotName = anyName();
                s.TaxiRoutes.Add(route);
                plain.TaxiRoutes.Add(route);
            }
            for (std::int32_t id = 2; id <= lastId; ++id) {
                if (random() % 5 == 0) field.Room->Leave(id);
                if (random() % 12 == 0) field.Room->Rename(id, anyName());
            }

            const auto members = field.Objects.Dp->GetDPEnumPlayers();
            plain.Players.Purge(
                [&](const PlayerRecord& record) {
                    bool found = false;
                    for (const SessionMember& member : members) {
                        if (member.ShortName == record.Name && member.Id == record.Id) found = true;
                    }
                    return found;
                },
                [&](PlayerRecord& record) { plain.Reset(record); });
            PurgeLeftPlayers(s, *field.Objects.Dp);
            ASSERT_EQ(AllOf(s.Players), plain.Players.Elements);
            ASSERT_EQ(AllOf(s.TakeoffQueue), plain.TakeoffQueue.Elements);
            ASSERT_EQ(AllOf(s.LandingQueue), plain.LandingQueue.Elements);
            ASSERT_EQ(AllOf(s.TaxiRoutes), plain.TaxiRoutes.Elements);
        }
    }
}

}  // namespace
}  // namespace corvenna
