#include "airspace/departure_service.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

constexpr const char* ApproachMenu =
    "N1. Choose one of the following options for the Approach frequency: 1-Close ATC Services";
constexpr const char* TuneTowerMenu =
    "N1. Choose one of the following options for the Approach frequency: 1-Tune Test Field Tower Frequency "
    "2-Close ATC Services";
constexpr const char* TowerMenu =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr const char* AskDestination =
    "N1. What is your destination airport?: 1-Test Field 2-Another Airport 3-Close ATC Services";
constexpr const char* OwnNavigation =
    "N1, Climb and maintain cruise altitude and assume own navigation. Choose one of the following options "
    "for the Departure frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* DepartureMenu =
    "N1. Choose one of the following options for the Departure frequency: 1-Close ATC Services";
constexpr const char* ContactArtcc =
    "N1, Contact ARTCC (Air Route Traffic Control Center). Choose one of the following options for the "
    "Departure frequency: 1-Acknowledge 2-Close ATC Services";
constexpr const char* TuneArtccMenu =
    "N1. Choose one of the following options for the Departure frequency: 1-Tune ARTCC Frequency "
    "2-Close ATC Services";
constexpr const char* Traffic =
    "N1, Traffic is 3 miles, two o'clock, 3000 ft, type Unknown. Report them in sight. Choose one of the "
    "following options for the Approach frequency: 1-Report traffic in sight 2-Report traffic not in sight "
    "3-Close ATC Services";

class VfrOnApproach : public OnApproach {
  protected:
    VfrOnApproach() {
        Rules(Vfr);
        Remember();
    }
};

class IfrDeparture : public OnApproach {
  protected:
    IfrDeparture() { Remember(); }
};

// ---- VFR

TEST_F(VfrOnApproach, TuningTheTowerPassesHimOnAndForgetsAll) {
    Reads(TuneTowerMenu);
    Types(1);
    Serve();
    EXPECT_EQ(N1().MenuText, TowerMenu);
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().TunedFrequency, "118.3");
    EXPECT_EQ(N1().Phase, "");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(VfrOnApproach, TrafficReportedInSightEmptiesTheText) {
    Reads(Traffic);
    Types(1);
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(VfrOnApproach, TrafficReportedNotInSightEmptiesTheText) {
    Reads(Traffic);
    Types(2);
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(VfrOnApproach, TheMenuComesBackInTheTickAfterTheReport) {
    Reads(Traffic);
    Types(1);
    Serve();
    Serve();
    EXPECT_EQ(N1().MenuText, TuneTowerMenu);
}

TEST_F(VfrOnApproach, BeyondFifteenMilesTheTowerIsNotOffered) {
    At(16, 3000);
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, ApproachMenu);
    EXPECT_TRUE(VectorsForgotten());
    EXPECT_EQ(N1().AdvisedTraffic, "N7, ");
}

TEST_F(VfrOnApproach, TheTowersOfferIsTakenBackBeyondFifteenMiles) {
    At(16, 3000);
    Reads(TuneTowerMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, ApproachMenu);
    EXPECT_TRUE(VectorsForgotten());
}

TEST_F(VfrOnApproach, WithinFifteenMilesTheTowerIsOffered) {
    At(14, 3000);
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, TuneTowerMenu);
    EXPECT_TRUE(VectorsForgotten());
    EXPECT_EQ(N1().AdvisedTraffic, "N7, ");
}

TEST_F(VfrOnApproach, ThePlainMenuBecomesTheTowersOfferWithinFifteenMiles) {
    At(14, 3000);
    Reads(ApproachMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, TuneTowerMenu);
    EXPECT_TRUE(VectorsForgotten());
}

TEST_F(VfrOnApproach, AtExactlyFifteenMilesNothingIsWritten) {
    At(15, 3000);
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_TRUE(NothingForgotten());
    Reads(ApproachMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, ApproachMenu);
    Reads(TuneTowerMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, TuneTowerMenu);
}

TEST_F(VfrOnApproach, ATrafficTextStandsUntilItIsAnswered) {
    for (const int miles : {14, 16}) {
        At(miles, 3000);
        Reads(Traffic);
        Serve();
        EXPECT_EQ(N1().MenuText, Traffic);
        EXPECT_TRUE(NothingForgotten());
    }
}

