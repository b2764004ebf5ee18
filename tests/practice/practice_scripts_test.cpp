#include "practice/practice_scripts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "station/geometry.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;

bool Chooses(const PilotScript& script, std::string_view label) {
    return std::any_of(script.Steps.begin(), script.Steps.end(), [&](const PilotStep& step) {
        const auto* choose = std::get_if<Choose>(&step);
        return choose != nullptr && choose->Label == label;
    });
}

bool AsksAgain(const PilotScript& script) {
    return std::any_of(script.Steps.begin(), script.Steps.end(),
                       [](const PilotStep& step) { return std::holds_alternative<AskAgain>(step); });
}

const FlightPlan& PlanOf(const PilotScript& script) { return std::get<Fly>(script.Steps.back()).Plan; }

PilotScript ScriptAt(const Station& station, int number) {
    return ScriptOfPilot(std::make_shared<AirportChart>(station), number, 0ms);
}

TEST(PracticeScripts, TheFirstFliesACircuitUnderVisualRules) {
    const TestField field;
    const PilotScript script = ScriptAt(field.S, 0);
    EXPECT_TRUE(Chooses(script, "Use ATC services"));
    EXPECT_TRUE(Chooses(script, "VFR"));
    EXPECT_TRUE(AsksAgain(script));
    EXPECT_EQ(PlanOf(script).Kind, FlightKind::VisualCircuit);
    EXPECT_FALSE(PlanOf(script).Instrument);
    EXPECT_EQ(script.Start.AltitudeFeet, 400);
}

TEST(PracticeScripts, TheSecondFliesOutAndBackUnderInstrumentRules) {
    const TestField field;
    const PilotScript script = ScriptAt(field.S, 1);
    EXPECT_TRUE(Chooses(script, "IFR"));
    EXPECT_EQ(PlanOf(script).Kind, FlightKind::InstrumentRoundTrip);
    EXPECT_TRUE(PlanOf(script).Instrument);
}

TEST(PracticeScripts, TheThirdArrivesTenMilesOutOnTheApproachSide) {
    const TestField field;
    const PilotScript script = ScriptAt(field.S, 2);
    EXPECT_EQ(PlanOf(script).Kind, FlightKind::VisualArrival);
    EXPECT_EQ(script.Start.AltitudeFeet, 2400);
    EXPECT_EQ(DistanceNm(field.S.RunwayLatitude, field.S.RunwayLongitude, script.Start.Latitude,
                         script.Start.Longitude),
              10);
    EXPECT_NEAR(BearingTo(field.S, field.S.RunwayLatitude, field.S.RunwayLongitude, script.Start.Latitude,
                          script.Start.Longitude),
                340, 1);
}

TEST(PracticeScripts, OfTheOthersTwoArriveUnderInstrumentRulesAndOneGoesForGood) {
    const TestField field;
    EXPECT_EQ(PlanOf(ScriptAt(field.S, 3)).Kind, FlightKind::InstrumentArrival);
    EXPECT_FALSE(PlanOf(ScriptAt(field.S, 3)).MissesFirstApproach);
    EXPECT_EQ(PlanOf(ScriptAt(field.S, 4)).Kind, FlightKind::InstrumentArrival);
    EXPECT_TRUE(PlanOf(ScriptAt(field.S, 4)).MissesFirstApproach);
    EXPECT_EQ(PlanOf(ScriptAt(field.S, 5)).Kind, FlightKind::InstrumentDeparture);
}

TEST(PracticeScripts, TheSeventhFliesOutAndBackUnderVisualRulesAndAfterEightTheyBeginAnew) {
    const TestField field;
    EXPECT_EQ(PlanOf(ScriptAt(field.S, 6)).Kind, FlightKind::VisualRoundTrip);
    EXPECT_FALSE(PlanOf(ScriptAt(field.S, 6)).Instrument);
    EXPECT_EQ(PlanOf(ScriptAt(field.S, 8)).Kind, FlightKind::VisualCircuit);
}

