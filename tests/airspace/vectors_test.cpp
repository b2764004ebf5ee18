#include "airspace/vectors.h"

#include <fmt/format.h>

#include "airspace/fixes.h"
#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

constexpr const char* Menu =
    " Choose one of the following options for the Approach frequency: 1-Acknowledge 2-Close ATC Services";

/// A pilot who was sent to a fix at the equator, on an assigned heading of 90: the reciprocal is 270.
class Steering : public OnApproach {
  protected:
    Steering() {
        Fix("Final Approach - south");
        N1().AssignedHeading = "90";
        N1().AssignedAltitude = "2400";
        N1().Quadrant = "south";
        N1().Heading = 90;
        N1().Altitude = 3000;
        Reads(Instruction);
        Types(4);
    }

    static constexpr const char* Instruction = "N1, Turn left HEADING 90. Descent and Maintain 2400 ft.";

    void Fix(std::string_view name) { N1().Target = {std::string(name), "Waypoint", 0, 0, 77}; }

    /// Seen from the fix. BearingTo cuts to the whole degree above, so half a degree less reads as bearing.
    void SeenFromFix(int bearing, double miles) {
        const GeoPoint place = ProjectNmExact(0, 0, bearing - 0.5, miles);
        N1().Latitude = place.Latitude;
        N1().Longitude = place.Longitude;
    }

    void Steer() { SteerToTarget(S, N1(), "Approach"); }

    bool IsPassed() { return N1().Target == GeoPoint{}; }
    bool IsSilent() { return N1().MenuText == Instruction && N1().Choice == 4; }
};

// ---- Passing the fix

TEST_F(Steering, WithoutAFixNothingHappens) {
    N1().Target.Name.clear();
    const PlayerRecord before = N1();
    Steer();
    EXPECT_EQ(N1(), before);
}

TEST_F(Steering, AFixLessThanAMileAwayIsPassedWithoutAWord) {
    for (const auto& [miles, passed] : {std::pair{0.0, true}, {0.5, true}, {0.51, false}, {1.0, false}}) {
        Fix("Final Approach - south");
        SeenFromFix(270, miles);
        Steer();
        EXPECT_EQ(IsPassed(), passed) << miles;
        EXPECT_TRUE(IsSilent()) << miles;
    }
}

TEST_F(Steering, AFixIsPassedOnceThePilotIsAbeam) {
    for (const auto& [bearing, passed] : {std::pair{179, true},
                                          {180, false},
                                          {181, false},
                                          {359, false},
                                          {360, true},
                                          {1, true},
                                          {90, true}}) {
        Fix("Final Approach - south");
        Reads(Instruction);
        SeenFromFix(bearing, 5);
        Steer();
        EXPECT_EQ(IsPassed(), passed) << bearing;
    }
}

TEST_F(Steering, AMissedApproachEndsAtItsFix) {
    SeenFromFix(270, 0);
    Phase("Missed Approach");
    Steer();
    EXPECT_EQ(N1().Phase, "Approach");
    Fix("Final Approach - south");
    Phase("Descent");
    Steer();
    EXPECT_EQ(N1().Phase, "Descent");
}

TEST_F(Steering, PassingKeepsTheAssignedValues) {
    SeenFromFix(270, 0);
    Steer();
    EXPECT_EQ(N1().AssignedHeading, "90");
    EXPECT_EQ(N1().AssignedAltitude, "2400");
}

// ---- Course

TEST_F(Steering, WithinTenDegreesTheInstructionStands) {
    for (const int bearing : {260, 270, 279}) {
        SeenFromFix(bearing, 9);
        Steer();
        EXPECT_TRUE(IsSilent()) << bearing;
    }
}

TEST_F(Steering, BeyondTenDegreesHeIsSentBackToTheCourse) {
    for (const int bearing : {259, 280}) {
        Reads(Instruction);
        Types(4);
        SeenFromFix(bearing, 9);
        Steer();
        // Two thirds of 9 miles back on the bearing of 270.
        const GeoPoint point = ProjectNm(0, 0, 270, 6);
        const auto heading = BearingTo(S, N1().Latitude, N1().Longitude, point.Latitude, point.Longitude);
        EXPECT_EQ(N1().MenuText, fmt::format("N1, Turn {} heading {}. Descent and Maintain 2400 ft.{}",
                                             heading < 90 ? "left" : "right", heading, Menu));
        EXPECT_EQ(N1().Choice, 0);
        EXPECT_EQ(N1().AssignedHeading, "90") << "the correction is no assignment";
    }
}