TEST_F(VfrOnApproach, AMenuThatFitsAlreadyChangesNothing) {
    At(14, 3000);
    Reads(TuneTowerMenu);
    Serve();
    EXPECT_TRUE(NothingForgotten());
    At(16, 3000);
    Reads(ApproachMenu);
    Serve();
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(VfrOnApproach, ClosingResetsHim) {
    Reads(TuneTowerMenu);
    Types(2);
    Serve();
    EXPECT_TRUE(IsReset());
}

TEST_F(VfrOnApproach, ADigitThatFitsNothingStays) {
    At(16, 3000);
    Reads(TuneTowerMenu);
    Types(7);
    Serve();
    EXPECT_EQ(N1().MenuText, TuneTowerMenu);
    EXPECT_EQ(N1().Choice, 7);
}

TEST_F(VfrOnApproach, WithAnyOtherPhaseHeGetsTrafficCallsAndNothingElse) {
    Phase("Departure");
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    Reads("N1. 1-Close ATC Services");
    Types(1);
    Serve();
    EXPECT_FALSE(IsReset());
    EXPECT_EQ(N1().Choice, 1);
    Field.Enters("N2");
    Field.Place("N2", 100, 3, 3000);
    Field.Place("N1", 100, 0, 3000);
    Serve();
    EXPECT_THAT(N1().MenuText, ::testing::StartsWith("N1, Traffic is 3 miles"));
    EXPECT_THAT(N1().MenuText, ::testing::HasSubstr("for the Departure frequency"));
}

// ---- The opening question

TEST_F(IfrDeparture, HeIsAskedForHisDestination) {
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, AskDestination);
    EXPECT_EQ(N1().Phase, "");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(IfrDeparture, AnyOtherTextGivesWayToTheQuestion) {
    Reads(Traffic);
    Serve();
    EXPECT_EQ(N1().MenuText, AskDestination);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(IfrDeparture, WhileTheQuestionStandsNothingChanges) {
    Reads(AskDestination);
    Serve();
    EXPECT_EQ(N1().MenuText, AskDestination);
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(IfrDeparture, ThisAirportMakesHimAnArrival) {
    Reads(AskDestination);
    Types(1);
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().Phase, "Approach");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(IfrDeparture, AnotherAirportMakesHimADeparture) {
    Reads(AskDestination);
    Types(2);
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().Phase, "Departure");
    EXPECT_TRUE(AllForgotten());
    At(8, 3000);
    Serve();
    EXPECT_EQ(N1().MenuText, OwnNavigation);
}

TEST_F(IfrDeparture, TheQuestionCanBeClosed) {
    Reads(AskDestination);
    Types(3);
    Serve();
    EXPECT_TRUE(IsReset());
}

// ---- The climb-out

TEST_F(IfrDeparture, FromTheTowerHeBecomesADeparture) {
    Phase("Contact Departure");
    Reads(DepartureMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Phase, "Departure");
    EXPECT_TRUE(AllForgotten());
}

TEST_F(IfrDeparture, ContactDepartureSwallowsAWaitingClose) {
    Phase("Contact Departure");
    Reads(DepartureMenu);
    Types(1);
    Serve();
    EXPECT_FALSE(IsReset());
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().Phase, "Departure");
}

TEST_F(IfrDeparture, OnHisWayOutHeIsToldToClimb) {
    At(8, 3000);
    Phase("Departure");
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, OwnNavigation);
    EXPECT_EQ(N1().Phase, "Departure");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(IfrDeparture, AcknowledgingOrReportingTrafficLeavesTheDepartureMenu) {
    At(8, 3000);
    Phase("Departure");
    const std::pair<const char*, std::uint8_t> answers[] = {{OwnNavigation, 1}, {Traffic, 1}, {Traffic, 2}};
    for (const auto& [text, digit] : answers) {
        Reads(text);
        Types(digit);
        Serve();
        EXPECT_EQ(N1().MenuText, DepartureMenu);
        EXPECT_EQ(N1().Choice, 0);
        EXPECT_EQ(N1().Phase, "Departure");
    }
}

TEST_F(IfrDeparture, FiveThousandFeetAndTenMilesAreStillDepartures) {
    Phase("Departure");
    At(10, 5000);
    Reads(DepartureMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, DepartureMenu);
    EXPECT_EQ(N1().Phase, "Departure");
}

TEST_F(IfrDeparture, AboveFiveThousandFeetHeIsHandedOff) {
    Phase("Departure");
    At(9, 5001);
    Reads(DepartureMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, ContactArtcc);
    EXPECT_EQ(N1().Phase, "Acknowledge contact ARTCC (EN ROUTE)");
    EXPECT_TRUE(NothingForgotten());
}

TEST_F(IfrDeparture, BeyondTenMilesHeIsHandedOff) {
    Phase("Departure");
    At(11, 4999);
    Reads(DepartureMenu);
    Serve();
    EXPECT_EQ(N1().MenuText, ContactArtcc);
    EXPECT_EQ(N1().Phase, "Acknowledge contact ARTCC (EN ROUTE)");
}

TEST_F(IfrDeparture, ADigitThatFitsNothingHoldsTheHandOff) {
    Phase("Departure");
    At(11, 6000);
    Reads(DepartureMenu);
    Types(5);
    Serve();
    EXPECT_EQ(N1().MenuText, DepartureMenu);
    EXPECT_EQ(N1().Phase, "Departure");
    EXPECT_EQ(N1().Choice, 5);
    Types(0);
    Serve();
    EXPECT_EQ(N1().MenuText, ContactArtcc);
}

TEST_F(IfrDeparture, DepartureCanBeClosed) {
    Phase("Departure");
    Reads(DepartureMenu);
    Types(1);
    Serve();
    EXPECT_TRUE(IsReset());
}

TEST_F(IfrDeparture, TheHandOffIsRepeatedUntilAcknowledged) {
    Phase("Acknowledge contact ARTCC (EN ROUTE)");
    Reads(Traffic);
    Serve();
    EXPECT_EQ(N1().MenuText, ContactArtcc);
    EXPECT_EQ(N1().Phase, "Acknowledge contact ARTCC (EN ROUTE)");
}

TEST_F(IfrDeparture, TheAcknowledgedHandOffOffersArtcc) {
    Phase("Acknowledge contact ARTCC (EN ROUTE)");
    Reads(ContactArtcc);
    Types(1);
    Serve();
    EXPECT_EQ(N1().MenuText, TuneArtccMenu);
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().Phase, "Contact ARTCC (EN ROUTE)");
}

