#include "station/opening.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>

#include "support/test_field.h"

namespace corvenna {
namespace {

constexpr const char* Welcome =
    "N12345. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at Test Field?: "
    "1-Use ATC services";
constexpr const char* AskFlightType =
    "N12345. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services";
constexpr const char* ChooseOption = "N12345. Choose one of the following options: 1-Close ATC Services";

TEST(OpeningDialogue, ANewPlayerIsGreetedOnceAndCanAskForTheFlightType) {
    TestField field;
    field.Enters("N12345");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), Welcome);
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), "");

    field.Types("N12345", "KTST,1");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), AskFlightType);
    EXPECT_EQ(field.Pilot("N12345").InService, OpeningDialogue);
    EXPECT_EQ(field.Pilot("N12345").Choice, 0);
}

// ---- Turns of one pilot, without the tick

class Opening : public testing::Test {
  protected:
    Opening() : pilot(field.Enters("N12345")) {}

    void Turn(std::string_view menu, int choice) {
        pilot.MenuText = menu;
        pilot.Choice = static_cast<std::uint8_t>(choice);
        RunOpeningDialogue(field.S, pilot);
    }

    TestField field;
    PlayerRecord& pilot;
};

TEST_F(Opening, WithoutATextHeIsWelcomed) {
    Turn("", 0);
    EXPECT_EQ(pilot.MenuText, Welcome);
    EXPECT_EQ(pilot.InService, OpeningDialogue);
}

TEST_F(Opening, WithoutANameNobodyIsWelcomed) {
    pilot.Name.clear();
    Turn("", 0);
    EXPECT_EQ(pilot.MenuText, "");
}

TEST_F(Opening, WithAnIdOf0OrBelowNobodyIsWelcomed) {
    for (std::int32_t id : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        pilot.Id = id;
        Turn("", 0);
        EXPECT_EQ(pilot.MenuText, "") << id;
    }
    pilot.Id = 1;
    Turn("", 0);
    EXPECT_EQ(pilot.MenuText, Welcome);
}

TEST_F(Opening, AChoiceThatWaitsWithoutATextKeepsTheWelcomeBack) {
    Turn("", 1);
    EXPECT_EQ(pilot.MenuText, "");
    EXPECT_EQ(pilot.Choice, 1);
}

TEST_F(Opening, WhileATextStandsNothingHappens) {
    Turn("another text", 0);
    EXPECT_EQ(pilot.MenuText, "another text");
}

TEST_F(Opening, UseAtcServicesAsksForTheFlightType) {
    Turn(Welcome, 1);
    EXPECT_EQ(pilot.MenuText, AskFlightType);
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(pilot.InService, OpeningDialogue);
}

TEST_F(Opening, VfrEntersTheServiceAsVfr) {
    pilot.FlightRules = Ifr;
    Turn(AskFlightType, 1);
    EXPECT_EQ(pilot.MenuText, ChooseOption);
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(pilot.FlightRules, Vfr);
    EXPECT_EQ(pilot.InService, UnderService);
}

TEST_F(Opening, IfrEntersTheServiceAsIfr) {
    Turn(AskFlightType, 2);
    EXPECT_EQ(pilot.MenuText, ChooseOption);
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(pilot.FlightRules, Ifr);
    EXPECT_EQ(pilot.InService, UnderService);
}

TEST_F(Opening, CloseResetsThePilot) {
    Turn(AskFlightType, 3);
    EXPECT_EQ(pilot.MenuText, "");
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(pilot.InService, OpeningDialogue);
}

TEST_F(Opening, AfterClosingTheNextTickWelcomesHimAgain) {
    field.Tick();
    field.Types("N12345", "KTST,1");
    field.Tick();
    field.Types("N12345", "KTST,3");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), "");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), Welcome);
}

TEST_F(Opening, AfterAResetHisPositionIsStillKnownAndTheNextTickGreetsHimAsANewPilot) {
    pilot.InService = UnderService;
    pilot.TunedFrequency = field.S.TowerFrequency;
    pilot.Phase = "Approach";
    pilot.Latitude = 47.5;
    ResetPilot(field.S, pilot);
    EXPECT_EQ(pilot.Latitude, 47.5);
    field.Tick();
    EXPECT_EQ(field.LastHeard("N12345"), Welcome);
}

TEST_F(Opening, ADigitThatFitsNoOptionStandsAndChangesNothing) {
    Turn(Welcome, 2);
    EXPECT_EQ(pilot.MenuText, Welcome);
    EXPECT_EQ(pilot.Choice, 2);
    Turn(AskFlightType, 4);
    EXPECT_EQ(pilot.MenuText, AskFlightType);
    EXPECT_EQ(pilot.Choice, 4);
}

// ---- Frequency menu

class FrequencyMenu : public testing::Test {
  protected:
    FrequencyMenu() : pilot(field.OnFrequency("N12345", "", "")) {}

