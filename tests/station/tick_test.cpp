#include "station/tick.h"

#include <gmock/gmock.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "station/replies.h"
#include "support/radio_log.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Services that leave a trace of who served whom in AirportCode, which nothing else writes.
void Trace(Station& s, const PlayerRecord& pilot, const char* service) {
    s.AirportCode +=
        std::string(service) + " " + pilot.Name + " " + std::to_string(s.DistanceToAirport) + ";";
}
void Ground(Station& s, PlayerRecord& pilot) { Trace(s, pilot, "ground"); }
void Tower(Station& s, PlayerRecord& pilot) { Trace(s, pilot, "tower"); }
void Artcc(Station& s, PlayerRecord& pilot) { Trace(s, pilot, "artcc"); }

constexpr std::array<FrequencyService, 4> Services{{
    {&Station::GroundFrequency, &Ground},
    {&Station::TowerFrequency, &Tower},
    {&Station::ApproachFrequency, nullptr},
    {&Station::ArtccFrequency, &Artcc},
}};

/// "Test Field" with the services above; what is sent is taken down.
class Tick : public testing::Test {
  protected:
    Tick() { field.S.AirportCode.clear(); }

    void Run() {
        field.S.AirportCode.clear();
        radio.Entries.clear();
        AtcTimer(field.S, Services, radio);
    }

    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const auto& entry : radio.Entries) texts.push_back(entry.Text);
        return texts;
    }

    const std::string& Served() const { return field.S.AirportCode; }
    PlayerRecord& Pilot(std::string_view name) { return field.Pilot(name); }

    TestField field;
    RadioLog radio;
};

TEST_F(Tick, WithPlayerCount0AtcTimerDoesNothing) {
    field.S.Players[0].Role = Role::Player;  // even with something in the spare element
    field.S.Players[0].Name = "N1";
    field.S.Players[0].Id = 2;
    Run();
    EXPECT_THAT(radio.Entries, IsEmpty());
    EXPECT_EQ(field.S.Players[0].MenuText, "");
}

TEST_F(Tick, OnlyARecordWhoseRoleIsPlayerIsServed) {
    for (const char* role : {"observer", "unknown", "", "Player", "player "}) {
        field.Enters("N1", role);
        field.OnFrequency("N2", field.S.TowerFrequency, "").Role = role;
    }
    Run();
    EXPECT_THAT(radio.Entries, IsEmpty());
    EXPECT_EQ(Served(), "");
}

TEST_F(Tick, AnObserversTextIsNeverWrittenButHeHearsTheOpeningDialogues) {
    field.Enters("N1");
    field.Enters("Watcher", Role::Observer);
    Run();
    ASSERT_THAT(radio.Entries, SizeIs(1));
    EXPECT_THAT(radio.Entries[0].Audience, ElementsAre(2, 3));
    EXPECT_EQ(Pilot("Watcher").MenuText, "");
}

// ---- The dispatch

struct DispatchRow {
    std::string Station::*Label;
    const char* Served;
};

const DispatchRow DispatchRows[] = {
    {&Station::GroundFrequency, "ground N1 0;"},
    {&Station::TowerFrequency, "tower N1 0;"},
    {&Station::ApproachFrequency, ""},  // a label whose service does not exist runs nothing
    {&Station::ArtccFrequency, "artcc N1 0;"},
};

TEST_F(Tick, EachFrequencyRunsItsService) {
    for (const DispatchRow& row : DispatchRows) {
        field.S.Players.Clear();
        field.OnFrequency("N1", field.S.*row.Label, "");
        Run();
        EXPECT_EQ(Served(), row.Served);
    }
}

TEST_F(Tick, OfEqualLabelsTheFirstServes) {
    field.S.TowerFrequency = field.S.GroundFrequency;
    field.OnFrequency("N1", field.S.TowerFrequency, "");
    Run();
    EXPECT_EQ(Served(), "ground N1 0;");
}

TEST_F(Tick, AFirstLabelWithoutAServiceLeavesNoneForTheOthers) {
    field.S.ArtccFrequency = field.S.ApproachFrequency;
    field.OnFrequency("N1", field.S.ArtccFrequency, "");
    Run();
    EXPECT_EQ(Served(), "");
}

TEST_F(Tick, APilotTunedToALabelThatNoLongerMatchesIsSilentAndNoError) {
    field.OnFrequency("N1", "135.0", "").Choice = 1;
    Run();
    EXPECT_EQ(Served(), "");
    EXPECT_THAT(radio.Entries, IsEmpty());
    EXPECT_EQ(Pilot("N1").Choice, 1);
}

TEST_F(Tick, LabelsAreComparedExactly) {
    field.OnFrequency("N1", "air route traffic control center", "");
    Run();
    EXPECT_EQ(Served(), "");
}

TEST_F(Tick, WithoutAFrequencyAtAControlledFieldTheFrequencyMenuRuns) {
    field.OnFrequency("N1", "", "");
    Run();
    EXPECT_THAT(Texts(), ElementsAre("N1. Choose one of the following options: 1-Close ATC Services "
                                     "2-Tune Test Field Ground Frequency"));
}