TEST_F(Steering, ThePointOnTheCourseIsRoundedToWholeMilesTiesToEven) {
    for (const auto& [miles, back] : {std::pair{1, 1}, {2, 1}, {4, 3}, {10, 7}, {11, 7}}) {
        Reads(Instruction);
        SeenFromFix(300, miles);
        Steer();
        const GeoPoint point = ProjectNm(0, 0, 270, back);
        const auto heading = BearingTo(S, N1().Latitude, N1().Longitude, point.Latitude, point.Longitude);
        EXPECT_THAT(N1().MenuText, ::testing::HasSubstr(fmt::format("heading {}.", heading))) << miles;
    }
}

TEST_F(Steering, AnExcursionIsCorrectedOnceAndEndsWithADirectHeading) {
    SeenFromFix(290, 9);
    Steer();
    const std::string correction = N1().MenuText;
    EXPECT_NE(correction, Instruction);
    SeenFromFix(295, 9);
    Steer();
    EXPECT_EQ(N1().MenuText, correction);
    SeenFromFix(275, 9);
    Steer();
    EXPECT_EQ(N1().AssignedHeading, "95");
    EXPECT_EQ(N1().MenuText, "N1, Turn right heading 95. Descent and Maintain 2400 ft." + std::string(Menu));
    Types(4);
    Steer();
    EXPECT_EQ(N1().Choice, 4) << "nothing more to say";
}

TEST_F(Steering, ExactlyAtHisAltitudeACorrectionHasNoAltitudeWords) {
    N1().Altitude = 2400;
    SeenFromFix(275, 9);
    Reads("text");
    Steer();
    EXPECT_EQ(N1().MenuText, "N1, Turn right heading 95." + std::string(Menu));
}

TEST_F(Steering, ATrafficTextHidesTheInstructionFromOneOffCourse) {
    SeenFromFix(290, 9);
    Reads("traffic");
    Steer();
    EXPECT_EQ(N1().MenuText, "traffic");
}

TEST_F(Steering, ATrafficTextGivesWayToADirectHeadingOnCourse) {
    SeenFromFix(275, 9);
    Reads("traffic");
    Steer();
    EXPECT_EQ(N1().MenuText, "N1, Turn right heading 95. Descent and Maintain 2400 ft." + std::string(Menu));
}

TEST_F(Steering, TheStandingInstructionIsFoundInUpperOrLowerCase) {
    SeenFromFix(275, 9);
    Reads("hEaDiNg 90.");
    Steer();
    EXPECT_EQ(N1().MenuText, "hEaDiNg 90.");
    Reads("heading 90");
    Steer();
    EXPECT_NE(N1().MenuText, "heading 90") << "the full stop belongs to it";
}

TEST_F(Steering, ADirectHeadingOf0IsAssignedAs0AndSpokenAs360) {
    std::fill(S.MagVarGrid.begin(), S.MagVarGrid.end(), std::int16_t{183});  // 1 degree
    N1().AssignedHeading = "359";
    const GeoPoint place = ProjectNmExact(0, 0, 180.5, 9);
    N1().Latitude = place.Latitude;
    N1().Longitude = place.Longitude;
    Reads("text");
    Steer();
    EXPECT_EQ(N1().AssignedHeading, "0");
    EXPECT_THAT(N1().MenuText, ::testing::StartsWith("N1, Turn left heading 360."));
}

TEST_F(Steering, APilotsHeadingOf0ReadsAs360InTheTurn) {
    N1().Heading = 0;
    SeenFromFix(275, 9);
    Reads("text");
    Steer();
    EXPECT_THAT(N1().MenuText, ::testing::StartsWith("N1, Turn left heading 95."));
    EXPECT_EQ(N1().Heading, 0);
}

// ---- Altitude

/// A mountain of this height under the pilot, who is on course and hears nothing else.
class Renewal : public OnApproach {
  protected:
    Renewal() { S.AirportLatitude = S.RunwayLatitude; }

