#include "airspace/approach_service.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* ClearedIls =
    "N1, Cleared for the ILS runway 16 approach. Maintain heading 123 and 4567 ft until established "
    "localizer. Contact Tower on 118.3. Good day. Choose one of the following options for the Approach "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* ClearedVisual =
    "N1, Cleared for the runway 16 approach. Maintain heading 123 and 4567 ft until you have runway in "
    "sight. Contact Tower on 118.3. Good day. Choose one of the following options for the Approach "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* TuneTowerMenu =
    "N1. Choose one of the following options for the Approach frequency: 1-Tune Test Field Tower Frequency "
    "2-Close ATC Services";
constexpr const char* TowerMenu =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr const char* ContactArtcc =
    "N1, Contact ARTCC (Air Route Traffic Control Center). Choose one of the following options for the "
    "Approach frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* TuneArtccMenu =
    "N1. Choose one of the following options for the Approach frequency: 1-Tune ARTCC Frequency 2-Close ATC "
    "Services";
constexpr const char* Traffic =
    "N1, Traffic is 3 miles, two o'clock, 3000 ft, type Unknown. Report them in sight. Choose one of the "
    "following options for the Approach frequency: 1-Report traffic in sight 2-Report traffic not in sight "
    "3-Close ATC Services";
constexpr const char* Vector =
    "N1, Turn left heading 90. Choose one of the following options for the Approach frequency: "
    "1-Acknowledge 2-Close ATC Services";

class Approach : public OnApproach {
  protected:
    Approach() { Remember(); }

    void ExpectState(std::string_view phase, std::string_view text, std::string_view next) {
        EXPECT_EQ(N1().MenuText, text) << phase;
        EXPECT_EQ(N1().Choice, 0) << phase;
        EXPECT_EQ(N1().Phase, next) << phase;
    }

    /// Three kinds of answers that only clear the digit.
    void ExpectAnswersKeepTheText(std::string_view phase) {
        const std::pair<const char*, std::uint8_t> answers[] = {{Vector, 1}, {Traffic, 1}, {Traffic, 2}};
        for (const auto& [text, digit] : answers) {
            Phase(phase);
            Reads(text);
            Types(digit);
            Serve();
            ExpectState(phase, text, phase);
            EXPECT_TRUE(NothingForgotten());
        }
    }
};

// ---- From the Tower

TEST_F(Approach, FarOutOneFromTheTowerIsAnArrival) {
    for (const int miles : {15, 16}) {
        Remember();
        At(miles, 3000);
        Phase("Contact Approach");
        Reads("text");
        Serve();
        ExpectState("Contact Approach", "", "Approach");
        EXPECT_TRUE(AllForgotten());
    }
}

TEST_F(Approach, CloseInOneFromTheTowerHasMissedHisApproach) {
    At(14, 3000);
    Phase("Contact Approach");
    Reads("text");
    Serve();
    ExpectState("Contact Approach", "", "Missed Approach");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Approach, ContactApproachSwallowsAWaitingClose) {
    Phase("Contact Approach");
    Reads("N1. Choose one of the following options for the Approach frequency: 1-Close ATC Services");
    Types(1);
    Serve();
    EXPECT_FALSE(IsReset());
    ExpectState("Contact Approach", "", "Missed Approach");
}

// ---- "Approach"

TEST_F(Approach, AnswersOnlyClearTheDigit) { ExpectAnswersKeepTheText("Approach"); }

