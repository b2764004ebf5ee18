#include "airspace/tower_control.h"

#include "airspace/tower_scene.h"
#include "station/geometry.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char OnDeparture[] =
    "N1. Choose one of the following options for the Departure frequency: 1-Close ATC Services";
constexpr char OnApproach[] =
    "N1. Choose one of the following options for the Approach frequency: 1-Close ATC Services";

constexpr std::string_view Phases[] = {
    "",
    "Taxiing to runway",
    "Acknowledge Hold short",
    "Holding short in runway",
    "Acknowledge Takeoff",
    "Takingoff",
    "Acknowledge contact departure",
    "Contact Departure",
    "Acknowledge contact ARTCC (DEPARTURE)",
    "Contact ARTCC (DEPARTURE)",
    "Approach",
    "Acknowledge enter traffic pattern",
    "Flying traffic pattern",
    "Acknowledge Landing",
    "Landing",
    "Acknowledge going around",
    "Going Around",
    "Acknowledge contact approach",
    "Contact Approach",
    "Acknowledge contact ARTCC (GO AROUND)",
    "Contact ARTCC (GO AROUND)",
    "Acknowledge contact ground",
    "Contact Ground",
    "Contact tower",
    "no such phase",
};

/// "N1" in the air with a digit that waits, so many miles from the airport, in both queues.
class TowerRange : public ::testing::Test {
  protected:
    static constexpr char Menu[] = "N1. 1-Acknowledge 2-Close ATC Services";

    PlayerRecord& Serve(std::string_view phase, std::uint8_t flightRules, std::int16_t nauticalMiles,
                        std::uint8_t choice = 2) {
        Station& s = Field.S;
        ClearTraffic(s);
        PlayerRecord& pilot = Field.OnFrequency("N1", s.TowerFrequency, phase, flightRules);
        pilot.Altitude = 2000;
        pilot.MenuText = Menu;
        pilot.Choice = choice;
        pilot.AssignedHeading = "120";
        s.TakeoffQueue.Add("N1");
        s.LandingQueue.Add("N1");
        s.DistanceToAirport = nauticalMiles;
        TowerControl(s, pilot);
        return pilot;
    }

    std::size_t Queued() const {
        return Field.S.TakeoffQueue.Valid().size() + Field.S.LandingQueue.Valid().size();
    }

    void ExpectReset(const PlayerRecord& pilot) {
        EXPECT_EQ(OutcomeOf(pilot), (Outcome{"", "", "", Vfr}));
        EXPECT_EQ(pilot.InService, OpeningDialogue);
        EXPECT_EQ(pilot.AssignedHeading, "");
        EXPECT_EQ(Queued(), 0U);
    }

    void ExpectUntouched(const PlayerRecord& pilot, std::string_view phase, int rules, int choice = 2) {
        EXPECT_EQ(OutcomeOf(pilot), (Outcome{Menu, std::string(phase), std::string(Tower), rules, choice}));
        EXPECT_EQ(pilot.InService, UnderService);
        EXPECT_EQ(Queued(), 2U);
    }

    /// The next frequency has him; he is not reset and no queue is touched.
    void ExpectPassedOn(const PlayerRecord& pilot, std::string_view text, std::string_view phase,
                        std::string_view frequency) {
        EXPECT_EQ(OutcomeOf(pilot),
                  (Outcome{std::string(text), std::string(phase), std::string(frequency), Ifr}));
        EXPECT_EQ(pilot.InService, UnderService);
        EXPECT_EQ(pilot.AssignedHeading, "120");
        EXPECT_EQ(Queued(), 2U);
    }

    TestField Field;
};

TEST_F(TowerRange, AtExactly15MilesNothingHappensInAnyState) {
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        for (const std::string_view phase : Phases) {
            ExpectUntouched(Serve(phase, rules, 15), phase, rules);
            ExpectUntouched(Serve(phase, rules, 15, 0), phase, rules, 0);
        }
    }
}

TEST_F(TowerRange, At14MilesThePilotIsServed) {
    ExpectReset(Serve("Landing", Vfr, 14));
    ExpectReset(Serve("Landing", Ifr, 14));
}

