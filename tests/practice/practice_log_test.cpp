#include "practice/practice_log.h"

#include <gmock/gmock.h>

#include "practice/practice_session.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double FieldFeet = 400;
constexpr std::string_view Welcome = "N1. Want to use our ATC services at Test Field?: 1-Use ATC services";
constexpr std::string_view FrequencyMenu = "N1. Choose one of the following options: 1-Close ATC Services";
constexpr std::string_view GroundMenu =
    "N1. Choose one of the following options for the Ground frequency: 1-Close ATC Services 2-Request Taxi "
    "to Runway";
constexpr std::string_view TowerMenu =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";

/// A pilot whose place a test says.
class PracticeLogTest : public testing::Test {
  protected:
    PracticeLogTest() { Came("N1", FieldFeet); }

    static std::unique_ptr<PracticePilot> PilotAt(std::string name, double feet, double latitude = 47) {
        PilotScript script;
        script.Name = std::move(name);
        script.Start = {latitude, -122, feet, 0, 0};
        script.Stays = true;
        return std::make_unique<PracticePilot>(nullptr, TestSessionName, "KTST", std::move(script));
    }

    void Came(const char* name, double feet) { Log.Came(*PilotAt(name, feet), 0ms); }
    void Flies(const char* name, double feet, std::chrono::milliseconds now, double latitude = 47) {
        Log.Flies(*PilotAt(name, feet, latitude), now);
    }
    void Hears(std::string_view text) { Log.Heard("N1", text, 1s); }

    std::vector<std::string> TroublesAt(std::chrono::milliseconds now) const {
        std::vector<std::string> lines;
        for (const PilotTrouble& trouble : Log.Troubles(now))
            lines.push_back(trouble.Name + ": " + trouble.What);
        return lines;
    }

    PracticeLog Log{FieldFeet, true};
};

// ---- Services

TEST(ReadServiceTest, TheMenuTellsTheFrequency) {
    EXPECT_EQ(ReadService(GroundMenu, ServiceHeard::None), ServiceHeard::Ground);
    EXPECT_EQ(ReadService(TowerMenu, ServiceHeard::Ground), ServiceHeard::Tower);
    EXPECT_EQ(ReadService(
                  "N1, Climb. Choose one of the following options for the Departure frequency: 1-Acknowledge",
                  ServiceHeard::Tower),
              ServiceHeard::Departure);
    EXPECT_EQ(ReadService("options for the Approach frequency", ServiceHeard::None), ServiceHeard::Approach);
    EXPECT_EQ(ReadService("options for the ARTCC frequency", ServiceHeard::None), ServiceHeard::Artcc);
    EXPECT_EQ(ReadService("options for the Advisory frequency (CTAF 122.9)", ServiceHeard::None),
              ServiceHeard::Advisory);
}

TEST(ReadServiceTest, TheMenuOfFrequenciesAndTheWelcomeAreNone) {
    EXPECT_EQ(ReadService(FrequencyMenu, ServiceHeard::Tower), ServiceHeard::None);
    EXPECT_EQ(ReadService(Welcome, ServiceHeard::Tower), ServiceHeard::None);
}

TEST(ReadServiceTest, ATextWithoutMenuLeavesItAsItIs) {
    EXPECT_EQ(ReadService("N1, Tower Services terminated.", ServiceHeard::Tower), ServiceHeard::Tower);
}

// ---- Counting

TEST_F(PracticeLogTest, WhoHasAMenuOfTheServiceIsServedAndCountsOnce) {
    Hears(Welcome);
    EXPECT_EQ(Log.Totals().Served, 0);
    Hears(FrequencyMenu);
    Hears(GroundMenu);
    EXPECT_EQ(Log.Totals().Served, 1);
}

TEST_F(PracticeLogTest, AChangeFromOneServiceToAnotherIsAHandoff) {
    Hears(FrequencyMenu);
    Hears(GroundMenu);
    EXPECT_EQ(Log.Totals().Handoffs, 0);
    Hears(TowerMenu);
    Hears(TowerMenu);
    EXPECT_EQ(Log.Totals().Handoffs, 1);
}

TEST_F(PracticeLogTest, ClearancesVectorsAndGoAroundsAreCountedByTheirWords) {
    Hears(
        "N1, Taxi to and hold short runway 16 using taxiway A. Choose one of the following options: "
        "1-Acknowledge");
    Hears("N1, Test Field Tower, Cleared for takeoff on runway 16. Choose one of the following options: 1-A");
    Hears("N1, Turn left heading 210 degrees. Choose one of the following options: 1-A");
    Hears("N1, Go around. Choose one of the following options: 1-A");
    EXPECT_EQ(Log.Totals().Clearances, 2);
    EXPECT_EQ(Log.Totals().Vectors, 1);
    EXPECT_EQ(Log.Totals().GoArounds, 1);
}

TEST_F(PracticeLogTest, WhatOthersAreToldDoesNotCount) {
    Hears(
        "N12, Test Field Tower, Cleared for takeoff on runway 16. Choose one of the following options: 1-A");
    EXPECT_EQ(Log.Totals().Clearances, 0);
    EXPECT_EQ(Log.Totals().Served, 0);
}

TEST_F(PracticeLogTest, FromTheAirToTheGroundIsALanding) {
    Flies("N1", FieldFeet + 31, 1s);
    EXPECT_EQ(Log.Totals().Landings, 0);
    Flies("N1", FieldFeet, 2s);
    Flies("N1", FieldFeet, 3s);
    EXPECT_EQ(Log.Totals().Landings, 1);
}

