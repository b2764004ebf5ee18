#include "airspace/artcc_service.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* ArtccMenu =
    "N1. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services";
constexpr const char* ClimbToCruise =
    "N1, Climb and maintain cruise altitude and assume own navigation. Choose one of the following options "
    "for the ARTCC frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* MaintainCruise =
    "N1, Maintain cruise altitude and assume own navigation. Choose one of the following options for the "
    "ARTCC frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* ContactApproach =
    "N1, Contact approach frequency on 124.2. Choose one of the following options for the ARTCC frequency: "
    "1-Acknowledge 2-Close ATC Services";
constexpr const char* TuneApproachMenu =
    "N1. Choose one of the following options for the ARTCC frequency: 1-Tune Approach Frequency 2-Close ATC "
    "Services";
constexpr const char* TowerMenu =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr const char* AskDestination =
    "N1. What is your destination airport?: 1-Test Field 2-Another Airport 3-Close ATC Services";
constexpr const char* ClearedIls =
    "N1, Cleared for the ILS runway 16 approach. Maintain heading 123 and 4567 ft until established "
    "localizer. Contact Tower on 118.3. Good day. Choose one of the following options for the ARTCC "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* ClearedVisual =
    "N1, Cleared for the runway 16 approach. Maintain heading 123 and 4567 ft until you have runway in "
    "sight. Contact Tower on 118.3. Good day. Choose one of the following options for the ARTCC frequency: "
    "1-Acknowledge 2-Close ATC Services";
constexpr const char* TuneTowerMenu =
    "N1. Choose one of the following options for the ARTCC frequency: 1-Tune Test Field Tower Frequency "
    "2-Close ATC Services";
constexpr const char* Traffic =
    "N1, Traffic is 3 miles, two o'clock, 3000 ft, type Unknown. Report them in sight. Choose one of the "
    "following options for the ARTCC frequency: 1-Report traffic in sight 2-Report traffic not in sight "
    "3-Close ATC Services";
constexpr const char* Vector =
    "N1, Turn left heading 90. Choose one of the following options for the ARTCC frequency: 1-Acknowledge "
    "2-Close ATC Services";

class Artcc : public OnArtcc {
  protected:
    Artcc() { Remember(); }

    void BackOnFrequency() {
        N1().InService = UnderService;
        N1().TunedFrequency = S.ArtccFrequency;
    }

    void ExpectState(std::string_view text, std::string_view phase) {
        EXPECT_EQ(N1().MenuText, text);
        EXPECT_EQ(N1().Choice, 0);
        EXPECT_EQ(N1().Phase, phase);
    }

    void ExpectAnswersLeave(std::string_view phase, const char* menuOrNothing) {
        const std::pair<const char*, std::uint8_t> answers[] = {{Vector, 1}, {Traffic, 1}, {Traffic, 2}};
        for (const auto& [text, digit] : answers) {
            Phase(phase);
            Reads(text);
            Types(digit);
            Serve();
            ExpectState(menuOrNothing == nullptr ? text : menuOrNothing, phase);
            EXPECT_TRUE(NothingForgotten());
        }
    }
};

class VfrOnArtcc : public Artcc {
  protected:
    VfrOnArtcc() {
        Rules(Vfr);
        // The first player of the list, on whose altitude the pass-on hangs, is somebody else on the ground.
        PlayerRecord first;
        first.Name = "N0";
        first.Role = Role::Player;
        first.Altitude = S.RunwayElevation;
        first.Latitude = 10;
        const PlayerRecord pilot = N1();
        S.Players.Clear();
        S.Players.Add(first);
        S.Players.Add(pilot);
    }

    void FirstPlayerAt(std::int32_t feet) { S.Players[0].Altitude = S.RunwayElevation + feet; }

    bool IsPassedOn() {
        return N1().TunedFrequency.empty() && N1().MenuText.empty() && N1().Phase.empty() &&
               N1().FlightRules == Vfr && N1().InService == UnderService && N1().Choice == 0 &&
               AllForgotten();
    }
};

// ---- VFR