TEST_F(TowerRange, AVfrPilotBeyondIsDroppedInAnyStateAndStaysInTheQueues) {
    for (const std::string_view phase : Phases) {
        for (const std::int16_t miles : {std::int16_t{16}, std::int16_t{32767}}) {
            const PlayerRecord& pilot = Serve(phase, Vfr, miles);
            EXPECT_EQ(OutcomeOf(pilot), (Outcome{"", "", "", Vfr})) << phase;
            EXPECT_EQ(pilot.InService, UnderService);
            EXPECT_EQ(pilot.AssignedHeading, "120");
            EXPECT_EQ(Queued(), 2U);
        }
    }
}

TEST_F(TowerRange, AnIfrPilotToldToContactDepartureIsPassedToDeparture) {
    ExpectPassedOn(Serve("Acknowledge contact departure", Ifr, 16), OnDeparture, "Contact Departure",
                   ApproachLabel);
}

TEST_F(TowerRange, AnIfrPilotContactingDepartureIsPassedToDeparture) {
    ExpectPassedOn(Serve("Contact Departure", Ifr, 16), OnDeparture, "Contact Departure", ApproachLabel);
}

TEST_F(TowerRange, AnIfrDepartureToldToContactArtccIsPassedToArtcc) {
    ExpectPassedOn(Serve("Acknowledge contact ARTCC (DEPARTURE)", Ifr, 16), "", "Departure", Artcc);
}

TEST_F(TowerRange, AnIfrDepartureContactingArtccIsPassedToArtcc) {
    ExpectPassedOn(Serve("Contact ARTCC (DEPARTURE)", Ifr, 16), "", "Departure", Artcc);
}

TEST_F(TowerRange, AnIfrPilotToldToContactApproachIsPassedToApproach) {
    ExpectPassedOn(Serve("Acknowledge contact approach", Ifr, 16), OnApproach, "Contact Approach",
                   ApproachLabel);
}

TEST_F(TowerRange, AnIfrPilotContactingApproachIsPassedToApproach) {
    ExpectPassedOn(Serve("Contact Approach", Ifr, 16), OnApproach, "Contact Approach", ApproachLabel);
}

TEST_F(TowerRange, AnIfrGoAroundToldToContactArtccIsPassedToArtcc) {
    ExpectPassedOn(Serve("Acknowledge contact ARTCC (GO AROUND)", Ifr, 16), "", "Missed Approach", Artcc);
}

TEST_F(TowerRange, AnIfrGoAroundContactingArtccIsPassedToArtcc) {
    ExpectPassedOn(Serve("Contact ARTCC (GO AROUND)", Ifr, 16), "", "Missed Approach", Artcc);
}

TEST_F(TowerRange, AnIfrPilotInLandingOrTakingoffBeyondStaysAsHeIs) {
    for (const std::string_view phase : {"Landing", "Takingoff"}) {
        ExpectUntouched(Serve(phase, Ifr, 16), phase, Ifr);
    }
}

TEST_F(TowerRange, AnIfrPilotWithAnotherContactBeyondStaysAsHeIs) {
    for (const std::string_view phase : {"Contact tower", "CONTACT DEPARTURE", "my contacts"}) {
        ExpectUntouched(Serve(phase, Ifr, 16), phase, Ifr);
    }
}

TEST_F(TowerRange, AnIfrPilotOnHisWayToGroundIsReset) {
    for (const std::string_view phase :
         {"Contact Ground", "Acknowledge contact ground", "CONTACT DEPARTURE GROUND"}) {
        ExpectReset(Serve(phase, Ifr, 16));
    }
}

TEST_F(TowerRange, AnyOtherIfrPilotBeyondIsReset) {
    for (const std::string_view phase :
         {"", "Taxiing to runway", "Acknowledge Hold short", "Holding short in runway", "Acknowledge Takeoff",
          "Approach", "Acknowledge Landing", "no such phase", "landing", "TAKINGOFF"}) {
        SCOPED_TRACE(phase);
        ExpectReset(Serve(phase, Ifr, 16));
    }
}