TEST_F(IfrDeparture, TheOfferOfArtccIsRepeated) {
    Phase("Contact ARTCC (EN ROUTE)");
    Reads("");
    Serve();
    EXPECT_EQ(N1().MenuText, TuneArtccMenu);
    EXPECT_EQ(N1().Phase, "Contact ARTCC (EN ROUTE)");
}

TEST_F(IfrDeparture, TuningArtccTakesHimEnRoute) {
    Phase("Contact ARTCC (EN ROUTE)");
    Reads(TuneArtccMenu);
    Types(1);
    Serve();
    EXPECT_EQ(N1().MenuText, "");
    EXPECT_EQ(N1().Choice, 0);
    EXPECT_EQ(N1().Phase, "En Route");
    EXPECT_EQ(N1().TunedFrequency, S.ArtccFrequency);
    EXPECT_TRUE(AllForgotten());
}

TEST_F(IfrDeparture, BothHandOffStatesCanBeClosed) {
    const std::pair<const char*, const char*> states[] = {
        {"Acknowledge contact ARTCC (EN ROUTE)", ContactArtcc}, {"Contact ARTCC (EN ROUTE)", TuneArtccMenu}};
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

TEST_F(IfrDeparture, ATrafficCallStandsUntilAnsweredInDeparture) {
    At(8, 3000);
    Phase("Departure");
    Reads(Traffic);
    Serve();
    Serve();
    EXPECT_EQ(N1().MenuText, Traffic);
}

// The state speaks behind the traffic scan of the same call, so there the call is only noted.
TEST_F(IfrDeparture, ATrafficCallGivesWayToTheHandOffAtOnce) {
    Field.Enters("N2");
    Field.Place("N1", 100, 5, 3000);
    Field.Place("N2", 100, 8, 3000);
    N1().AdvisedTraffic.clear();
    Phase("Acknowledge contact ARTCC (EN ROUTE)");
    Reads(Traffic);
    Serve();
    EXPECT_EQ(N1().MenuText, ContactArtcc);
    EXPECT_EQ(N1().AdvisedTraffic, "N2, ");
}

}  // namespace
}  // namespace corvenna