    void FlyTo(std::string_view name, int fixBearing, int fixMiles, int bearing, int miles) {
        PlacedAt(bearing, miles, 3000);
        const GeoPoint fix = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, fixBearing, fixMiles);
        N1().Target = {std::string(name), "Waypoint", fix.Latitude, fix.Longitude, 0};
        N1().AssignedHeading =
            std::to_string(BearingTo(S, N1().Latitude, N1().Longitude, fix.Latitude, fix.Longitude));
        N1().AssignedAltitude = "2400";
        text_ = "N1, Turn left heading " + N1().AssignedHeading + ".";
        Reads(text_);
        Types(4);
    }
    void Mountain(int bearing, int miles, std::int32_t feet) {
        const GeoPoint place = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, bearing, miles);
        AddMountain(place.Latitude, place.Longitude, feet);
    }
    void MountainBetween(const GeoPoint& a, const GeoPoint& b, std::int32_t feet) {
        S.MountainCount = 0;
        AddMountain((a.Latitude + b.Latitude) / 2, (a.Longitude + b.Longitude) / 2, feet);
    }
    GeoPoint FromRunway(int bearing, int miles) {
        return ProjectNm(S.RunwayLatitude, S.RunwayLongitude, bearing, miles);
    }
    void Steer() { SteerToTarget(S, N1(), "Approach"); }
    bool IsSilent() { return N1().MenuText == text_ && N1().Choice == 4; }
    void ExpectClimb(std::string_view feet) {
        EXPECT_EQ(N1().AssignedAltitude, feet);
        EXPECT_EQ(N1().MenuText, fmt::format("N1, Climb and Maintain {} ft.{}", feet, Menu));
        EXPECT_EQ(N1().Choice, 0);
    }

    std::string text_;
};

TEST_F(Renewal, AChangeOfUpToTwoThousandFeetIsNotPassedOn) {
    for (const auto& [feet, told] : {std::pair{2399, false}, {2400, false}, {2401, true}}) {
        FlyTo("Final Approach - south", 340, 7, 340, 15);
        MountainBetween(FromRunway(340, 7), FromRunway(340, 15), feet);
        Steer();
        EXPECT_EQ(!IsSilent(), told) << feet;
        EXPECT_EQ(N1().AssignedAltitude, told ? "4401" : "2400") << feet;
    }
}

TEST_F(Renewal, ADropOfMoreThanTwoThousandFeetIsPassedOn) {
    FlyTo("Final Approach - south", 340, 7, 340, 15);
    N1().AssignedAltitude = "4400";
    Steer();
    EXPECT_TRUE(IsSilent());
    N1().AssignedAltitude = "4401";
    Steer();
    EXPECT_EQ(N1().AssignedAltitude, "2400");
    EXPECT_EQ(N1().MenuText, "N1, Descent and Maintain 2400 ft." + std::string(Menu));
}

TEST_F(Renewal, ANewAltitudeThatHeHasAlreadyIsNotSpoken) {
    FlyTo("Final Approach - south", 340, 7, 340, 15);
    N1().AssignedAltitude = "9000";
    N1().Altitude = 2400;
    Steer();
    EXPECT_EQ(N1().AssignedAltitude, "2400");
    EXPECT_TRUE(IsSilent());
}

TEST_F(Renewal, OnFinalTheWayToThePilotCounts) {
    FlyTo("Final Approach - south", 340, 7, 340, 15);
    Mountain(340, 10, 5000);
    Steer();
    ExpectClimb("7000");
    EXPECT_EQ(S.FinalFix.Name, "Final Approach - south");
}

TEST_F(Renewal, OnTheLeftBaseTheWaysToTheFinalFixAndToThePilotCount) {
    FlyTo("Left Base Leg - southwest", 340, 12, 25, 24);
    MountainBetween(FromRunway(340, 7), FromRunway(340, 12), 5000);
    Steer();
    ExpectClimb("7000");
    EXPECT_EQ(S.LeftBaseFix.Name, "Left Base Leg - southwest");
    EXPECT_EQ(S.FinalFix.Name, "Final Approach");
    EXPECT_EQ(S.FinalFix.Kind, "Waypoint");
    EXPECT_EQ(S.FinalFix.Altitude, 5000);

    FlyTo("Left Base Leg - southwest", 340, 12, 25, 24);
    MountainBetween(FromRunway(340, 12), FromRunway(25, 24), 5500);
    Steer();
    ExpectClimb("7500");
}

TEST_F(Renewal, OnTheRightBaseTheWaysToTheFinalFixAndToThePilotCount) {
    FlyTo("Right Base Leg - southeast", 340, 12, 295, 24);
    MountainBetween(FromRunway(340, 7), FromRunway(340, 12), 5000);
    Steer();
    ExpectClimb("7000");
    EXPECT_EQ(S.RightBaseFix.Name, "Right Base Leg - southeast");
    EXPECT_EQ(S.FinalFix.Name, "Final Approach");

    FlyTo("Right Base Leg - southeast", 340, 12, 295, 24);
    MountainBetween(FromRunway(340, 12), FromRunway(295, 24), 5500);
    Steer();
    ExpectClimb("7500");
}