    /// The menu for a pilot so many feet above the runway and so many miles from the airport.
    std::string At(int feetAboveField, int nauticalMiles, std::uint8_t flightRules = Vfr) {
        pilot.Altitude = field.S.RunwayElevation + feetAboveField;
        pilot.FlightRules = flightRules;
        field.S.DistanceToAirport = static_cast<std::int16_t>(nauticalMiles);
        RunFrequencyMenu(field.S, pilot);
        return Options();
    }

    /// What stands in the menu behind the start that all have.
    std::string Options() const {
        const std::string start = pilot.Name + ". Choose one of the following options: 1-Close ATC Services";
        EXPECT_THAT(pilot.MenuText, testing::StartsWith(start));
        return pilot.MenuText.substr(start.size());
    }

    void Picks(std::string_view options, int choice, std::uint8_t flightRules = Vfr) {
        pilot.MenuText = std::string(ChooseOption) + std::string(options);
        pilot.Choice = static_cast<std::uint8_t>(choice);
        pilot.FlightRules = flightRules;
        pilot.TunedFrequency.clear();
        RunFrequencyMenu(field.S, pilot);
    }

    TestField field;
    PlayerRecord& pilot;
};

constexpr const char* Artcc = " 2-Tune ARTCC Frequency";
constexpr const char* Approach = " 2-Tune Approach Frequency";
constexpr const char* Tower2 = " 2-Tune Test Field Tower Frequency";
constexpr const char* Tower3 = " 3-Tune Test Field Tower Frequency";
constexpr const char* Ground = " 2-Tune Test Field Ground Frequency";

TEST_F(FrequencyMenu, OnTheGroundHeIsOfferedGround) {
    for (std::uint8_t rules : {Vfr, Ifr}) {
        EXPECT_EQ(At(0, 0, rules), Ground);
        EXPECT_EQ(At(0, 19, rules), Ground);
        EXPECT_EQ(At(0, 20, rules), "");
        EXPECT_EQ(At(0, 21, rules), "");
    }
}

TEST_F(FrequencyMenu, AltitudeExactly300FeetAboveTheFieldGetsNeitherKindOfOffer) {
    for (std::uint8_t rules : {Vfr, Ifr}) {
        EXPECT_EQ(At(299, 5, rules), Ground);
        EXPECT_EQ(At(300, 5, rules), "");
    }
    EXPECT_EQ(At(301, 5, Vfr), Approach + std::string(Tower3));
    EXPECT_EQ(At(301, 5, Ifr), Approach);
}

TEST_F(FrequencyMenu, InTheAirHeIsOfferedArtccWithin200Miles) {
    for (std::uint8_t rules : {Vfr, Ifr}) {
        EXPECT_EQ(At(2000, 199, rules), Artcc);
        EXPECT_EQ(At(2000, 200, rules), "");
        EXPECT_EQ(At(2000, 201, rules), "");
    }
}

TEST_F(FrequencyMenu, APilotInTheAir250MilesAwaySeesOnlyClose) { EXPECT_EQ(At(301, 250), ""); }

TEST_F(FrequencyMenu, ApproachReplacesArtccWithin20Miles) {
    for (std::uint8_t rules : {Vfr, Ifr}) {
        EXPECT_EQ(At(2000, 19, rules), Approach);
        EXPECT_EQ(At(2000, 20, rules), Artcc);
        EXPECT_EQ(At(2000, 21, rules), Artcc);
    }
}

TEST_F(FrequencyMenu, ApproachReplacesArtccBelow10000FeetAboveTheField) {
    for (std::uint8_t rules : {Vfr, Ifr}) {
        EXPECT_EQ(At(9999, 16, rules), Approach);
        EXPECT_EQ(At(10000, 16, rules), Artcc);
        EXPECT_EQ(At(10001, 16, rules), Artcc);
    }
}

TEST_F(FrequencyMenu, WithoutAnApproachFrequencyArtccIsOfferedEverywhere) {
    field.S.ApproachFrequency.clear();
    EXPECT_EQ(At(301, 19, Ifr), Artcc);
    EXPECT_EQ(At(9999, 0, Ifr), Artcc);
}

TEST_F(FrequencyMenu, AVfrPilotIsOfferedTheTowerWithin15Miles) {
    EXPECT_EQ(At(2000, 14), Approach + std::string(Tower3));
    EXPECT_EQ(At(2000, 15), Approach);
    EXPECT_EQ(At(2000, 16), Approach);
    EXPECT_EQ(At(20000, 14), Artcc + std::string(Tower3));
}

TEST_F(FrequencyMenu, AnIfrPilotIsNeverOfferedTheTower) {
    EXPECT_EQ(At(2000, 0, Ifr), Approach);
    EXPECT_EQ(At(20000, 0, Ifr), Artcc);
}

TEST_F(FrequencyMenu, AVfrPilotTenMilesAwayAt2000FeetSeesApproachOrArtccAndTheTower) {
    EXPECT_EQ(At(2000, 10), " 2-Tune Approach Frequency 3-Tune Test Field Tower Frequency");
    field.S.ApproachFrequency.clear();
    EXPECT_EQ(At(2000, 10), " 2-Tune ARTCC Frequency 3-Tune Test Field Tower Frequency");
}

