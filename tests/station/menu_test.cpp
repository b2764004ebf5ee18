#include "station/menu.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "station/say.h"

namespace corvenna {
namespace {

class Menu : public testing::Test {
  protected:
    bool Picks(int choice, std::string_view label) {
        pilot.Choice = static_cast<std::uint8_t>(choice);
        return ChoiceIs(station, pilot, label);
    }

    Station station;
    PlayerRecord pilot;
};

TEST_F(Menu, AnOptionIsChosenByItsDigitAndItsLabel) {
    pilot.MenuText = "N1. Choose: 1-Close ATC Services 2-Tune ARTCC Frequency";
    EXPECT_TRUE(Picks(2, "-Tune ARTCC Frequency"));
    EXPECT_FALSE(Picks(1, "-Tune ARTCC Frequency"));
    EXPECT_TRUE(Picks(1, CloseLabel));
}

TEST_F(Menu, TheSameLabelCanStandAtAnotherDigit) {
    pilot.MenuText = "1-Close ATC Services 2-Tune Approach Frequency 3-Tune Test Field Tower Frequency";
    EXPECT_TRUE(Picks(3, "-Tune Test Field Tower Frequency"));
    pilot.MenuText = "1-Close ATC Services 2-Tune Test Field Tower Frequency";
    EXPECT_FALSE(Picks(3, "-Tune Test Field Tower Frequency"));
    EXPECT_TRUE(Picks(2, "-Tune Test Field Tower Frequency"));
}

TEST_F(Menu, LettersOfEitherCaseMatch) {
    pilot.MenuText = "2-TUNE artcc Frequency";
    EXPECT_TRUE(Picks(2, "-Tune ARTCC Frequency"));
}

TEST_F(Menu, ThePatternMayOccurAnywhere) {
    pilot.MenuText = "12-VFR";
    EXPECT_TRUE(Picks(2, "-VFR"));
    EXPECT_TRUE(Picks(12, "-VFR"));
    EXPECT_FALSE(Picks(1, "-VFR"));
}

TEST_F(Menu, Choice0IsNoChoice) {
    pilot.MenuText = "10-VFR";
    EXPECT_FALSE(Picks(0, "-VFR"));
    EXPECT_TRUE(Picks(10, "-VFR"));
}

TEST_F(Menu, ALabelsPlaceholdersAreFilledIn) {
    station.AirportName = "Test Field";
    station.TowerFrequency = "118.3";
    station.ActiveRunway = "16";
    pilot.Name = "N1";
    pilot.MenuText = "2-Tune test field Tower (118.3) for 16, n1";
    EXPECT_TRUE(Picks(2, "-Tune {airport} Tower ({tower}) for {runway}, {callsign}"));
}

TEST_F(Menu, BracesInANameAreNoPlaceholders) {
    station.AirportName = "{callsign} {} Field";
    pilot.MenuText = "2-Tune {callsign} {} Field Tower Frequency";
    EXPECT_TRUE(Picks(2, "-Tune {airport} Tower Frequency"));
    Say(station, pilot, "{airport}");
    EXPECT_EQ(pilot.MenuText, "{callsign} {} Field");
}

TEST_F(Menu, AnAnswerWritesTheTextAndClearsChoice) {
    pilot.Name = "N1";
    pilot.MenuText = "old";
    pilot.Choice = 4;
    Answer(station, pilot, "{callsign}, {number} nm", fmt::arg("number", 12));
    EXPECT_EQ(pilot.MenuText, "N1, 12 nm");
    EXPECT_EQ(pilot.Choice, 0);
}

TEST_F(Menu, SayingSomethingLeavesChoiceAlone) {
    pilot.Choice = 4;
    Say(station, pilot, "text");
    EXPECT_EQ(pilot.Choice, 4);
}

constexpr MenuRow Rows[] = {
    {"-Alpha", [](Station&, PlayerRecord& pilot) { pilot.Phase += "alpha "; }},
    {"-Bravo", [](Station& s, PlayerRecord& pilot) { Answer(s, pilot, "1-Charlie 0-Charlie"); }},
    {"-Charlie", [](Station&, PlayerRecord& pilot) { pilot.Phase += "charlie "; }},
};

TEST_F(Menu, RowsAreTriedFromTopToBottom) {
    pilot.MenuText = "1-Charlie 1-Alpha";
    pilot.Choice = 1;
    ActOnChoice(station, pilot, Rows);
    EXPECT_EQ(pilot.Phase, "alpha charlie ");
}

TEST_F(Menu, ActingClearsChoiceSoTheLaterRowsMiss) {
    pilot.MenuText = "1-Bravo";
    pilot.Choice = 1;
    ActOnChoice(station, pilot, Rows);
    EXPECT_EQ(pilot.MenuText, "1-Charlie 0-Charlie");
    EXPECT_EQ(pilot.Phase, "");
}

TEST_F(Menu, ADigitThatFitsNoRowStaysAndChangesNothing) {
    pilot.MenuText = "1-Alpha 2-Bravo";
    pilot.Choice = 7;
    const PlayerRecord before = pilot;
    ActOnChoice(station, pilot, Rows);
    EXPECT_EQ(pilot, before);
}

}  // namespace
}  // namespace corvenna
