#include "airspace/fixes.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

using ::testing::StartsWith;

constexpr const char* Menu =
    " Choose one of the following options for the Approach frequency: 1-Acknowledge 2-Close ATC Services";

/// The field's runway heads 160, so its final approach lies on 340, "east" on 250.
class Fixes : public OnApproach {
  protected:
    Fixes() { S.AirportLatitude = S.RunwayLatitude; }

    void Build() { BuildPatternFixes(S, N1(), "Approach"); }
    void Miss() { BuildMissedApproachFixes(S, N1(), "Approach"); }

    GeoPoint FromRunway(int bearing, int miles) {
        return ProjectNm(S.RunwayLatitude, S.RunwayLongitude, bearing, miles);
    }
    void ExpectAt(const GeoPoint& fix, int bearing, int miles) {
        const GeoPoint place = FromRunway(bearing, miles);
        EXPECT_EQ(fix.Latitude, place.Latitude) << fix.Name;
        EXPECT_EQ(fix.Longitude, place.Longitude) << fix.Name;
        EXPECT_EQ(fix.Kind, "Waypoint") << fix.Name;
    }

    void ExpectFirstFix(std::string_view quadrant, std::string_view name, int bearing, int miles) {
        EXPECT_EQ(N1().Quadrant, quadrant);
        EXPECT_EQ(N1().Target.Name, name);
        ExpectAt(N1().Target, bearing, miles);
    }
    void Arrive(int bearing, int miles = 12) {
        N1().Target = GeoPoint{};
        N1().Quadrant.clear();
        PlacedAt(bearing, miles, 3000);
        Reads("text");
        Build();
    }
    /// A mountain on a bearing from the runway.
    void Mountain(int bearing, int miles, std::int32_t feet) {
        const GeoPoint place = FromRunway(bearing, miles);
        AddMountain(place.Latitude, place.Longitude, feet);
    }
};

// ---- The eight quadrants

TEST_F(Fixes, FromTheNorthHeFliesALeftDownwind) {
    Arrive(160);
    ExpectFirstFix("north", "Left Downwind Leg - north", 25, 12);
    EXPECT_EQ(S.LeftDownwindFix.Name, "Left Downwind Leg - north");
    EXPECT_EQ(S.LeftBaseFix.Name, "Left Base Leg - north");
    EXPECT_EQ(S.FinalFix.Name, "Final Approach - north");
    ExpectAt(S.LeftBaseFix, 340, 6);
    ExpectAt(S.FinalFix, 340, 7);
}

TEST_F(Fixes, FromTheNorthwestHeFliesALeftDownwind) {
    Arrive(115);
    ExpectFirstFix("northwest", "Left Downwind Leg - northwest", 25, 12);
}

TEST_F(Fixes, FromTheWestHeFliesALeftDownwind) {
    Arrive(70);
    ExpectFirstFix("west", "Left Downwind Leg - west", 25, 12);
}

TEST_F(Fixes, FromTheNortheastHeFliesARightDownwind) {
    Arrive(205);
    ExpectFirstFix("northeast", "Right Downwind Leg - northeast", 295, 12);
    EXPECT_EQ(S.RightDownwindFix.Name, "Right Downwind Leg - northeast");
    EXPECT_EQ(S.RightBaseFix.Name, "Right Base Leg - northeast");
    EXPECT_EQ(S.FinalFix.Name, "Final Approach - northeast");
    ExpectAt(S.RightBaseFix, 340, 6);
    ExpectAt(S.FinalFix, 340, 7);
}

TEST_F(Fixes, FromTheEastHeFliesARightDownwind) {
    Arrive(250);
    ExpectFirstFix("east", "Right Downwind Leg - east", 295, 12);
}

TEST_F(Fixes, FromTheSouthwestHeFliesALeftBase) {
    Arrive(25);
    ExpectFirstFix("southwest", "Left Base Leg - southwest", 340, 6);
    EXPECT_EQ(S.FinalFix.Name, "Final Approach - southwest");
}

TEST_F(Fixes, FromTheSoutheastHeFliesARightBase) {
    Arrive(295);
    ExpectFirstFix("southeast", "Right Base Leg - southeast", 340, 6);
    EXPECT_EQ(S.FinalFix.Name, "Final Approach - southeast");
}

TEST_F(Fixes, FromTheSouthHeFliesToTheFinalFix) {
    Arrive(340);
    ExpectFirstFix("south", "Final Approach - south", 340, 7);
}

TEST_F(Fixes, OneWhoIsOnNoSideIsSentNowhere) {
    for (const char* quadrant : {"", "nowhere", "North"}) {
        N1().Quadrant = quadrant;
        const PlayerRecord before = N1();
        Build();
        EXPECT_EQ(N1(), before);
    }
}

