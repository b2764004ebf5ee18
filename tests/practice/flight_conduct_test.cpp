#include "practice/flight_conduct.h"

#include <gmock/gmock.h>

#include <vector>

#include "support/test_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::Contains;

constexpr std::string_view HoldPosition =
    "N1, Hold position, caution other traffic. Choose one of the following options for the Ground frequency: "
    "1-Acknowledge 2-Close ATC Services";
constexpr std::string_view ContinueToGate =
    "N1, Continue taxi. Report us when you are parked in the gate or parking. Choose one of the following "
    "options for the Ground frequency: 1-Report Parking 2-Close ATC Services";
constexpr std::string_view Destination =
    "N1. What is your destination airport?: 1-Test Field 2-Another Airport 3-Close ATC Services";
constexpr std::string_view Traffic =
    "N1, Traffic is 3 miles, two o'clock, 2900 ft, type Piper Cub. Report them in sight. Choose one of the "
    "following options for the ARTCC frequency: 1-Report traffic in sight 2-Report traffic not in sight";

class FlightTest : public testing::Test {
  protected:
    FlightTest() : Chart(std::make_shared<AirportChart>(Field.S)) {}

    Flight Arriving(double feet, double milesOut = 20) const {
        FlightPlan plan;
        plan.Kind = FlightKind::InstrumentArrival;
        plan.Instrument = true;
        const Place place = Chart->FromRunway({-milesOut, 0});
        return Flight(Chart, plan, {place.Latitude, place.Longitude, feet, Chart->RunwayTrue(), 120});
    }

    Flight Departing() const {
        const Place place = Chart->FromRunway({0.5, 0.3});
        return Flight(Chart, {}, {place.Latitude, place.Longitude, Chart->ElevationFeet(), 0, 0});
    }

    TestField Field;
    std::shared_ptr<const AirportChart> Chart;
};

// ---- Taken for somebody else

TEST_F(FlightTest, NobodyIsHeldInTheAir) {
    Flight flight = Arriving(3000);
    flight.Hear(HoldPosition);
    EXPECT_FALSE(flight.Holding());
    EXPECT_TRUE(flight.StartsOver());
    for (auto time = 0min; time < 15min; time += 1min) flight.Move(1min);
    EXPECT_EQ(flight.Stage(), FlightStage::Inbound);
}

TEST_F(FlightTest, WhoIsSentToTheGateOnHisWayOutStartsOver) {
    Flight flight = Departing();
    flight.Hear(ContinueToGate);
    EXPECT_TRUE(flight.StartsOver());
    flight.LoseService();
    EXPECT_FALSE(flight.StartsOver());
}

// ---- Not heard

TEST_F(FlightTest, WhoHearsNothingNewOnTheWayHomeStartsOver) {
    Flight flight = Arriving(3000);
    flight.Hear(Destination);
    flight.Move(19min);
    flight.Hear(Destination);
    flight.Hear(Traffic);
    EXPECT_FALSE(flight.StartsOver());
    flight.Move(1min);
    EXPECT_TRUE(flight.StartsOver());
}

TEST_F(FlightTest, WhoIsOfferedNothingAtTheRampStartsOver) {
    Flight flight = Departing();
    flight.Move(1h);
    EXPECT_FALSE(flight.StartsOver());  // nobody has spoken to him
    flight.Hear("N1. Choose one of the following options for the Ground frequency: 1-Close ATC Services");
    flight.Move(11min);
    EXPECT_FALSE(flight.StartsOver());
    flight.Move(1min);
    EXPECT_TRUE(flight.StartsOver());
}

TEST_F(FlightTest, AnInstructionOnTheWayHomeIsNews) {
    Flight flight = Arriving(3000);
    flight.Hear(Destination);
    flight.Move(19min);
    flight.Hear("N1, Descent and Maintain 2000 ft.");
    flight.Move(1min);
    EXPECT_FALSE(flight.StartsOver());
}

TEST_F(FlightTest, WhoIsForgottenInTheQueueClosesOnceMoreToLeaveIt) {
    constexpr std::string_view Welcome =
        "N1. Welcome. Want to use our ATC services at Test Field?: 1-Use ATC services";
    Flight flight = Arriving(3000);
    flight.Hear("N1, You are cleared to land on runway 16. Number 1 for landing.");
    flight.Hear(Welcome);
    EXPECT_EQ(flight.WantedLabels(), (std::vector<std::string>{"Use ATC services", "Close ATC Services"}));
    flight.Picked("Use ATC services");
    flight.Picked("Close ATC Services");
    flight.Hear(Welcome);
    EXPECT_EQ(flight.Stage(), FlightStage::Inbound);
    EXPECT_THAT(flight.WantedLabels(), Contains("IFR"));
}

// ---- Room for others

TEST_F(FlightTest, WithoutVectorsTheHigherOneClimbsClearOfTheLower) {
    Flight flight = Arriving(3000);
    const double field = Chart->ElevationFeet();
    const std::vector<Sighting> lower = {{flight.Aircraft().Where(), field + 1500}};
    flight.Move(30s, lower);
    EXPECT_GT(flight.Aircraft().AltitudeFeet, 3300);
}

TEST_F(FlightTest, WithoutVectorsTheLowerOneStays) {
    Flight flight = Arriving(3000);
    const std::vector<Sighting> higher = {{flight.Aircraft().Where(), 4000}};
    flight.Move(30s, higher);
    EXPECT_LE(flight.Aircraft().AltitudeFeet, 3000);
}

TEST_F(FlightTest, OfTwoAtOneLevelTheNorthernOneClimbs) {
    Flight southern = Arriving(3000);
    Flight northern = Arriving(3000);
    const Place own = southern.Aircraft().Where();
    const std::vector<Sighting> north = {{{own.Latitude + 0.05, own.Longitude}, 3000}};
    const std::vector<Sighting> south = {{{own.Latitude - 0.05, own.Longitude}, 3000}};
    southern.Move(1s, north);
    northern.Move(1s, south);
    EXPECT_LE(southern.Aircraft().AltitudeFeet, 3000);
    EXPECT_GT(northern.Aircraft().AltitudeFeet, 3000);
}

// ---- Landing

TEST_F(FlightTest, TheLandingClearanceIsReadBackByWhoeverGoesOnToLand) {
    Flight flight = Arriving(3000, Flight::DecisionMiles + 2);
    flight.Hear("N1, Cleared for the ILS runway 16 approach.");
    const std::string_view clearance = "N1, You are cleared to land on runway 16. Number 1 for landing.";
    flight.Hear(clearance);
    EXPECT_EQ(flight.Stage(), FlightStage::OnApproach);
    EXPECT_FALSE(flight.ReadsBack(clearance));
    flight.Move(2min);
    EXPECT_TRUE(flight.ReadsBack(clearance));
}

TEST_F(FlightTest, HeLandsOnTheRunwayOrNotAtAll) {
    for (const double right : {0.0, 0.05}) {
        FlightPlan plan;
        plan.Kind = FlightKind::InstrumentArrival;
        plan.Instrument = true;
        const Place place = Chart->FromRunway({-0.2, right});
        Flight flight(
            Chart, plan,
            {place.Latitude, place.Longitude, Chart->ElevationFeet() + 100, Chart->RunwayTrue(), 70});
        flight.Hear("N1, Cleared for the ILS runway 16 approach.");
        flight.Hear("N1, You are cleared to land on runway 16. Number 1 for landing.");
        flight.Move(30s);
        EXPECT_EQ(flight.Stage(), right == 0 ? FlightStage::RollingOut : FlightStage::GoingAround);
    }
}

}  // namespace
}  // namespace corvenna