TEST(PracticeScripts, TheEighthComesFromFarAndEachRoundFromElsewhere) {
    const TestField field;
    const Place airport{field.S.RunwayLatitude, field.S.RunwayLongitude};
    const PilotScript first = ScriptAt(field.S, 7);
    const PilotScript next = ScriptAt(field.S, 15);
    EXPECT_NEAR(MilesBetween(airport, first.Start.Where()), 150, 0.1);
    EXPECT_NEAR(MilesBetween(airport, next.Start.Where()), 150, 0.1);
    EXPECT_GT(MilesBetween(first.Start.Where(), next.Start.Where()), 50);
}

TEST(PracticeScripts, CoursesAreTrueDegrees) {
    TestField field;
    field.S.MagVarGrid.assign(MagVarGridSize, 3277);  // 18 degrees east
    EXPECT_NEAR(PlanOf(ScriptAt(field.S, 1)).OutboundCourse, 160 + 18 + 60, 1);
    EXPECT_NEAR(PlanOf(ScriptAt(field.S, 3)).OutboundCourse, 160 + 18 - 60, 1);
}

TEST(PracticeScripts, WithoutATowerEverybodyAnnouncesHimselfUnderEitherRules) {
    TestField field;
    field.S.GroundFrequency.clear();
    field.S.TowerFrequency.clear();
    for (int number : {0, 1, 2, 3}) {
        const PilotScript script = ScriptAt(field.S, number);
        EXPECT_TRUE(Chooses(script, number % 2 == 0 ? "VFR" : "IFR"));
        EXPECT_EQ(PlanOf(script).Kind, FlightKind::SelfAnnounced);
        EXPECT_TRUE(AsksAgain(script));
    }
}

TEST(PracticeScripts, PilotsStandAtParkingSpotsOneAfterTheOther) {
    TestField field;
    field.S.AirportParkingSpots = {{"GATE 1", 50, 47.1, -122.1, 0}, {"GATE 2", 50, 47.2, -122.2, 0}};
    EXPECT_EQ(ScriptAt(field.S, 0).Start.Latitude, 47.2);
    EXPECT_NEAR(ScriptAt(field.S, 1).Start.Latitude, 47.1, 0.001);  // a row farther
}

TEST(PracticeScripts, WhereThereAreMorePilotsThanSpotsTheyStandInRows) {
    TestField field;
    field.S.AirportParkingSpots = {{"GATE 1", 50, 47.001, -122.01, 0}};
    const AirportChart chart(field.S);
    const Place first = {47.001, -122.01};
    const Place second = ScriptAt(field.S, 0).Start.Where();
    const Place third = ScriptAt(field.S, 1).Start.Where();
    EXPECT_NEAR(MilesBetween(first, second), 0.02, 1e-6);
    EXPECT_NEAR(MilesBetween(first, third), 0.04, 1e-6);
    EXPECT_GT(std::abs(chart.SeenFromRunway(second).Right), std::abs(chart.SeenFromRunway(first).Right));
}

TEST(PracticeScripts, WithoutParkingTheyStandBesideTheRunway) {
    const TestField field;
    const AirportChart chart(field.S);
    const Place place = ScriptAt(field.S, 0).Start.Where();
    EXPECT_FALSE(chart.IsOnRunway(place));
    EXPECT_LT(MilesBetween(chart.FromRunway({chart.RunwayMiles() / 2, 0}), place), 0.2);
}

TEST(PracticeScripts, CallsignsDifferAndNoneBeginsAnother) {
    const TestField field;
    std::set<std::string> names;
    for (int number = 0; number < 1000; ++number) names.insert(ScriptAt(field.S, number).Name);
    ASSERT_EQ(names.size(), 1000u);
    for (auto name = names.begin(), next = std::next(name); next != names.end(); ++name, ++next) {
        EXPECT_FALSE(next->starts_with(*name));
    }
}

}  // namespace
}  // namespace corvenna
