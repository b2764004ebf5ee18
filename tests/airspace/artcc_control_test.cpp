#include "airspace/artcc_control.h"

#include "airspace/radar_scene.h"

namespace corvenna {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// ---- The outer limit

TEST_F(OnArtcc, ServesUpToTwoHundredMilesAndThenResets) {
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        for (const auto& [miles, reset] : {std::pair{199, false}, {200, true}, {201, true}}) {
            N1().InService = UnderService;
            N1().TunedFrequency = S.ArtccFrequency;
            Rules(rules);
            Phase("Acknowledge contact tower");
            At(miles, 3000);
            Serve();
            EXPECT_EQ(IsReset(), reset) << miles;
        }
    }
}

TEST_F(OnArtcc, OtherFlightRulesAreNotReset) {
    Rules(2);
    At(200, 3000);
    Serve();
    EXPECT_FALSE(IsReset());
    EXPECT_EQ(N1().FlightRules, 2);
}

TEST_F(OnArtcc, HasNoLimitOfAltitude) {
    for (const std::int32_t feet : {-1000, 0, 300, 10000, 60000}) {
        At(150, feet);
        Phase("En Route");
        Reads("");
        Serve();
        EXPECT_EQ(N1().MenuText,
                  "N1, Maintain cruise altitude and assume own navigation. Choose one of the following "
                  "options for the ARTCC frequency: 1-Acknowledge 2-Close ATC Services")
            << feet;
    }
}

TEST_F(OnArtcc, CallsOutTrafficInItsOwnName) {
    Field.Enters("N2");
    Field.Place("N1", 100, 50, 20000);
    Field.Place("N2", 100, 53, 20000);
    N1().AdvisedTraffic.clear();
    UpdateGeometry();
    Phase("En Route");
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Traffic is 3 miles"));
    EXPECT_THAT(N1().MenuText, HasSubstr("for the ARTCC frequency: 1-Report traffic in sight"));
}

TEST_F(OnArtcc, SteersInItsOwnName) {
    PlacedAt(340, 50, 3000);
    N1().Target = {"Final Approach - south", "Waypoint", S.RunwayLatitude, S.RunwayLongitude, 0};
    N1().AssignedHeading = "160";
    N1().AssignedAltitude = "2400";
    Phase("En Route");
    Reads("text");
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
    EXPECT_THAT(N1().MenuText, HasSubstr("for the ARTCC frequency: 1-Acknowledge"));
}

}  // namespace corvenna