/// The runway point bears 360 from itself, which is east of a runway that heads 270.
TEST_F(Fixes, OneExactlyOnTheRunwayPointIsSentToIt) {
    S.RunwayHeading = 270;
    ComputeSectorCentres(S);
    N1().Latitude = S.RunwayLatitude;
    N1().Longitude = S.RunwayLongitude;
    UpdateGeometry();
    EXPECT_EQ(N1().Quadrant, "east");
    Reads("");
    Build();
    EXPECT_EQ(N1().Target.Name, "Right Downwind Leg - east");
    EXPECT_EQ(N1().Target.Latitude, S.RunwayLatitude);
    EXPECT_EQ(N1().Target.Longitude, S.RunwayLongitude);
    EXPECT_EQ(S.RightBaseFix.Latitude, S.RunwayLatitude);
    EXPECT_EQ(N1().AssignedHeading, "360");
    EXPECT_THAT(N1().MenuText, StartsWith("N1, You are 0 miles, east, expect vectors"));
}

TEST_F(Fixes, TheBaseFixLiesAtHalfHisDistanceTiesToEven) {
    for (const auto& [miles, half] : {std::pair{5, 2}, {6, 3}, {7, 4}, {9, 4}, {0, 0}, {1, 0}}) {
        N1().Target = GeoPoint{};
        N1().Quadrant = "southeast";
        S.DistanceToRunway = static_cast<std::int16_t>(miles);
        Build();
        ExpectAt(N1().Target, 340, half);
    }
}

// ---- What he is told

TEST_F(Fixes, TheFirstTextTellsWhereHeIs) {
    PlacedAt(160, 12, 3000);
    N1().Heading = 340;
    Reads("");
    Types(2);
    Build();
    EXPECT_EQ(N1().MenuText,
              "N1, You are 12 miles, north, expect vectors for runway 16 approach. Turn right heading 3. "
              "Descent and Maintain 2400 ft." +
                  std::string(Menu));
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().AssignedHeading, "3");
    EXPECT_EQ(N1().AssignedAltitude, "2400");
}

TEST_F(Fixes, WithATextStandingHeHearsTheVectorAlone) {
    PlacedAt(160, 12, 1000);
    N1().Heading = 100;
    Reads("text");
    Build();
    EXPECT_EQ(N1().MenuText, "N1, Turn left heading 3. Climb and Maintain 2400 ft." + std::string(Menu));
}

TEST_F(Fixes, ExactlyAtHisAltitudeHeHearsTheHeadingAlone) {
    PlacedAt(160, 12, 2000);
    Reads("text");
    N1().Heading = 340;
    Build();
    EXPECT_EQ(N1().MenuText, "N1, Turn right heading 3." + std::string(Menu));
}

TEST_F(Fixes, AHeadingOf0IsAssignedAs0AndSpokenAs360) {
    // True 360 less a variation of 360 would be 0; a grid of 1 degree and a true bearing of 1 gives it.
    std::fill(S.MagVarGrid.begin(), S.MagVarGrid.end(), std::int16_t{183});  // 1 degree
    N1().Quadrant = "south";
    S.DistanceToRunway = 12;
    const GeoPoint fix = FromRunway(340, 7);
    const GeoPoint south = ProjectNmExact(fix.Latitude, fix.Longitude, 180.5, 5);
    N1().Latitude = south.Latitude;
    N1().Longitude = south.Longitude;
    N1().Heading = 90;
    Reads("text");
    Build();
    EXPECT_EQ(N1().AssignedHeading, "0");
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn left heading 360."));
}

TEST_F(Fixes, AChainThatIsFlownAlreadyIsLeftAlone) {
    Arrive(160);
    const PlayerRecord before = N1();
    Build();
    EXPECT_EQ(N1(), before);
    Reads("other text");
    Build();
    EXPECT_EQ(N1().MenuText, "other text");
}

TEST_F(Fixes, ANewQuadrantBringsANewChainAtOnceAndTheOldOneComesBackToo) {
    Arrive(160);
    PlacedAt(115, 12, 3000);
    Build();
    EXPECT_EQ(N1().Target.Name, "Left Downwind Leg - northwest");
    PlacedAt(70, 12, 3000);
    Build();
    EXPECT_EQ(N1().Target.Name, "Left Downwind Leg - west");
    PlacedAt(25, 12, 3000);
    Build();
    EXPECT_EQ(N1().Target.Name, "Left Base Leg - southwest");
    PlacedAt(340, 12, 3000);
    Build();
    EXPECT_EQ(N1().Target.Name, "Final Approach - south");
}

// ---- Altitudes

TEST_F(Fixes, WithoutMountainsEveryAltitudeIsTwoThousandAboveTheRunway) {
    for (int bearing = 0; bearing < 360; bearing += 15) {
        Arrive(bearing);
        EXPECT_EQ(N1().AssignedAltitude, "2400") << bearing;
    }
}

