#include "airspace/approach_control.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class Airspace : public OnApproach {
  protected:
    Airspace() { Remember(); }

    /// A pilot of the Approach states who keeps his text, and so shows nothing but the airspace's limits.
    bool IsServedAt(int miles, std::int32_t feet) {
        N1().TunedFrequency = S.ApproachFrequency;
        N1().InService = UnderService;
        Rules(Ifr);
        Phase("Contact ARTCC (APPROACH)");
        At(miles, feet);
        Serve();
        return N1().TunedFrequency == S.ApproachFrequency;
    }

    void LeavesFrom(std::string_view phase) {
        Phase(phase);
        Reads("text");
        Types(3);
        At(20, 3000);
        Serve();
    }

    void ExpectPassedToArtcc(std::string_view next) {
        EXPECT_EQ(N1().MenuText, "");
        EXPECT_EQ(N1().Choice, 0);
        EXPECT_EQ(N1().Phase, next);
        EXPECT_EQ(N1().TunedFrequency, S.ArtccFrequency);
        EXPECT_EQ(N1().FlightRules, Ifr);
        EXPECT_TRUE(AllForgotten());
    }

    void ExpectUntouched(std::string_view phase) {
        EXPECT_EQ(N1().MenuText, "text");
        EXPECT_EQ(N1().Choice, 3);
        EXPECT_EQ(N1().Phase, phase);
        EXPECT_EQ(N1().TunedFrequency, S.ApproachFrequency);
        EXPECT_TRUE(NothingForgotten());
    }
};

// ---- The limits

TEST_F(Airspace, BeginsAboveThreeHundredFeet) {
    EXPECT_FALSE(IsServedAt(12, 299));
    EXPECT_FALSE(IsServedAt(12, 300));
    EXPECT_TRUE(IsServedAt(12, 301));
}

TEST_F(Airspace, EndsBelowTenThousandFeet) {
    EXPECT_TRUE(IsServedAt(12, 9999));
    EXPECT_FALSE(IsServedAt(12, 10000));
    EXPECT_FALSE(IsServedAt(12, 10001));
}

TEST_F(Airspace, EndsBeforeTwentyMiles) {
    EXPECT_TRUE(IsServedAt(19, 3000));
    EXPECT_FALSE(IsServedAt(20, 3000));
    EXPECT_FALSE(IsServedAt(21, 3000));
}

TEST_F(Airspace, AltitudesOutOfAllRangeAreOutside) {
    S.RunwayElevation = -500;
    N1().Altitude = std::numeric_limits<std::int32_t>::max();
    Rules(Vfr);
    Serve();
    EXPECT_EQ(N1().TunedFrequency, "");
    N1().TunedFrequency = S.ApproachFrequency;
    S.RunwayElevation = 500;
    N1().Altitude = std::numeric_limits<std::int32_t>::min();
    Serve();
    EXPECT_EQ(N1().TunedFrequency, "");
}

// ---- Leaving it

TEST_F(Airspace, AVfrPilotWhoLeavesGoesBackToTheFrequencyMenu) {
    Rules(Vfr);
    LeavesFrom("anything");
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().FlightRules, Vfr);
    EXPECT_EQ(N1().TunedFrequency, "");
    EXPECT_EQ(N1().Phase, "");
    EXPECT_EQ(N1().InService, UnderService);
    EXPECT_TRUE(AllForgotten());

    Field.Place("N1", 100, 25, 3000);
    Field.Tick();
    EXPECT_EQ(Field.LastHeard("N1"),
              "N1. Choose one of the following options: 1-Close ATC Services 2-Tune ARTCC Frequency");
}

TEST_F(Airspace, AnIfrPilotWithoutAPhaseIsReset) {
    LeavesFrom("");
    EXPECT_TRUE(IsReset());
}

TEST_F(Airspace, AnIfrPilotWithoutAPhaseIsResetWhenHeComesDown) {
    Phase("");
    At(3, 300);
    Serve();
    EXPECT_TRUE(IsReset());
}

TEST_F(Airspace, APhaseThatHoldsNoContactIsReset) {
    LeavesFrom("En Route");
    EXPECT_TRUE(IsReset());
}

TEST_F(Airspace, OnTheWayToTheTowerHeIsReset) {
    for (const std::string_view phase : {"Acknowledge contact tower", "Contact tower", "CONTACT TOWER"}) {
        N1().InService = UnderService;
        N1().TunedFrequency = S.ApproachFrequency;
        Rules(Ifr);
        LeavesFrom(phase);
        EXPECT_TRUE(IsReset()) << phase;
    }
}

TEST_F(Airspace, ADepartureGoesEnRoute) {
    LeavesFrom("Departure");
    ExpectPassedToArtcc("En Route");
}

TEST_F(Airspace, ADepartureToldToContactArtccGoesEnRoute) {
    LeavesFrom("Acknowledge contact ARTCC (EN ROUTE)");
    ExpectPassedToArtcc("En Route");
}

TEST_F(Airspace, ADepartureAboutToContactArtccGoesEnRoute) {
    LeavesFrom("Contact ARTCC (EN ROUTE)");
    ExpectPassedToArtcc("En Route");
}

TEST_F(Airspace, AnArrivalStaysAnArrival) {
    LeavesFrom("Approach");
    ExpectPassedToArtcc("Approach");
}