TEST_F(TowerRange, OfOtherFlightRulesNothingIsDoneAtAnyDistance) {
    for (const std::uint8_t rules : {std::uint8_t{2}, std::uint8_t{255}}) {
        for (const std::int16_t miles : {std::int16_t{0}, std::int16_t{15}, std::int16_t{16}}) {
            ExpectUntouched(Serve("Landing", rules, miles), "Landing", rules);
        }
    }
}

TEST_F(TowerRange, AnUnknownPhaseWithinTheRangeGetsNothing) {
    for (const std::string_view phase : {"no such phase", "landing", "Landing ", "Contact tower"}) {
        for (const std::uint8_t rules : {Vfr, Ifr}) ExpectUntouched(Serve(phase, rules, 5), phase, rules);
    }
    ExpectUntouched(Serve("", Ifr, 5), "", Ifr);
    ExpectUntouched(Serve("Approach", Vfr, 5), "Approach", Vfr);
}

TEST_F(TowerRange, WithoutAnApproachFrequencyTheLabelTakenOverIsEmpty) {
    Field.S.ApproachFrequency = "";
    ExpectPassedOn(Serve("Contact Departure", Ifr, 16), OnDeparture, "Contact Departure", "");
}

// ---- In the tick

TEST(TowerControl, ThePilotWhoFliesBeyond15MilesSeesTheFrequencyMenuInTheNextTick) {
    TowerScene scene("Flying traffic pattern");
    scene.IsIn("west", 18, 2000);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{"", "", "", Vfr}));
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
    scene.Field.Tick();
    EXPECT_EQ(scene.Field.LastHeard("N1"),
              "N1. Choose one of the following options: 1-Close ATC Services 2-Tune Approach Frequency");
}

TEST(TowerControl, AnErrorKeepsLaterPilotsFromTheirTurnInThisTickOnly) {
    TowerScene scene("Taxiing to runway");
    scene.Adds("N2", "Takingoff");
    scene.Adds("N3", "Taxiing to runway");
    scene.Field.Place("N2", 160, 3, 1000);
    EXPECT_THROW(scene.Field.Tick(), EmptyListError);
    EXPECT_THAT(scene.Field.Heard("N1"), ElementsAre(::testing::StartsWith("N1. ")));  // it stays sent
    EXPECT_EQ(scene.Field.Pilot("N3").MenuText, "");

    scene.QueueForTakeoff("N2");
    scene.Field.Tick();
    EXPECT_EQ(scene.Field.Pilot("N2").Phase, "");
    EXPECT_THAT(scene.Field.Heard("N3"), ::testing::Contains(::testing::StartsWith("N3. ")));
}

TEST(TowerControl, PilotsWhoJumpAboutAndFieldsWithoutARunwayDoNoHarm) {
    for (const bool noRunway : {false, true}) {
        for (const std::string_view phase : Phases) {
            for (const std::uint8_t rules : {Vfr, Ifr}) {
                TowerScene scene(phase, rules);
                scene.Adds("N2", "Landing");
                scene.QueueForLanding("N1");
                scene.QueueForTakeoff("N1");
                if (noRunway) {
                    scene.S.ActiveRunway = "";
                    scene.S.RunwayLength = scene.S.RunwayWidth = scene.S.RunwayElevation = 0;
                    scene.S.RunwayHeading = 0;
                    ComputeSectorCentres(scene.S);
                }
                for (const double latitude : {47.01, -47.01, 89.9, 47.01}) {
                    for (const double longitude : {-122.0, 58.0, 179.9}) {
                        scene.N1().Latitude = latitude;
                        scene.N1().Longitude = longitude;
                        for (const std::int32_t altitude : {std::numeric_limits<std::int32_t>::min(), 0, 400,
                                                            std::numeric_limits<std::int32_t>::max()}) {
                            scene.N1().Altitude = altitude;
                            try {
                                scene.Field.Tick();
                            } catch (const EmptyListError&) {
                                EXPECT_EQ(scene.S.LandingQueueCount() * scene.S.TakeoffQueueCount(), 0);
                            }
                        }
                    }
                }
            }
        }
    }
}

}  // namespace
}  // namespace corvenna