TEST_F(Approach, TheFirstVectorBeginsWithTheOpeningSentence) {
    PlacedAt(160, 12, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_THAT(N1().MenuText,
                StartsWith("N1, You are 12 miles, north, expect vectors for runway 16 approach. Turn "));
    EXPECT_EQ(N1().Target.Name, "Left Downwind Leg - north");
}

TEST_F(Approach, WithATextStandingTheFirstVectorHasNoOpeningSentence) {
    PlacedAt(160, 12, 3000);
    Phase("Approach");
    Reads("text");
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
}

TEST_F(Approach, AFixJustPassedIsReplacedInTheSameCall) {
    PlacedAt(160, 12, 3000);
    Phase("Approach");
    Reads("text");
    N1().Target = {"Left Downwind Leg - west", "Waypoint", N1().Latitude, N1().Longitude, 0};
    Serve();
    EXPECT_EQ(N1().Target.Name, "Left Downwind Leg - north");
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
}

TEST_F(Approach, InTheSouthWithinFifteenMilesHeIsClearedInTheCallThatBuildsTheChain) {
    PlacedAt(340, 12, 3000);
    At(14, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_EQ(N1().Phase, "Acknowledge contact tower");
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Cleared for the ILS runway 16 approach. Maintain heading 160 "
                                          "and 2400 ft until established localizer."));
    EXPECT_EQ(N1().Target, GeoPoint{});
    EXPECT_EQ(N1().AssignedHeading, "160");
    EXPECT_EQ(N1().AssignedAltitude, "2400");
}

