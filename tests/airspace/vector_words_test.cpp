#include "airspace/vector_words.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvenna {
namespace {

std::string Turn(std::int16_t heading, std::int16_t to) {
    PlayerRecord pilot;
    pilot.Heading = heading;
    std::string text = "N1,";
    AddTurnWords(text, pilot, to);
    return text;
}

std::string Altitude(std::int32_t altitude, std::string_view assigned) {
    PlayerRecord pilot;
    pilot.Altitude = altitude;
    pilot.AssignedAltitude = assigned;
    std::string text = "N1,";
    AddAltitudeWords(text, pilot);
    return text;
}

TEST(TurnWords, TheLeftHalfTurnBeginsAtTheReciprocalAndEndsBeforeTheHeading) {
    EXPECT_EQ(Turn(200, 19), "N1, Turn right heading 19.");
    EXPECT_EQ(Turn(200, 20), "N1, Turn left heading 20.");
    EXPECT_EQ(Turn(200, 199), "N1, Turn left heading 199.");
    EXPECT_EQ(Turn(200, 200), "N1, Turn right heading 200.");
    EXPECT_EQ(Turn(200, 201), "N1, Turn right heading 201.");
}

TEST(TurnWords, TheHalfTurnRunsThroughNorth) {
    EXPECT_EQ(Turn(90, 300), "N1, Turn left heading 300.");
    EXPECT_EQ(Turn(90, 360), "N1, Turn left heading 360.");
    EXPECT_EQ(Turn(90, 269), "N1, Turn right heading 269.");
}

TEST(TurnWords, AHeadingOf0IsSpokenAs360) { EXPECT_EQ(Turn(90, 0), "N1, Turn left heading 360."); }

TEST(TurnWords, APilotWhoseHeadingIs0TurnsLeftToEverything) {
    // The half turn that ends at 0 is never ended by the walk through it.
    EXPECT_EQ(Turn(0, 90), "N1, Turn left heading 90.");
    EXPECT_EQ(Turn(360, 90), "N1, Turn right heading 90.");
}

TEST(TurnWords, TheyLeaveThePilotsHeadingAlone) {
    PlayerRecord pilot;
    pilot.Heading = 400;
    std::string text;
    AddTurnWords(text, pilot, 39);
    EXPECT_EQ(text, " Turn left heading 39.");
    EXPECT_EQ(pilot.Heading, 400);
}

TEST(AltitudeWords, SayClimbDescendOrNothing) {
    EXPECT_EQ(Altitude(4999, "5000"), "N1, Climb and Maintain 5000 ft.");
    EXPECT_EQ(Altitude(5000, "5000"), "N1,");
    EXPECT_EQ(Altitude(5001, "5000"), "N1, Descent and Maintain 5000 ft.");
}

TEST(AltitudeWords, ReachBelowTheSea) {
    EXPECT_EQ(Altitude(0, "-1200"), "N1, Descent and Maintain -1200 ft.");
    EXPECT_EQ(Altitude(std::numeric_limits<std::int32_t>::min(), "2400"), "N1, Climb and Maintain 2400 ft.");
}

TEST(AltitudeWords, ATextThatIsNoNumberCountsAsNought) {
    EXPECT_EQ(Altitude(0, ""), "N1,");
    EXPECT_EQ(Altitude(10, "high"), "N1, Descent and Maintain 0 ft.");
    EXPECT_EQ(Altitude(10, "99999999999999999999"), "N1, Descent and Maintain 0 ft.");
    EXPECT_EQ(Altitude(10, "-9223372036854775808"), "N1, Descent and Maintain 0 ft.");
}

TEST(VectorMenu, NamesTheService) {
    std::string text = "N1,";
    AddVectorMenu(text, "ARTCC");
    EXPECT_EQ(text,
              "N1, Choose one of the following options for the ARTCC frequency: 1-Acknowledge 2-Close ATC "
              "Services");
}

TEST(AssignedValues, AreDecimalText) {
    PlayerRecord pilot;
    AssignHeading(pilot, 0);
    AssignAltitude(pilot, 2147485647);
    EXPECT_EQ(pilot.AssignedHeading, "0");
    EXPECT_EQ(pilot.AssignedAltitude, "2147485647");
}

}  // namespace
}  // namespace corvenna
