#include "practice/flight_phrases.h"

#include <gmock/gmock.h>

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view Menu =
    " Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";

std::vector<Instruction> Read(std::string_view text) {
    return ReadInstructions(std::string(text).append(Menu));
}

Instruction Told(Order what, double number = 0) { return {what, "", number, {}}; }

TEST(FlightPhrases, ATaxiClearanceToTheRunwayNamesItsTaxiways) {
    const auto told = Read(
        "N1, Taxi to and hold short runway 16L using taxiway A B RUNWAY 16L . Contact tower on 119.9 when "
        "ready.");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].What, Order::TaxiToRunway);
    EXPECT_THAT(told[0].Taxiways, ElementsAre("A", "B", "RUNWAY 16L"));
}

TEST(FlightPhrases, ATaxiClearanceWithoutARouteNamesNone) {
    const auto told = Read("N1, Taxi to and hold short runway 16L. Contact tower on 119.9 when ready.");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].What, Order::TaxiToRunway);
    EXPECT_THAT(told[0].Taxiways, IsEmpty());
}

TEST(FlightPhrases, ARouteWithoutANamedTaxiwayIsEmpty) {
    const auto told = Read("N1, Taxi to GATE B 7 using taxiway .");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].Name, "GATE B 7");
    EXPECT_THAT(told[0].Taxiways, IsEmpty());
}

TEST(FlightPhrases, ATaxiClearanceToASpotNamesIt) {
    EXPECT_THAT(Read("N1, Taxi to N PARKING 3 using taxiway RUNWAY 16L A ."),
                ElementsAre(Instruction{Order::TaxiToSpot, "N PARKING 3", 0, {"RUNWAY 16L", "A"}}));
    EXPECT_THAT(Read("N1, Taxi to GATE B 7."),
                ElementsAre(Instruction{Order::TaxiToSpot, "GATE B 7", 0, {}}));
}

TEST(FlightPhrases, HoldsAndReleasesOnTheGround) {
    EXPECT_THAT(Read("N1, Hold position, caution other traffic."), ElementsAre(Told(Order::HoldPosition)));
    EXPECT_THAT(Read("N1, Continue taxi."), ElementsAre(Told(Order::ContinueTaxi)));
    EXPECT_THAT(Read("N1, Continue taxi. Report us when you are parked in the gate or parking."),
                ElementsAre(Told(Order::ContinueTaxi)));
}

TEST(FlightPhrases, TheTowersWordsForADeparture) {
    EXPECT_THAT(Read("N1, Test Field Tower, Hold short on runway 16."), ElementsAre(Told(Order::HoldShort)));
    EXPECT_THAT(Read("N1, Test Field Tower, Cleared for takeoff on runway 16."),
                ElementsAre(Told(Order::TakeOff)));
}

TEST(FlightPhrases, TheTowersWordsForAnArrival) {
    const std::pair<std::string_view, Order> words[] = {
        {"N1, Test Field Tower, Enter left downwind runway 16.", Order::LeftDownwind},
        {"N1, Test Field Tower, Enter right downwind runway 16.", Order::RightDownwind},
        {"N1, Test Field Tower, Fly on base to runway 16.", Order::Base},
        {"N1, Test Field Tower, Fly straight in runway 16.", Order::StraightIn},
        {"N1, You are cleared to land on runway 16. Number 2 for landing.", Order::Land},
        {"N1, Go around.", Order::GoAround},
        {"N1, Go around. Contact Approach on 119.2. Good day.", Order::GoAround},
        {"N1, Exit runway when able.", Order::ExitRunway},
    };
    for (const auto& [text, order] : words) EXPECT_THAT(Read(text), ElementsAre(Told(order))) << text;
}

TEST(FlightPhrases, AVectorHasAHeadingAndAnAltitude) {
    EXPECT_THAT(Read("N1, You are 42 miles, northeast, expect vectors for runway 16L approach. Turn right "
                     "heading 339. Descent and Maintain 2433 ft."),
                ElementsAre(Told(Order::TurnRight, 339), Told(Order::Descend, 2433)));
    EXPECT_THAT(Read("N1, Turn left heading 5. Climb and Maintain 12000 ft."),
                ElementsAre(Told(Order::TurnLeft, 5), Told(Order::Climb, 12000)));
}

TEST(FlightPhrases, ClearedForTheApproachWithOrWithoutAnIls) {
    EXPECT_THAT(Read("N1, Cleared for the ILS runway 16L approach. Maintain heading 161 and 2433 ft until "
                     "established localizer. Contact Tower on 119.9. Good day."),
                ElementsAre(Told(Order::FlyApproach)));
    EXPECT_THAT(Read("N1, Cleared for the runway 8 approach. Maintain heading 80 and 9000 ft until you have "
                     "runway in sight. Contact Tower on 120.1. Good day."),
                ElementsAre(Told(Order::FlyApproach)));
}

TEST(FlightPhrases, OwnNavigation) {
    EXPECT_THAT(Read("N1, Climb and maintain cruise altitude and assume own navigation."),
                ElementsAre(Told(Order::OwnNavigation)));
    EXPECT_THAT(Read("N1, Maintain cruise altitude and assume own navigation."),
                ElementsAre(Told(Order::OwnNavigation)));
}

TEST(FlightPhrases, AnApproachFrequencyMayBeMissing) {
    EXPECT_THAT(Read("N1, Contact approach frequency on 119.2."),
                ElementsAre(Instruction{Order::ContactApproach, "119.2", 0, {}}));
    EXPECT_THAT(Read("N1, Contact approach frequency on ."),
                ElementsAre(Instruction{Order::ContactApproach, "", 0, {}}));
}

TEST(FlightPhrases, OptionsAreNoInstructions) {
    EXPECT_THAT(ReadInstructions("N1. Choose one of the following options for the Tower frequency: 1-Taxi to "
                                 "the moon 2-Continue taxi"),
                IsEmpty());
    EXPECT_THAT(ReadInstructions(""), IsEmpty());
    EXPECT_THAT(ReadInstructions("Taxi to"), IsEmpty());
}

TEST(FlightPhrases, AHeadingThatIsNoNumberIsZero) {
    EXPECT_THAT(Read("N1, Turn left heading home."), ElementsAre(Told(Order::TurnLeft, 0)));
    EXPECT_THAT(ReadInstructions("N1, Turn left heading "), ElementsAre(Told(Order::TurnLeft, 0)));
}

}  // namespace
}  // namespace corvenna