TEST_F(Airspace, AnArrivalToldToContactArtccStaysAnArrival) {
    LeavesFrom("Acknowledge contact ARTCC (APPROACH)");
    ExpectPassedToArtcc("Approach");
}

TEST_F(Airspace, AnArrivalAboutToContactArtccStaysAnArrival) {
    LeavesFrom("Contact ARTCC (APPROACH)");
    ExpectPassedToArtcc("Approach");
}

TEST_F(Airspace, AMissedApproachStaysOne) {
    LeavesFrom("Missed Approach");
    ExpectPassedToArtcc("Missed Approach");
}

TEST_F(Airspace, AMissedApproachToldToContactArtccStaysOne) {
    LeavesFrom("Acknowledge contact ARTCC (MISSED APPROACH)");
    ExpectPassedToArtcc("Missed Approach");
}

TEST_F(Airspace, AMissedApproachAboutToContactArtccStaysOne) {
    LeavesFrom("Contact ARTCC (MISSED APPROACH)");
    ExpectPassedToArtcc("Missed Approach");
}

TEST_F(Airspace, OneWhoHasJustTunedInKeepsEverything) {
    for (const std::string_view phase : {"Contact Departure", "Contact Approach"}) {
        LeavesFrom(phase);
        ExpectUntouched(phase);
    }
}

TEST_F(Airspace, OtherFlightRulesLeaveNothingBehindAndTakeNothing) {
    Rules(2);
    LeavesFrom("");
    ExpectUntouched("");
}

TEST_F(Airspace, OutsideNobodyIsCalledOutAndNobodySteered) {
    Field.Enters("N2");
    Field.Place("N1", 100, 25, 3000);
    Field.Place("N2", 100, 25, 3000);
    Phase("Contact Approach");
    N1().AdvisedTraffic.clear();
    N1().Target = {"Final Approach - south", "Waypoint", N1().Latitude, N1().Longitude, 0};
    UpdateGeometry();
    Reads("text");
    Serve();
    EXPECT_EQ(N1().MenuText, "text");
    EXPECT_EQ(N1().AdvisedTraffic, "");
    EXPECT_EQ(N1().Target.Name, "Final Approach - south");
}

// ---- Inside

TEST_F(Airspace, TrafficIsCalledOutByDepartureInDepartureAndByApproachElsewhere) {
    Field.Enters("N2");
    Field.Place("N1", 100, 5, 3000);
    Field.Place("N2", 100, 8, 3000);
    UpdateGeometry();
    Rules(Vfr);
    for (const std::string_view phase : {"Departure", "Approach", "Missed Approach", "Contact Departure"}) {
        N1().AdvisedTraffic.clear();
        Phase(phase);
        Serve();
        EXPECT_THAT(N1().MenuText, StartsWith("N1, Traffic is 3 miles"));
        EXPECT_THAT(N1().MenuText, HasSubstr(phase == "Departure" ? "for the Departure frequency:"
                                                                  : "for the Approach frequency:"));
    }
}

TEST_F(Airspace, VectorsComeFromApproachWhateverThePhase) {
    PlacedAt(340, 12, 3000);
    N1().Target = {"Final Approach - south", "Waypoint", S.RunwayLatitude, S.RunwayLongitude, 0};
    N1().AssignedHeading = "160";
    N1().AssignedAltitude = "2400";
    Phase("Departure");
    Rules(Vfr);
    Reads("");
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
    EXPECT_THAT(N1().MenuText, HasSubstr("for the Approach frequency: 1-Acknowledge"));
}

TEST_F(Airspace, OtherFlightRulesGetTrafficCallsAlone) {
    Field.Enters("N2");
    Field.Place("N1", 100, 5, 3000);
    Field.Place("N2", 100, 8, 3000);
    UpdateGeometry();
    Rules(2);
    N1().AdvisedTraffic.clear();
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Traffic is 3 miles"));
    const PlayerRecord before = N1();
    Serve();
    EXPECT_EQ(N1(), before);
}

TEST_F(Airspace, APhaseNobodyKnowsIsLeftAlone) {
    Phase("Landing");
    Reads("N1. 1-Close ATC Services");
    Types(1);
    Serve();
    EXPECT_FALSE(IsReset());
    EXPECT_EQ(N1().Choice, 1);
}

TEST_F(Airspace, AnAirportWithoutAnyDataCrashesNobody) {
    TestField empty;
    empty.S = Station{};
    PlayerRecord pilot = N1();
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        for (const std::string_view phase :
             {"", "Contact Departure", "Departure", "Contact Approach", "Approach", "Missed Approach",
              "Acknowledge contact tower", "Contact tower"}) {
            for (std::uint8_t choice = 0; choice < 3; ++choice) {
                pilot.InService = UnderService;
                pilot.FlightRules = rules;
                pilot.Phase = phase;
                pilot.Choice = choice;
                pilot.Altitude = 3000;
                pilot.Latitude = pilot.Longitude = 0;
                EXPECT_NO_THROW(UpdatePilotGeometry(empty.S, pilot));
                EXPECT_NO_THROW(ApproachControl(empty.S, pilot));
                EXPECT_NO_THROW(ArtccControl(empty.S, pilot));
            }
        }
    }
}

}  // namespace
}  // namespace corvenna