TEST_F(Renewal, OnTheLeftDownwindAllThreeWaysCount) {
    const GeoPoint downwind = FromRunway(25, 24), base = FromRunway(340, 12), final = FromRunway(340, 7),
                   pilot = FromRunway(70, 24);
    for (const auto& [from, to] : {std::pair{final, base}, {base, downwind}, {downwind, pilot}}) {
        FlyTo("Left Downwind Leg - west", 25, 24, 70, 24);
        MountainBetween(from, to, 5000);
        Steer();
        ExpectClimb("7000");
    }
    EXPECT_EQ(S.LeftDownwindFix.Name, "Left Downwind Leg - west");
    EXPECT_EQ(S.LeftBaseFix.Name, "Left Base Leg");
    EXPECT_EQ(S.LeftBaseFix.Kind, "Waypoint");
    EXPECT_EQ(S.LeftBaseFix.Latitude, base.Latitude) << "half the fix's distance, not the pilot's";
    EXPECT_EQ(S.FinalFix.Latitude, final.Latitude);
}

TEST_F(Renewal, OnTheRightDownwindAllThreeWaysCount) {
    const GeoPoint downwind = FromRunway(295, 24), base = FromRunway(340, 12), final = FromRunway(340, 7),
                   pilot = FromRunway(250, 24);
    for (const auto& [from, to] : {std::pair{final, base}, {base, downwind}, {downwind, pilot}}) {
        FlyTo("Right Downwind Leg - east", 295, 24, 250, 24);
        MountainBetween(from, to, 5000);
        Steer();
        ExpectClimb("7000");
    }
    EXPECT_EQ(S.RightDownwindFix.Name, "Right Downwind Leg - east");
    EXPECT_EQ(S.RightBaseFix.Name, "Right Base Leg");
    EXPECT_EQ(S.RightBaseFix.Latitude, base.Latitude);
    EXPECT_EQ(S.FinalFix.Latitude, final.Latitude);
}

TEST_F(Renewal, AChainBuiltInAnotherQuadrantIsNotRenewed) {
    FlyTo("Final Approach - south", 340, 7, 340, 15);
    Mountain(340, 10, 5000);
    N1().Quadrant = "southeast";
    Steer();
    EXPECT_TRUE(IsSilent());
    EXPECT_EQ(N1().AssignedAltitude, "2400");
}

TEST_F(Renewal, AnUnknownFixIsNotRenewed) {
    FlyTo("Somewhere - south", 340, 7, 340, 15);
    Mountain(340, 10, 5000);
    Steer();
    EXPECT_TRUE(IsSilent());
}

TEST_F(Renewal, EveryOccurrenceOfTheQuadrantIsTakenOutOfTheName) {
    FlyTo("Final - south Approach - south", 340, 7, 340, 15);
    Mountain(340, 10, 5000);
    Steer();
    ExpectClimb("7000");
}

TEST_F(Renewal, ARequirementOfNoughtOrLessIsNotPassedOn) {
    FlyTo("Final Approach - south", 340, 7, 340, 15);
    S.RunwayElevation = -2000;
    N1().AssignedAltitude = "9000";
    Steer();
    EXPECT_TRUE(IsSilent());
    S.RunwayElevation = -1999;
    Steer();
    EXPECT_EQ(N1().AssignedAltitude, "1");
}

TEST_F(Renewal, ACorrectionRepeatsAnAltitudeThatHasHardlyChanged) {
    FlyTo("Final Approach - south", 340, 7, 340, 15);
    MountainBetween(FromRunway(340, 7), FromRunway(340, 15), 2400);
    Reads("text");
    Steer();
    EXPECT_EQ(N1().MenuText, "N1, Turn left heading 160. Descent and Maintain 2400 ft." + std::string(Menu));
}

TEST_F(Renewal, AJumpingPilotIsNoError) {
    for (const auto& [latitude, longitude] :
         {std::pair{90.0, 0.0}, {-90.0, 180.0}, {0.0, -180.0}, {-47.01, 58.0}, {47.01, -122.0}}) {
        FlyTo("Left Downwind Leg - west", 25, 24, 70, 24);
        N1().Latitude = latitude;
        N1().Longitude = longitude;
        N1().Altitude = std::numeric_limits<std::int32_t>::min();
        UpdateGeometry();
        EXPECT_NO_THROW(Steer());
        EXPECT_NO_THROW(Serve());
    }
}

}  // namespace
}  // namespace corvenna