TEST_F(PracticeLogTest, CompletedIsWhoLeavesAtTheEndOfHisFlight) {
    Came("N2", FieldFeet);
    Log.Left("N1", true);
    Log.Left("N2", false);
    Log.Left("N3", true);
    EXPECT_EQ(Log.Totals().Pilots, 2);
    EXPECT_EQ(Log.Totals().Completed, 1);
}

// ---- Who is stuck

TEST_F(PracticeLogTest, WhoStandsStillTooLongIsStuck) {
    Hears(GroundMenu);
    Flies("N1", FieldFeet, 15min);
    EXPECT_THAT(TroublesAt(15min), IsEmpty());
    EXPECT_THAT(TroublesAt(15min + 1ms), ElementsAre("N1: stuck on the ground for 15 minutes; last heard: " +
                                                     std::string(GroundMenu)));
}

TEST_F(PracticeLogTest, WhoWaitsForHisTurnWhileOthersTakeOffAndLandIsNotStuckForLong) {
    Came("N2", FieldFeet);
    Hears(GroundMenu);
    for (auto minute = 5min; minute <= 45min; minute += 5min) {
        Flies("N2", minute / 5min % 2 == 0 ? FieldFeet : FieldFeet + 500, minute);
        Flies("N1", FieldFeet, minute);
    }
    Log.Left("N2", true);
    EXPECT_THAT(TroublesAt(45min), IsEmpty());
    EXPECT_THAT(TroublesAt(45min + 1ms), ElementsAre("N1: stuck on the ground for 45 minutes; last heard: " +
                                                     std::string(GroundMenu)));
}

TEST_F(PracticeLogTest, WhoIsUnrulyIsToldApart) {
    PilotScript script;
    script.Name = "N2";
    script.Start = {47, -122, FieldFeet, 0, 0};
    script.Unruly = true;
    Log.Came(PracticePilot(nullptr, TestSessionName, "KTST", std::move(script)), 0ms);
    Log.Left("N1", true);
    EXPECT_THAT(TroublesAt(1h), IsEmpty());
    EXPECT_THAT(Log.UnrulyTroubles(1h), testing::SizeIs(1));
}

TEST_F(PracticeLogTest, WhoMovesIsNotStuck) {
    Hears(GroundMenu);
    Flies("N1", FieldFeet, 10min, 47.01);
    EXPECT_THAT(TroublesAt(25min), IsEmpty());
    EXPECT_THAT(TroublesAt(25min + 1ms), testing::SizeIs(1));
}

TEST_F(PracticeLogTest, WhoIsInTheAirTooLongIsStuckThere) {
    Hears(TowerMenu);
    Flies("N1", 3000, 1min);
    EXPECT_THAT(TroublesAt(121min), IsEmpty());
    EXPECT_THAT(TroublesAt(122min),
                ElementsAre("N1: stuck in the air for 121 minutes; last heard: " + std::string(TowerMenu)));
}

TEST_F(PracticeLogTest, WhomNobodyWelcomesIsNamed) {
    EXPECT_THAT(TroublesAt(3min), IsEmpty());
    EXPECT_THAT(TroublesAt(4min), ElementsAre("N1: has never been welcomed"));
}

TEST_F(PracticeLogTest, WhoHasLeftIsNotInTheWay) {
    Log.Left("N1", false);
    EXPECT_THAT(TroublesAt(24h), IsEmpty());
}

// ---- Tracks

TEST_F(PracticeLogTest, KeepsATrackWithTheService) {
    Flies("N1", FieldFeet, 0s);
    Hears(GroundMenu);
    Flies("N1", FieldFeet, 1s);
    Flies("N1", FieldFeet, 2s);
    const auto& track = Log.Pilots().at("N1").Track;
    ASSERT_EQ(track.size(), 2u);
    EXPECT_EQ(track[0].On, ServiceHeard::None);
    EXPECT_EQ(track[1].On, ServiceHeard::Ground);
    EXPECT_EQ(track[1].Time, 1s);
}

TEST_F(PracticeLogTest, WithoutTracksWhoHasLeftIsForgotten) {
    PracticeLog slim{FieldFeet, false};
    slim.Came(*PilotAt("N1", FieldFeet), 0ms);
    slim.Flies(*PilotAt("N1", FieldFeet), 1s);
    slim.Heard("N1", Welcome, 1s);
    EXPECT_THAT(slim.Pilots().at("N1").Track, IsEmpty());
    EXPECT_THAT(slim.Pilots().at("N1").Texts, IsEmpty());
    slim.Left("N1", true);
    EXPECT_THAT(slim.Pilots(), IsEmpty());
}

TEST_F(PracticeLogTest, RemarksWhatIsWorthALine) {
    std::vector<std::string> lines;
    Log.Remarkable = [&](auto name, auto what) {
        lines.push_back(std::string(name) + " " + std::string(what));
    };
    Came("N2", 5000);
    Flies("N1", 500, 1s);
    Flies("N2", FieldFeet, 2s);
    Log.Left("N1", true);
    Log.Left("N2", false);
    EXPECT_THAT(lines, ElementsAre("N2 arrives by air", "N1 takes off", "N2 lands",
                                   "N1 has completed the flight", "N2 has left in mid-flight"));
}

}  // namespace
}  // namespace corvenna