TEST_F(VfrOnArtcc, TuningTheTowerPassesHimOnAndForgetsAll) {
    Reads(TuneTowerMenu);
    Types(1);
    Serve();
    ExpectState(TowerMenu, "");
    EXPECT_EQ(N1().TunedFrequency, S.TowerFrequency);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(VfrOnArtcc, TrafficReportedInSightOrNotEmptiesTheText) {
    for (const std::uint8_t digit : {std::uint8_t{1}, std::uint8_t{2}}) {
        Reads(Traffic);
        Types(digit);
        Serve();
        ExpectState("", "");
        EXPECT_TRUE(NothingForgotten());
    }
}

TEST_F(VfrOnArtcc, BeyondFifteenMilesTheTowerIsNotOffered) {
    for (const char* text : {"", TuneTowerMenu}) {
        Remember();
        At(16, 3000);
        Reads(text);
        Serve();
        ExpectState(ArtccMenu, "");
        EXPECT_TRUE(VectorsForgotten());
        EXPECT_EQ(N1().AdvisedTraffic, "N7, ");
    }
}

TEST_F(VfrOnArtcc, WithinFifteenMilesTheTowerIsOffered) {
    for (const char* text : {"", ArtccMenu}) {
        Remember();
        At(14, 3000);
        Reads(text);
        Serve();
        ExpectState(TuneTowerMenu, "");
        EXPECT_TRUE(VectorsForgotten());
        EXPECT_EQ(N1().AdvisedTraffic, "N7, ");
    }
}

TEST_F(VfrOnArtcc, AtExactlyFifteenMilesOrWithATrafficTextNothingIsWritten) {
    At(15, 3000);
    Reads("");
    Serve();
    ExpectState("", "");
    Reads(Traffic);
    At(14, 3000);
    Serve();
    ExpectState(Traffic, "");
    At(16, 3000);
    Serve();
    ExpectState(Traffic, "");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(VfrOnArtcc, CanBeClosed) {
    Reads(ArtccMenu);
    Types(1);
    Serve();
    EXPECT_TRUE(IsReset());
}

TEST_F(VfrOnArtcc, WithAPhaseHeIsNotServed) {
    FirstPlayerAt(3000);
    Phase("En Route");
    Reads("");
    Serve();
    ExpectState("", "En Route");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(VfrOnArtcc, ThePassOnLooksAtTheAltitudeOfTheFirstPlayerOfTheList) {
    for (const auto& [feet, passed] : {std::pair{300, false}, {301, true}, {9999, true}, {10000, false}}) {
        Remember();
        BackOnFrequency();
        At(14, 20000);  // his own altitude does not matter
        FirstPlayerAt(feet);
        Reads(ArtccMenu);
        Serve();
        EXPECT_EQ(IsPassedOn(), passed) << feet;
    }
}

TEST_F(VfrOnArtcc, WithTheFirstPlayerOnTheGroundThereIsNoPassOnHoweverClose) {
    FirstPlayerAt(0);
    At(1, 3000);
    Reads("");
    Serve();
    ExpectState(TuneTowerMenu, "");
}

TEST_F(VfrOnArtcc, ThePassOnBeginsBelowTwentyMiles) {
    for (const auto& [miles, passed] : {std::pair{19, true}, {20, false}, {21, false}}) {
        Remember();
        BackOnFrequency();
        FirstPlayerAt(3000);
        At(miles, 3000);
        Reads("");
        Serve();
        EXPECT_EQ(IsPassedOn(), passed) << miles;
    }
}

TEST_F(VfrOnArtcc, ThePassOnComesInAllThreePositionRows) {
    for (const auto& [miles, text] : {std::pair{16, ""}, {14, ""}, {15, ""}, {14, Traffic}}) {
        Remember();
        BackOnFrequency();
        FirstPlayerAt(3000);
        At(miles, 3000);
        Reads(text);
        Serve();
        EXPECT_TRUE(IsPassedOn()) << miles;
    }
}

TEST_F(VfrOnArtcc, WithoutAnApproachFrequencyThereIsNoPassOn) {
    S.ApproachFrequency.clear();
    FirstPlayerAt(3000);
    At(14, 3000);
    Reads("");
    Serve();
    ExpectState(TuneTowerMenu, "");
}

TEST_F(VfrOnArtcc, AWaitingDigitHoldsThePassOn) {
    FirstPlayerAt(3000);
    At(14, 3000);
    Reads(TuneTowerMenu);
    Types(6);
    Serve();
    EXPECT_EQ(N1().TunedFrequency, S.ArtccFrequency);
    EXPECT_EQ(N1().Choice, 6);
}

TEST_F(VfrOnArtcc, APilotPassedOnSeesTheFrequencyMenu) {
    Field.Place("N1", 100, 12, 3000);
    FirstPlayerAt(3000);
    Field.Tick();
    EXPECT_EQ(Field.LastHeard("N1"), "");
    Field.Tick();
    EXPECT_EQ(Field.LastHeard("N1"),
              "N1. Choose one of the following options: 1-Close ATC Services 2-Tune Approach Frequency "
              "3-Tune Test Field Tower Frequency");
}

// ---- The opening question

TEST_F(Artcc, HeIsAskedForHisDestination) {
    Reads("text");
    Serve();
    ExpectState(AskDestination, "");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Artcc, WhileTheQuestionStandsNothingChanges) {
    Reads(AskDestination);
    Serve();
    ExpectState(AskDestination, "");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(Artcc, ThisAirportBeginsTheDescent) {
    Reads(AskDestination);
    Types(1);
    Serve();
    ExpectState("", "Descent");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Artcc, AnotherAirportTakesHimEnRoute) {
    Reads(AskDestination);
    Types(2);
    Serve();
    ExpectState("", "En Route");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(Artcc, TheQuestionCanBeClosed) {
    Reads(AskDestination);
    Types(3);
    Serve();
    EXPECT_TRUE(IsReset());
}

TEST_F(Artcc, AtOrBelowThreeHundredFeetTheOpeningDoesNothing) {
    for (const auto& [feet, asked] : {std::pair{299, false}, {300, false}, {301, true}}) {
        At(12, feet);
        Reads("text");
        Serve();
        ExpectState(asked ? AskDestination : "text", "");
    }
    At(12, 300);
    Reads(AskDestination);
    Types(3);
    Serve();
    EXPECT_FALSE(IsReset());
    EXPECT_EQ(N1().Choice, 3);
}

// ---- "Departure" and "En Route"

TEST_F(Artcc, AnswersOfADepartureLeaveThePlainMenu) { ExpectAnswersLeave("Departure", ArtccMenu); }

TEST_F(Artcc, ADepartureIsToldToClimb) {
    Phase("Departure");
    Reads("");
    Serve();
    ExpectState(ClimbToCruise, "Departure");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(Artcc, ADepartureKeepsItsTextAndItsPhaseAtAnyHeightAndDistance) {
    Phase("Departure");
    At(150, 30000);
    Reads(Traffic);
    Serve();
    ExpectState(Traffic, "Departure");
}

TEST_F(Artcc, AnswersEnRouteLeaveThePlainMenu) { ExpectAnswersLeave("En Route", ArtccMenu); }

TEST_F(Artcc, EnRouteHeIsToldToMaintainHisAltitude) {
    Phase("En Route");
    Reads("");
    Serve();
    ExpectState(MaintainCruise, "En Route");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(Artcc, EnRouteATextStands) {
    Phase("En Route");
    Reads(Traffic);
    Serve();
    ExpectState(Traffic, "En Route");
}

// ---- "Descent"

TEST_F(Artcc, AnswersInDescentOnlyClearTheDigit) { ExpectAnswersLeave("Descent", nullptr); }

class Descent : public Artcc {
  protected:
    Descent() {
        N1().AssignedAltitude.clear();
        S.HighestTerrain = 9000;
        Phase("Descent");
        Reads("text");
        At(150, 20000);
    }
};

TEST_F(Descent, HeIsSentToTheHighestTerrainOnce) {
    Serve();
    ExpectState(
        "N1, Descent and Maintain 9000 ft. Choose one of the following options for the ARTCC frequency: "
        "1-Acknowledge 2-Close ATC Services",
        "Descent");
    EXPECT_EQ(N1().AssignedAltitude, "9000");
    Reads("text");
    S.HighestTerrain = 12000;
    Serve();
    ExpectState("text", "Descent");
    EXPECT_EQ(N1().AssignedAltitude, "9000");
}

TEST_F(Descent, OneBelowTheHighestTerrainIsSentUp) {
    N1().Altitude = 8999;
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Climb and Maintain 9000 ft. Choose one"));
}

TEST_F(Descent, OneExactlyThereHearsNoAltitude) {
    N1().Altitude = 9000;
    Serve();
    ExpectState(
        "N1, Choose one of the following options for the ARTCC frequency: 1-Acknowledge 2-Close ATC Services",
        "Descent");
}

TEST_F(Descent, EndsWithinOneHundredMiles) {
    for (const auto& [miles, phase] : {std::pair{101, "Descent"}, {100, "Descent"}, {99, "Approach"}}) {
        Phase("Descent");
        Remember();
        At(miles, 20000);
        Reads("text");
        Serve();
        ExpectState(phase == std::string_view("Approach") ? "" : "text", phase);
        EXPECT_EQ(AllForgotten(), phase == std::string_view("Approach"));
    }
}

TEST_F(Descent, IsFollowedByAVectorWithTheOpeningSentence) {
    PlacedAt(160, 90, 20000);
    Serve();
    ExpectState("", "Approach");
    Serve();
    EXPECT_THAT(N1().MenuText,
                StartsWith("N1, You are 90 miles, north, expect vectors for runway 16 approach. Turn "));
}

// ---- "Approach"

TEST_F(Artcc, AnswersOfAnArrivalOnlyClearTheDigit) { ExpectAnswersLeave("Approach", nullptr); }

TEST_F(Artcc, AnArrivalIsVectoredWithinOneHundredMiles) {
    for (const auto& [miles, vectored] : {std::pair{99, true}, {100, false}, {101, false}}) {
        PlacedAt(160, 60, 20000);
        At(miles, 20000);
        N1().Target = GeoPoint{};
        Phase("Approach");
        Reads("");
        Serve();
        EXPECT_EQ(!N1().Target.Name.empty(), vectored) << miles;
        EXPECT_EQ(!N1().MenuText.empty(), vectored) << miles;
        EXPECT_EQ(N1().Phase, "Approach");
    }
}

TEST_F(Artcc, AnArrivalInTheSouthIsClearedWithinFifteenMiles) {
    for (const auto& [miles, cleared] : {std::pair{14, true}, {15, false}, {16, false}}) {
        PlacedAt(340, 14, 20000);  // above the airspace of Approach
        At(miles, 20000);
        N1().Target = GeoPoint{};
        Phase("Approach");
        Reads("");
        Serve();
        EXPECT_EQ(N1().Phase, cleared ? "Acknowledge contact tower" : "Approach") << miles;
        if (!cleared) continue;
        EXPECT_THAT(N1().MenuText, StartsWith("N1, Cleared for the ILS runway 16 approach. Maintain heading "
                                              "160 and 2400 ft until established localizer."));
        EXPECT_THAT(N1().MenuText, HasSubstr("for the ARTCC frequency: 1-Acknowledge"));
        EXPECT_EQ(N1().Target, GeoPoint{});
    }
}

TEST_F(Artcc, AnArrivalCanBeClosed) {
    Phase("Approach");
    Reads(Vector);
    Types(2);
    Serve();
    EXPECT_TRUE(IsReset());
}

// ---- The hand-in

class HandIn : public Artcc {
  protected:
    /// On course to a standing fix that lies in the airspace of Approach, as he does himself.
    void ArriveWithin(std::string_view phase) {
        BackOnFrequency();
        Rules(Ifr);
        PlacedAt(160, 12, 3000);
        S.AirportLatitude = S.RunwayLatitude;
        FixAt(12);
        N1().AssignedAltitude = "2400";
        At(12, 3000);
        Phase(phase);
    }

    void FixAt(int miles) {
        const GeoPoint fix = ProjectNm(S.RunwayLatitude, S.RunwayLongitude, 25, miles);
        N1().Target = {"Left Downwind Leg - north", "Waypoint", fix.Latitude, fix.Longitude, 0};
        N1().AssignedHeading =
            std::to_string(BearingTo(S, N1().Latitude, N1().Longitude, fix.Latitude, fix.Longitude));
        Reads("N1, Turn left heading " + N1().AssignedHeading + ".");
    }

    bool IsHandedIn() {
        Serve();
        const bool handedIn = N1().Phase == "Acknowledge contact approach";
        EXPECT_EQ(N1().MenuText == ContactApproach, handedIn);
        EXPECT_EQ(AllForgotten(), handedIn);
        return handedIn;
    }
};

TEST_F(HandIn, TakesOneWhoseFixAndPositionLieInTheAirspaceOfApproach) {
    ArriveWithin("Approach");
    EXPECT_TRUE(IsHandedIn());
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().TunedFrequency, S.ArtccFrequency);
}

TEST_F(HandIn, NeedsAnAssignedAltitudeBelowTenThousandFeet) {
    for (const auto& [feet, handedIn] : {std::pair{8399, true}, {8400, false}, {8401, false}}) {
        ArriveWithin("Approach");
        S.MountainCount = 0;
        AddMountain(N1().Latitude, N1().Longitude, feet);
        N1().Target = GeoPoint{};
        EXPECT_EQ(IsHandedIn(), handedIn) << feet;
    }
}

TEST_F(HandIn, NeedsAFixWithinTwentyMiles) {
    for (const auto& [miles, handedIn] : {std::pair{19, true}, {20, false}, {21, false}}) {
        ArriveWithin("Approach");
        FixAt(miles);
        EXPECT_EQ(IsHandedIn(), handedIn) << miles;
    }
}

TEST_F(HandIn, NeedsHimAboveThreeHundredAndBelowTenThousandFeet) {
    for (const auto& [feet, handedIn] : {std::pair{300, false}, {301, true}, {9999, true}, {10000, false}}) {
        ArriveWithin("Approach");
        At(12, feet);
        EXPECT_EQ(IsHandedIn(), handedIn) << feet;
    }
}

TEST_F(HandIn, NeedsHimWithinTwentyMiles) {
    for (const auto& [miles, handedIn] : {std::pair{19, true}, {20, false}, {21, false}}) {
        ArriveWithin("Approach");
        At(miles, 3000);
        EXPECT_EQ(IsHandedIn(), handedIn) << miles;
    }
}

TEST_F(HandIn, FindsNothingWithoutAFix) {
    ArriveWithin("Approach");
    N1().Target = GeoPoint{};
    N1().Quadrant = "nowhere";
    Serve();
    EXPECT_EQ(N1().Phase, "Approach");
}

TEST_F(HandIn, OfAMissedApproachKeepsItOne) {
    ArriveWithin("Missed Approach");
    Serve();
    ExpectState(ContactApproach, "Acknowledge contact approach (MISSED APPROACH)");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(HandIn, HasNoGoodDay) {
    ArriveWithin("Approach");
    Serve();
    EXPECT_THAT(N1().MenuText, Not(HasSubstr("Good day")));
}

TEST_F(HandIn, HappensWithoutAnApproachFrequencyTooAndLeadsToTheFrequencyMenu) {
    S.ApproachFrequency.clear();
    ArriveWithin("Approach");
    Serve();
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Contact approach frequency on . Choose one"));
    Types(1);
    Serve();
    Types(1);
    Serve();
    ExpectState("", "Approach");
    EXPECT_EQ(N1().TunedFrequency, "");
    EXPECT_EQ(N1().FlightRules, Ifr);
    Field.Tick();
    EXPECT_EQ(Field.LastHeard("N1"),
              "N1. Choose one of the following options: 1-Close ATC Services 2-Tune ARTCC Frequency");
}

TEST_F(HandIn, IsRepeatedUntilAcknowledgedAndTuned) {
    Phase("Acknowledge contact approach");
    Reads(Traffic);
    Serve();
    ExpectState(ContactApproach, "Acknowledge contact approach");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState(TuneApproachMenu, "Contact approach");
    Reads("");
    Serve();
    ExpectState(TuneApproachMenu, "Contact approach");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState("", "Approach");
    EXPECT_EQ(N1().TunedFrequency, S.ApproachFrequency);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(HandIn, OfAMissedApproachIsRepeatedUntilAcknowledgedAndTuned) {
    Phase("Acknowledge contact approach (MISSED APPROACH)");
    Reads(Traffic);
    Serve();
    ExpectState(ContactApproach, "Acknowledge contact approach (MISSED APPROACH)");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState(TuneApproachMenu, "Contact approach (MISSED APPROACH)");
    Reads("");
    Serve();
    ExpectState(TuneApproachMenu, "Contact approach (MISSED APPROACH)");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState("", "Missed Approach");
    EXPECT_EQ(N1().TunedFrequency, S.ApproachFrequency);
    EXPECT_TRUE(AllForgotten());
}

// ---- "Missed Approach"

TEST_F(Artcc, AMissedApproachsAnswersOnlyClearTheDigit) { ExpectAnswersLeave("Missed Approach", nullptr); }

TEST_F(Artcc, AMissedApproachIsFlownToTheRight) {
    PlacedAt(160, 5, 3000);
    Phase("Missed Approach");
    Reads("text");
    Serve();
    EXPECT_EQ(N1().Phase, "Missed Approach");
    EXPECT_EQ(N1().Target.Name, "Right Downwind Leg - north");
    EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
    const PlayerRecord before = N1();
    Serve();
    EXPECT_EQ(N1(), before);
}

TEST_F(Artcc, BeyondThirtyMilesAMissedApproachDropsItsFixInTheCallThatBuiltIt) {
    for (const auto& [miles, dropped] : {std::pair{30, false}, {31, true}}) {
        PlacedAt(160, 25, 3000);
        At(miles, 3000);
        N1().Target = GeoPoint{};
        Phase("Missed Approach");
        Reads("text");
        Serve();
        EXPECT_EQ(N1().Phase, dropped ? "Approach" : "Missed Approach");
        EXPECT_EQ(N1().Target == GeoPoint{}, dropped);
        EXPECT_THAT(N1().MenuText, StartsWith("N1, Turn "));
        EXPECT_FALSE(N1().AssignedHeading.empty());
    }
}

// ---- The clearance and the hand-over to the Tower

TEST_F(Artcc, TheClearanceIsRepeatedByTheRunwaysIls) {
    for (const auto& [ils, text] : {std::pair{-1, ClearedIls}, {0, ClearedVisual}, {1, "text"}}) {
        Remember();
        S.RunwayHasIls = static_cast<std::int16_t>(ils);
        Phase("Acknowledge contact tower");
        Reads("text");
        Serve();
        ExpectState(text, "Acknowledge contact tower");
        EXPECT_EQ(N1().Target == GeoPoint{}, ils != 1);
        EXPECT_EQ(N1().AssignedHeading, "123");
    }
}

TEST_F(Artcc, TheAcknowledgedClearanceLeadsToTheTower) {
    Phase("Acknowledge contact tower");
    Reads(ClearedIls);
    Types(1);
    Serve();
    ExpectState(TuneTowerMenu, "Contact tower");
    Reads("");
    Serve();
    ExpectState(TuneTowerMenu, "Contact tower");
    EXPECT_TRUE(NothingForgotten());
    Types(1);
    Serve();
    ExpectState(TowerMenu, "Approach");
    EXPECT_EQ(N1().TunedFrequency, S.TowerFrequency);
    EXPECT_TRUE(AllForgotten());
}

// ---- All states

TEST_F(Artcc, EveryStateCanBeClosed) {
    for (const std::string_view phase :
         {"", "Departure", "En Route", "Descent", "Approach", "Missed Approach",
          "Acknowledge contact approach", "Contact approach",
          "Acknowledge contact approach (MISSED APPROACH)", "Contact approach (MISSED APPROACH)",
          "Acknowledge contact tower", "Contact tower"}) {
        BackOnFrequency();
        Rules(Ifr);
        Phase(phase);
        Reads(ArtccMenu);
        Types(1);
        Serve();
        EXPECT_TRUE(IsReset()) << phase;
    }
}

TEST_F(Artcc, ADigitThatFitsNothingStaysInEveryState) {
    for (const std::string_view phase :
         {"", "Departure", "En Route", "Descent", "Approach", "Missed Approach",
          "Acknowledge contact approach", "Contact approach",
          "Acknowledge contact approach (MISSED APPROACH)", "Contact approach (MISSED APPROACH)",
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

TEST_F(Artcc, TheTowersWordsForContactingOthersAreNotServed) {
    for (const std::string_view phase : {"Contact Departure", "Contact Approach"}) {
        Phase(phase);
        Reads(ArtccMenu);
        Types(1);
        Serve();
        EXPECT_FALSE(IsReset());
        EXPECT_EQ(N1().Phase, phase);
        EXPECT_EQ(N1().MenuText, ArtccMenu);
    }
}

}  // namespace
}  // namespace corvenna