TEST_F(Fixes, TheAltitudeIsTwoThousandAboveTheHighestMountainOnTheWholeWay) {
    // On the way from the base fix to the downwind fix, which the pilot has still before him.
    Arrive(160);
    const double latitude = (S.LeftBaseFix.Latitude + S.LeftDownwindFix.Latitude) / 2;
    const double longitude = (S.LeftBaseFix.Longitude + S.LeftDownwindFix.Longitude) / 2;
    AddMountain(latitude, longitude, 5000);
    Arrive(160);
    EXPECT_EQ(S.LeftBaseFix.Altitude, 5000);
    EXPECT_EQ(N1().AssignedAltitude, "7000");
    EXPECT_EQ(N1().Target.Altitude, 0) << "the first fix bears no altitude of its own";
}

TEST_F(Fixes, AMountainBetweenFinalAndBaseCountsForAllWhoComeOverThem) {
    // The way from the final fix at 7 miles to the base fix at 15 leads outward.
    Mountain(340, 10, 4000);
    Arrive(295, 30);
    EXPECT_EQ(S.FinalFix.Altitude, 4000);
    EXPECT_EQ(N1().AssignedAltitude, "6000");
    Arrive(205, 30);
    EXPECT_EQ(S.FinalFix.Altitude, 4000);
    EXPECT_EQ(S.RightBaseFix.Altitude, 4000);
    EXPECT_EQ(N1().AssignedAltitude, "6000");
}

TEST_F(Fixes, InTheSouthTheFinalFixIsLookedAtOverAStaleRightBaseFix) {
    Mountain(340, 10, 4000);
    S.RightBaseFix = FromRunway(340, 15);  // as the last pilot left it
    Arrive(340, 8);
    EXPECT_EQ(N1().Target.Altitude, 4000);
    EXPECT_EQ(N1().AssignedAltitude, "2400") << "his own altitude goes from the runway's";

    S.RightBaseFix = FromRunway(160, 15);
    Arrive(340, 8);
    EXPECT_EQ(N1().Target.Altitude, 400);
}

TEST_F(Fixes, InTheSouthABlankRightBaseFixServesAsWell) {
    Arrive(340, 12);
    EXPECT_EQ(S.RightBaseFix, GeoPoint{});
    EXPECT_EQ(N1().Target.Altitude, 400);
}

TEST_F(Fixes, AltitudesNearTheFieldsLimitDoNotOverflow) {
    S.RunwayElevation = std::numeric_limits<std::int32_t>::max();
    N1().Quadrant = "south";
    Reads("text");
    Build();
    EXPECT_EQ(N1().AssignedAltitude, "2147485647");
}

// ---- The missed approach

TEST_F(Fixes, AMissedApproachGoesThirtyMilesToTheRight) {
    PlacedAt(115, 12, 3000);
    N1().Heading = 160;
    Reads("");
    Miss();
    ExpectFirstFix("northwest", "Right Downwind Leg - northwest", 295, 30);
    EXPECT_EQ(S.RightBaseFix.Name, "Right Base Leg - northwest");
    ExpectAt(S.RightBaseFix, 340, 15);
    EXPECT_EQ(S.FinalFix.Name, "Final Approach - northwest");
    ExpectAt(S.FinalFix, 340, 7);
    EXPECT_EQ(N1().MenuText,
              "N1, Turn right heading " + N1().AssignedHeading + ". Descent and Maintain 2400 ft." + Menu)
        << "no opening sentence, whatever stood";
}

TEST_F(Fixes, AMissedApproachHeedsTheMountains) {
    Mountain(340, 10, 4000);
    PlacedAt(160, 3, 3000);
    Miss();
    EXPECT_EQ(N1().AssignedAltitude, "6000");
}

TEST_F(Fixes, WithAFixAssignedThereIsNoNewMissedApproach) {
    PlacedAt(115, 12, 3000);
    N1().Target.Name = "anything";
    const PlayerRecord before = N1();
    Miss();
    EXPECT_EQ(N1(), before);
}

TEST_F(Fixes, OnNoSideAMissedApproachIsFlownAllTheSame) {
    N1().Quadrant.clear();
    Miss();
    EXPECT_EQ(N1().Target.Name, "Right Downwind Leg - ");
}

TEST_F(Fixes, TheWindowsLoadBlanksAllFive) {
    Arrive(160);
    Arrive(205);
    ClearTraffic(S);
    for (const GeoPoint& fix :
         {S.LeftDownwindFix, S.RightDownwindFix, S.LeftBaseFix, S.RightBaseFix, S.FinalFix}) {
        EXPECT_EQ(fix, GeoPoint{});
    }
}

}  // namespace
}  // namespace corvenna