TEST_F(FrequencyMenu, ACallsignWith2HyphenKeepsTheTowerAt3) {
    pilot.Name = "N12-VFR";
    field.S.DistanceToAirport = 10;
    EXPECT_EQ(At(2000, 10), Approach + std::string(Tower3));
}

// Only where no other option stands at 2 could it be seen; airborne within 15 miles there always is one.
TEST_F(FrequencyMenu, TheTowerIsNeverOfferedAt2) {
    for (int feet : {301, 5000, 9999, 10000, 50000}) {
        for (int miles : {0, 10, 14}) EXPECT_THAT(At(feet, miles), testing::Not(testing::HasSubstr(Tower2)));
    }
}

TEST_F(FrequencyMenu, ExtremeAltitudesDoNotOverflow) {
    pilot.Altitude = std::numeric_limits<std::int32_t>::min();
    field.S.RunwayElevation = std::numeric_limits<std::int32_t>::max();
    field.S.DistanceToAirport = 0;
    RunFrequencyMenu(field.S, pilot);
    EXPECT_EQ(Options(), Ground);
    std::swap(pilot.Altitude, field.S.RunwayElevation);
    RunFrequencyMenu(field.S, pilot);
    EXPECT_EQ(Options(), Artcc + std::string(Tower3));
}

struct TuneRow {
    const char* Options;
    int Choice;
    std::string Station::*Frequency;
    const char* Text;
    bool VfrOnly;
};

const TuneRow TuneRows[] = {
    {Artcc, 2, &Station::ArtccFrequency,
     "N12345. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services", false},
    {Approach, 2, &Station::ApproachFrequency,
     "N12345. Choose one of the following options for the Approach frequency: 1-Close ATC Services", false},
    {Tower3, 3, &Station::TowerFrequency,
     "N12345. Choose one of the following options for the Tower frequency: 1-Close ATC Services", true},
    {Ground, 2, &Station::GroundFrequency,
     "N12345. Choose one of the following options for the Ground frequency: 1-Close ATC Services", false},
};

TEST_F(FrequencyMenu, EachOfferTunesItsFrequency) {
    for (const TuneRow& row : TuneRows) {
        for (std::uint8_t rules : {Vfr, Ifr}) {
            if (rules == Ifr && row.VfrOnly) continue;
            Picks(row.Options, row.Choice, rules);
            EXPECT_EQ(pilot.MenuText, row.Text);
            EXPECT_EQ(pilot.TunedFrequency, field.S.*row.Frequency) << row.Text;
            EXPECT_EQ(pilot.Choice, 0);
            EXPECT_EQ(pilot.FlightRules, rules);
        }
    }
}

TEST_F(FrequencyMenu, AnIfrPilotHasNoTowerOption) {
    Picks(Tower3, 3, Ifr);
    EXPECT_EQ(pilot.TunedFrequency, "");
    EXPECT_EQ(pilot.Choice, 3);
}

TEST_F(FrequencyMenu, CloseResetsThePilot) {
    for (std::uint8_t rules : {Vfr, Ifr}) {
        pilot.InService = UnderService;
        Picks(Artcc, 1, rules);
        EXPECT_EQ(pilot.InService, OpeningDialogue);
        EXPECT_EQ(pilot.MenuText, "");
        EXPECT_EQ(pilot.Choice, 0);
    }
}

TEST_F(FrequencyMenu, OtherFlightRulesRunNothing) {
    pilot.MenuText = ChooseOption;
    pilot.FlightRules = 2;
    pilot.Choice = 1;
    const PlayerRecord before = pilot;
    RunFrequencyMenu(field.S, pilot);
    EXPECT_EQ(pilot, before);
    pilot.Choice = 0;
    pilot.MenuText = "old";
    RunFrequencyMenu(field.S, pilot);
    EXPECT_EQ(pilot.MenuText, "old");
}

TEST_F(FrequencyMenu, APilotWhoTyped7StaysInTheOldMenuWhileHeClimbsUntilHeTypesANumberThatFits) {
    EXPECT_EQ(At(0, 0), Ground);
    pilot.Choice = 7;
    EXPECT_EQ(At(5000, 10), Ground);
    EXPECT_EQ(pilot.Choice, 7);
    pilot.Choice = 0;
    EXPECT_EQ(At(5000, 10), Approach + std::string(Tower3));
}

TEST_F(FrequencyMenu, TheAnswerGoesToTheAudienceOfTheNewFrequency) {
    field.OnFrequency("N2", field.S.GroundFrequency, "");
    field.OnFrequency("N3", "", "");
    field.Pilot("N12345").MenuText = std::string(ChooseOption) + Ground;
    field.Pilot("N12345").Choice = 2;
    field.Tick();
    EXPECT_THAT(field.Heard("N12345"), testing::Contains(TuneRows[3].Text));
    EXPECT_THAT(field.Heard("N2"), testing::Contains(TuneRows[3].Text));
    EXPECT_THAT(field.Heard("N3"), testing::Not(testing::Contains(TuneRows[3].Text)));
}

}  // namespace
}  // namespace corvenna