TEST_F(Approach, AChainThatStandsAlreadyIsClearedAllTheSame) {
    PlacedAt(340, 13, 3000);
    At(15, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
    At(14, 3000);
    Serve();
    EXPECT_EQ(N1().Phase, "Acknowledge contact tower");
}

TEST_F(Approach, AtExactlyFifteenMilesThereIsNoClearance) {
    PlacedAt(340, 15, 3000);
    At(15, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
    EXPECT_EQ(N1().Target.Name, "Final Approach - south");
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
    EXPECT_EQ(N1().Target.Name, "Final Approach - south");
}

TEST_F(Approach, OnAnotherSideThereIsNoClearance) {
    PlacedAt(295, 12, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_EQ(N1().Quadrant, "southeast");
    EXPECT_EQ(N1().Phase, "Approach");
}

TEST_F(Approach, WithoutAnIlsTheRunwayIsToBeInSight) {
    S.RunwayHasIls = 0;
    PlacedAt(340, 12, 3000);
    At(14, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_EQ(N1().Phase, "Acknowledge contact tower");
    EXPECT_THAT(N1().MenuText, HasSubstr("until you have runway in sight"));
    EXPECT_THAT(N1().MenuText, Not(HasSubstr("ILS")));
}

TEST_F(Approach, AnyOtherIlsValueStopsAllClearances) {
    S.RunwayHasIls = 1;
    PlacedAt(340, 12, 3000);
    At(14, 3000);
    Phase("Approach");
    Reads("");
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
    EXPECT_EQ(N1().Target.Name, "Final Approach - south");

    // Past the fix he gets the same chain again.
    PlacedAt(340, 5, 3000);
    At(5, 3000);
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
    EXPECT_EQ(N1().Target.Name, "Final Approach - south");
    EXPECT_EQ(N1().AssignedHeading, "340");
}

TEST_F(Approach, CanBeClosed) {
    Phase("Approach");
    Reads(Vector);
    Types(2);
    Serve();
    EXPECT_TRUE(IsReset());
}

// ---- The limit check

TEST_F(Approach, AFixBeyondTwentyMilesSendsHimToArtcc) {
    for (const auto& [miles, sent] : {std::pair{19, false}, {20, false}, {21, true}}) {
        S.AirportLatitude = S.RunwayLatitude;
        PlacedAt(160, 12, 3000);
        Phase("Approach");
        const GeoPoint far = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, 25, miles);
        N1().Target = {"Left Downwind Leg - north", "Waypoint", far.Latitude, far.Longitude, 0};
        N1().AssignedHeading =
            std::to_string(BearingTo(S, N1().Latitude, N1().Longitude, far.Latitude, far.Longitude));
        N1().AssignedAltitude = "2400";
        Reads("N1, Turn left heading " + N1().AssignedHeading + ".");
        Serve();
        EXPECT_EQ(N1().Phase, sent ? "Acknowledge contact ARTCC (APPROACH)" : "Approach") << miles;
        if (!sent) continue;
        EXPECT_EQ(N1().MenuText, ContactArtcc);
        EXPECT_TRUE(AllForgotten());
    }
}

TEST_F(Approach, AMountainThatForcesHimAboveTheAirspaceSendsHimToArtcc) {
    for (const auto& [feet, sent] : {std::pair{8399, false}, {8400, false}, {8401, true}}) {
        S.MountainCount = 0;
        PlacedAt(160, 10, 3000);
        Phase("Approach");
        Reads("");
        N1().Target = GeoPoint{};
        // On the way from the downwind fix to the pilot.
        const GeoPoint ahead = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, 160, 8);
        AddMountain(ahead.Latitude, ahead.Longitude, feet);
        Serve();
        EXPECT_EQ(N1().Phase, sent ? "Acknowledge contact ARTCC (APPROACH)" : "Approach") << feet;
        if (sent) {
            EXPECT_EQ(N1().MenuText, ContactArtcc);
        } else {
            EXPECT_EQ(N1().AssignedAltitude, std::to_string(feet + 2000));
        }
    }
}

// ---- "Missed Approach"

TEST_F(Approach, AMissedApproachsAnswersOnlyClearTheDigit) { ExpectAnswersKeepTheText("Missed Approach"); }

TEST_F(Approach, AMissedApproachGoesToArtccInTheTickThatBuildsItsFix) {
    PlacedAt(160, 3, 3000);
    Phase("Missed Approach");
    Reads("text");
    Serve();
    EXPECT_EQ(N1().Phase, "Acknowledge contact ARTCC (MISSED APPROACH)");
    EXPECT_EQ(N1().MenuText, ContactArtcc);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Approach, AMissedApproachIsFlownWhereTheAirportLiesTenMilesNearerToTheFix) {
    const GeoPoint reference = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, 295, 11);
    S.AirportLatitude = reference.Latitude;
    S.AirportLongitude = reference.Longitude;
    PlacedAt(160, 3, 3000);
    Phase("Missed Approach");
    Reads("text");
    Serve();
    EXPECT_EQ(N1().Phase, "Missed Approach");
    EXPECT_EQ(N1().Target.Name, "Right Downwind Leg - north");
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
}

TEST_F(Approach, AMissedApproachThatPassesItsFixIsAnArrivalAgain) {
    PlacedAt(160, 12, 3000);
    Phase("Missed Approach");
    N1().Target = {"Right Downwind Leg - north", "Waypoint", N1().Latitude, N1().Longitude, 0};
    Reads("text");
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
    EXPECT_EQ(N1().Target.Name, "Left Downwind Leg - north");
}

TEST_F(Approach, AMissedApproachCanBeClosed) {
    Phase("Missed Approach");
    Reads(Vector);
    Types(2);
    Serve();
    EXPECT_TRUE(IsReset());
}

// ---- The hand-off to ARTCC

TEST_F(Approach, TheHandOffOfAnArrivalIsRepeatedUntilAcknowledged) {
    Phase("Acknowledge contact ARTCC (APPROACH)");
    Reads(Traffic);
    Serve();
    ExpectState("", ContactArtcc, "Acknowledge contact ARTCC (APPROACH)");
    Types(1);
    Serve();
    ExpectState("", TuneArtccMenu, "Contact ARTCC (APPROACH)");
}

TEST_F(Approach, TheOfferOfArtccToAnArrivalIsRepeatedUntilHeTunes) {
    Phase("Contact ARTCC (APPROACH)");
    Reads("");
    Serve();
    ExpectState("", TuneArtccMenu, "Contact ARTCC (APPROACH)");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState("", "", "Approach");
    EXPECT_EQ(N1().TunedFrequency, S.ArtccFrequency);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Approach, TheHandOffOfAMissedApproachIsRepeatedUntilAcknowledged) {
    Phase("Acknowledge contact ARTCC (MISSED APPROACH)");
    Reads(Traffic);
    Serve();
    ExpectState("", ContactArtcc, "Acknowledge contact ARTCC (MISSED APPROACH)");
    Types(1);
    Serve();
    ExpectState("", TuneArtccMenu, "Contact ARTCC (MISSED APPROACH)");
}

TEST_F(Approach, TheOfferOfArtccToAMissedApproachIsRepeatedUntilHeTunes) {
    Phase("Contact ARTCC (MISSED APPROACH)");
    Reads("");
    Serve();
    ExpectState("", TuneArtccMenu, "Contact ARTCC (MISSED APPROACH)");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState("", "", "Missed Approach");
    EXPECT_EQ(N1().TunedFrequency, S.ArtccFrequency);
    EXPECT_TRUE(AllForgotten());
}

// ---- The hand-over to the Tower

TEST_F(Approach, TheClearanceIsRepeatedWithTheValuesLastAssigned) {
    Phase("Acknowledge contact tower");
    Reads("");
    Serve();
    ExpectState("", ClearedIls, "Acknowledge contact tower");
    EXPECT_EQ(N1().Target, GeoPoint{});
    EXPECT_EQ(N1().AdvisedTraffic, "N7, ");
    Serve();
    ExpectState("", ClearedIls, "Acknowledge contact tower");
}

TEST_F(Approach, TheRepeatedClearanceIsSentOnce) {
    Field.Place("N1", 340, 10, 3000);
    Phase("Acknowledge contact tower");
    Field.Tick();
    EXPECT_EQ(Field.LastHeard("N1"), ClearedIls);
    Field.Tick();
    EXPECT_EQ(Field.LastHeard("N1"), "");
}

TEST_F(Approach, TheRepeatedClearanceFollowsTheRunwaysIls) {
    Phase("Acknowledge contact tower");
    S.RunwayHasIls = 0;
    Reads("");
    Serve();
    ExpectState("", ClearedVisual, "Acknowledge contact tower");
}

TEST_F(Approach, WithAnyOtherIlsValueNothingIsRepeated) {
    Phase("Acknowledge contact tower");
    S.RunwayHasIls = 2;
    Reads("text");
    Serve();
    ExpectState("", "text", "Acknowledge contact tower");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(Approach, TheAcknowledgedClearanceOffersTheTower) {
    Phase("Acknowledge contact tower");
    Reads(ClearedIls);
    Types(1);
    Serve();
    ExpectState("", TuneTowerMenu, "Contact tower");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(Approach, TheOfferOfTheTowerIsRepeatedUntilHeTunes) {
    Phase("Contact tower");
    Reads("");
    Serve();
    ExpectState("", TuneTowerMenu, "Contact tower");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState("", TowerMenu, "Approach");
    EXPECT_EQ(N1().TunedFrequency, S.TowerFrequency);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Approach, EveryHandOffStateCanBeClosed) {
    const std::pair<const char*, const char*> states[] = {
        {"Acknowledge contact ARTCC (APPROACH)", ContactArtcc},
        {"Contact ARTCC (APPROACH)", TuneArtccMenu},
        {"Acknowledge contact ARTCC (MISSED APPROACH)", ContactArtcc},
        {"Contact ARTCC (MISSED APPROACH)", TuneArtccMenu},
        {"Acknowledge contact tower", ClearedIls},
        {"Contact tower", TuneTowerMenu},
    };
    for (const auto& [phase, text] : states) {
        N1().InService = UnderService;
        N1().TunedFrequency = S.ApproachFrequency;
        Rules(Ifr);
        Phase(phase);
        Reads(text);
        Types(2);
        Serve();
        EXPECT_TRUE(IsReset()) << phase;
    }
}

TEST_F(Approach, ADigitThatFitsNothingStaysInEveryState) {
    for (const std::string_view phase :
         {"Approach", "Missed Approach", "Acknowledge contact ARTCC (APPROACH)", "Contact ARTCC (APPROACH)",
          "Acknowledge contact ARTCC (MISSED APPROACH)", "Contact ARTCC (MISSED APPROACH)",
          "Acknowledge contact tower", "Contact tower"}) {
        Phase(phase);
        Reads(Vector);
        Types(6);
        Serve();
        EXPECT_EQ(N1().MenuText, Vector) << phase;
        EXPECT_EQ(N1().Choice, 6) << phase;
        EXPECT_EQ(N1().Phase, phase);
    }
}

}  // namespace
}  // namespace corvenna