TEST_F(Tick, WithoutATowerOrAGroundTheAirportIsUncontrolled) {
    for (auto label : {&Station::TowerFrequency, &Station::GroundFrequency}) {
        TestField uncontrolled;
        uncontrolled.S.*label = "";
        uncontrolled.OnFrequency("N1", "", "");
        radio.Entries.clear();
        AtcTimer(uncontrolled.S, Services, radio);
        ASSERT_THAT(radio.Entries, SizeIs(1));
        EXPECT_THAT(radio.Entries[0].Text, testing::HasSubstr("Advisory frequency (CTAF): 1-Announce"));
    }
}

TEST_F(Tick, AFrequencyIsServedAtAnUncontrolledFieldToo) {
    field.S.TowerFrequency.clear();
    field.OnFrequency("N1", field.S.ArtccFrequency, "");
    Run();
    EXPECT_EQ(Served(), "artcc N1 0;");
}

TEST_F(Tick, TheGeometryIsUpdatedBeforeTheService) {
    field.OnFrequency("N1", field.S.TowerFrequency, "").Latitude = 48;
    field.OnFrequency("N2", field.S.TowerFrequency, "").Latitude = 49;
    Run();
    EXPECT_EQ(Served(), "tower N1 60;tower N2 120;");
    EXPECT_NE(Pilot("N1").Quadrant, "");
}

TEST_F(Tick, InTheOpeningDialogueNoGeometryRuns) {
    field.Enters("N1").Latitude = 48;
    Run();
    EXPECT_EQ(Pilot("N1").Quadrant, "");
    EXPECT_EQ(field.S.DistanceToAirport, 0);
}

TEST_F(Tick, AnyOtherValueOfInServiceRunsNothing) {
    field.Enters("N1").InService = 2;
    field.OnFrequency("N2", field.S.TowerFrequency, "").InService = 255;
    Run();
    EXPECT_EQ(Served(), "");
    EXPECT_THAT(radio.Entries, IsEmpty());
}

TEST_F(Tick, PilotsAreServedInTheOrderOfTheirRecords) {
    for (const char* name : {"N1", "N2", "N3"}) field.OnFrequency(name, field.S.GroundFrequency, "");
    Run();
    EXPECT_EQ(Served(), "ground N1 0;ground N2 0;ground N3 0;");
}

// ---- The sending

/// A service that says what stands in the pilot's Phase.
void Repeater(Station&, PlayerRecord& pilot) { pilot.MenuText = pilot.Phase; }

constexpr std::array<FrequencyService, 1> RepeaterOnTower{{{&Station::TowerFrequency, &Repeater}}};

class Sending : public Tick {
  protected:
    void RunRepeater() {
        radio.Entries.clear();
        AtcTimer(field.S, RepeaterOnTower, radio);
    }

    PlayerRecord& OnTower(std::string_view name, std::string_view saying) {
        return field.OnFrequency(name, field.S.TowerFrequency, saying);
    }
};

TEST_F(Sending, ATextIsSentWhenItChanges) {
    OnTower("N1", "first");
    RunRepeater();
    EXPECT_THAT(Texts(), ElementsAre("first"));
    RunRepeater();
    EXPECT_THAT(Texts(), IsEmpty());
    Pilot("N1").Phase = "second";
    RunRepeater();
    EXPECT_THAT(Texts(), ElementsAre("second"));
}

TEST_F(Sending, ATextThatIsEmptiedIsNotSent) {
    OnTower("N1", "").MenuText = "old";
    RunRepeater();
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_EQ(Pilot("N1").MenuText, "");
}

TEST_F(Sending, ATextThatChangedOutsideThePilotsTurnIsNotSent) {
    OnTower("N1", "same").MenuText = "same";
    Pilot("N1").MenuText = "other";
    Pilot("N1").Phase = "other";
    RunRepeater();
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(Sending, EverybodyOnTheFrequencyHearsThePilotHimselfAmongThemWhateverTheirRole) {
    field.Enters("N0");
    OnTower("N1", "hello");
    OnTower("N2", "").Role = Role::Observer;
    field.OnFrequency("N3", field.S.GroundFrequency, "");
    OnTower("N4", "").Role = Role::Unknown;
    Pilot("N0").Role = Role::Observer;
    RunRepeater();
    ASSERT_THAT(radio.Entries, SizeIs(1));
    EXPECT_EQ(radio.Entries[0].Frequency, field.S.TowerFrequency);
    EXPECT_THAT(radio.Entries[0].Audience, ElementsAre(3, 4, 6));
}

TEST_F(Sending, PilotsWithoutAFrequencyFormOnePartyLine) {
    field.Enters("N1");
    field.Enters("N2");
    OnTower("N3", "");
    Run();
    ASSERT_THAT(radio.Entries, SizeIs(2));
    EXPECT_EQ(radio.Entries[0].Frequency, "");
    EXPECT_THAT(radio.Entries[0].Text, testing::StartsWith("N1. Welcome"));
    EXPECT_THAT(radio.Entries[0].Audience, ElementsAre(2, 3));
    EXPECT_THAT(radio.Entries[1].Text, testing::StartsWith("N2. Welcome"));
    EXPECT_THAT(radio.Entries[1].Audience, ElementsAre(2, 3));
}

TEST_F(Sending, ASecondRecordOnTheFrequencyGetsEachOfHisMessagesAndTheDigitsAreKeptApartByName) {
    for (const char* name : {"N1", "N2"}) {
        field.OnFrequency(name, "", "").MenuText = std::string(name) + ". 1-Close ATC Services";
    }
    ApplyChatReply(field.S, Pilot("N2"), "1");
    EXPECT_EQ(Pilot("N1").Choice, 0);
    EXPECT_EQ(Pilot("N2").Choice, 1);
    Run();
    ASSERT_THAT(radio.Entries, SizeIs(1));
    EXPECT_THAT(radio.Entries[0].Text, testing::StartsWith("N1. Choose"));
    EXPECT_THAT(radio.Entries[0].Audience, ElementsAre(2, 3));
}

TEST_F(Sending, TheAudienceIsThatOfTheFrequencyAfterTheTurn) {
    field.OnFrequency("N1", "", "").MenuText = "N1. 2-Tune Test Field Ground Frequency";
    field.OnFrequency("N2", field.S.GroundFrequency, "");
    Pilot("N1").Choice = 2;
    Run();
    ASSERT_THAT(radio.Entries, SizeIs(1));
    EXPECT_EQ(radio.Entries[0].Frequency, field.S.GroundFrequency);
    EXPECT_THAT(radio.Entries[0].Audience, ElementsAre(2, 3));
    EXPECT_EQ(Served(), "ground N2 0;");  // the service has him from the next tick on
}

// ---- The repeat

TEST_F(Sending, ATextWithTheMarkGoesOutAgainWithoutItAndNoServiceRuns) {
    OnTower("N1", "new").MenuText = "old (Say Again)";
    RunRepeater();
    EXPECT_THAT(Texts(), ElementsAre("old"));
    EXPECT_EQ(Pilot("N1").MenuText, "old");
    RunRepeater();
    EXPECT_THAT(Texts(), ElementsAre("new"));
}

TEST_F(Sending, ChoiceIsNotClearedWhenATextWithTheMarkIsProcessed) {
    PlayerRecord& pilot = OnTower("N1", "new");
    pilot.MenuText = "old (Say Again)";
    pilot.Choice = 3;
    RunRepeater();
    EXPECT_EQ(Pilot("N1").Choice, 3);
}

TEST_F(Sending, RMakesTheNextTickRepeatTheTextUnchanged) {
    OnTower("N1", "first");
    RunRepeater();
    for (const char* text : {"R", "r"}) {
        ApplyChatReply(field.S, Pilot("N1"), text);
        RunRepeater();
        EXPECT_THAT(Texts(), ElementsAre("first"));
    }
}

TEST_F(Sending, EveryMarkIsDeleted) {
    OnTower("N1", "").MenuText = " (Say Again)a (Say Again) (Say Again)b";
    RunRepeater();
    EXPECT_THAT(Texts(), ElementsAre("ab"));
}

TEST_F(Sending, ATextThatIsAllMarkIsNotSent) {
    OnTower("N1", "").MenuText = " (Say Again)";
    RunRepeater();
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_EQ(Pilot("N1").MenuText, "");
}

TEST_F(Sending, AMarkedTextOfAnObserverStays) {
    OnTower("N1", "").Role = Role::Observer;
    Pilot("N1").MenuText = "old (Say Again)";
    RunRepeater();
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_EQ(Pilot("N1").MenuText, "old (Say Again)");
}

// ---- Failures

/// A service in which N2 has bad luck.
void FailsForN2(Station&, PlayerRecord& pilot) {
    pilot.MenuText = "served " + pilot.Name;
    if (pilot.Name == "N2") throw EmptyListError("nobody in the queue");
}

constexpr std::array<FrequencyService, 1> Unlucky{{{&Station::TowerFrequency, &FailsForN2}}};

TEST_F(Sending, AnErrorEndsTheTickAndWhatWasSentStaysSent) {
    for (const char* name : {"N1", "N2", "N3"}) OnTower(name, "");
    EXPECT_THROW(AtcTimer(field.S, Unlucky, radio), EmptyListError);
    EXPECT_THAT(Texts(), ElementsAre("served N1"));
    EXPECT_EQ(Pilot("N3").MenuText, "");  // not served in that tick
}

TEST_F(Sending, TheTickAfterAnErrorRunsNormally) {
    for (const char* name : {"N1", "N2", "N3"}) OnTower(name, "text");
    EXPECT_THROW(AtcTimer(field.S, Unlucky, radio), EmptyListError);
    RunRepeater();
    EXPECT_THAT(Texts(), ElementsAre("text", "text", "text"));
}

}  // namespace
}  // namespace corvenna
