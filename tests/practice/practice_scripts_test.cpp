#include "practice/practice_scripts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "station/geometry.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;

bool Wants(const PilotScript& script, std::string_view label) {
    return std::any_of(script.Steps.begin(), script.Steps.end(), [&](const PilotStep& step) {
        const auto* choose = std::get_if<Choose>(&step);
        return choose != nullptr && choose->Label == label;
    });
}

bool AsksAgain(const PilotScript& script) {
    return std::any_of(script.Steps.begin(), script.Steps.end(),
                       [](const PilotStep& step) { return std::holds_alternative<AskAgain>(step); });
}

TEST(PracticeScripts, TheFirstOfThreeDepartsUnderVisualRules) {
    const TestField field;
    const PilotScript script = ScriptOfPilot(field.S, 0, 0ms);
    EXPECT_TRUE(Wants(script, "VFR"));
    EXPECT_TRUE(Wants(script, "Tune Test Field Ground Frequency"));
    EXPECT_TRUE(Wants(script, "Request Taxi to Runway"));
    EXPECT_TRUE(Wants(script, "Request VFR Takeoff Clearance"));
    EXPECT_TRUE(AsksAgain(script));
    EXPECT_EQ(script.Start.AltitudeFeet, 400);
}

TEST(PracticeScripts, TheSecondDepartsUnderInstrumentRules) {
    const TestField field;
    const PilotScript script = ScriptOfPilot(field.S, 1, 0ms);
    EXPECT_TRUE(Wants(script, "IFR"));
    EXPECT_TRUE(Wants(script, "Request Taxi IFR"));
    EXPECT_TRUE(Wants(script, "Request IFR Takeoff Clearance"));
}

TEST(PracticeScripts, TheThirdArrivesTenMilesOutOnTheApproachSide) {
    const TestField field;
    const PilotScript script = ScriptOfPilot(field.S, 2, 0ms);
    EXPECT_TRUE(Wants(script, "Tune Test Field Tower Frequency"));
    EXPECT_EQ(script.Start.AltitudeFeet, 2400);
    EXPECT_EQ(DistanceNm(field.S.RunwayLatitude, field.S.RunwayLongitude, script.Start.Latitude,
                         script.Start.Longitude),
              10);
    EXPECT_NEAR(BearingTo(field.S, field.S.RunwayLatitude, field.S.RunwayLongitude, script.Start.Latitude,
                          script.Start.Longitude),
                340, 1);
}

TEST(PracticeScripts, DeparturesLeaveAlongTheRunwayByTrueDegrees) {
    TestField field;
    field.S.MagVarGrid.assign(MagVarGridSize, 3277);  // 18 degrees east
    const PilotScript script = ScriptOfPilot(field.S, 0, 0ms);
    const auto& last = std::get<Travel>(script.Steps[script.Steps.size() - 2]).To;
    EXPECT_NEAR(
        BearingTo(field.S, field.S.RunwayLatitude, field.S.RunwayLongitude, last.Latitude, last.Longitude),
        field.S.RunwayHeading, 1);
}

TEST(PracticeScripts, ArrivalsAskForAGateWhereThereAreAny) {
    TestField field;
    field.S.AirportParkingSpots = {{"PARKING 1", 50, 47.1, -122.1, 0}};
    EXPECT_TRUE(Wants(ScriptOfPilot(field.S, 2, 0ms), "Request Taxi to Parking"));
    field.S.AirportParkingSpots.push_back({"GATE A 1", 50, 47.2, -122.2, 0});
    EXPECT_TRUE(Wants(ScriptOfPilot(field.S, 2, 0ms), "Request Taxi to Gate"));
}

TEST(PracticeScripts, DeparturesTaxiToTheHoldingPointNearestToTheThreshold) {
    TestField field;
    field.S.AirportTaxiPoints = {
        {1, 47.0100, -122.0001}, {2, 47.0, -122.001}, {2, 47.009, -122.001}, {2, 47.0, -122.0}};
    const PilotScript script = ScriptOfPilot(field.S, 0, 0ms);
    const auto first = std::find_if(script.Steps.begin(), script.Steps.end(), [](const PilotStep& step) {
        return std::holds_alternative<Travel>(step);
    });
    ASSERT_NE(first, script.Steps.end());
    EXPECT_EQ(std::get<Travel>(*first).To.Latitude, 47.009);
}

TEST(PracticeScripts, WithoutAHoldingPointTheyTaxiToTheThreshold) {
    const TestField field;
    const PilotScript script = ScriptOfPilot(field.S, 0, 0ms);
    const auto first = std::find_if(script.Steps.begin(), script.Steps.end(), [](const PilotStep& step) {
        return std::holds_alternative<Travel>(step);
    });
    ASSERT_NE(first, script.Steps.end());
    EXPECT_EQ(std::get<Travel>(*first).To.Latitude, field.S.RunwayLatitude);
}

TEST(PracticeScripts, WithoutATowerEverybodyAnnouncesHimselfUnderEitherRules) {
    TestField field;
    field.S.GroundFrequency.clear();
    field.S.TowerFrequency.clear();
    for (int number : {0, 1, 2, 3}) {
        const PilotScript script = ScriptOfPilot(field.S, number, 0ms);
        EXPECT_TRUE(Wants(script, number % 2 == 0 ? "VFR" : "IFR"));
        EXPECT_TRUE(Wants(script, "Announce Takeoff"));
        EXPECT_TRUE(AsksAgain(script));
    }
}

TEST(PracticeScripts, PilotsStandAtParkingSpotsOneAfterTheOther) {
    TestField field;
    field.S.AirportParkingSpots = {{"GATE 1", 50, 47.1, -122.1, 0}, {"GATE 2", 50, 47.2, -122.2, 0}};
    EXPECT_EQ(ScriptOfOnlooker(field.S, "YOU1").Start.Latitude, 47.1);
    EXPECT_EQ(ScriptOfPilot(field.S, 0, 0ms).Start.Latitude, 47.2);
    EXPECT_EQ(ScriptOfPilot(field.S, 1, 0ms).Start.Latitude, 47.1);
}

TEST(PracticeScripts, WithoutParkingTheyStandInTheMiddle) {
    const TestField field;
    EXPECT_EQ(ScriptOfPilot(field.S, 0, 0ms).Start.Latitude, field.S.AirportLatitude);
    EXPECT_EQ(ScriptOfPilot(field.S, 0, 0ms).Start.Longitude, field.S.AirportLongitude);
}

TEST(PracticeScripts, CallsignsDifferAndNoneBeginsAnother) {
    const TestField field;
    std::set<std::string> names;
    for (int number = 0; number < 1000; ++number) names.insert(ScriptOfPilot(field.S, number, 0ms).Name);
    ASSERT_EQ(names.size(), 1000u);
    for (auto name = names.begin(), next = std::next(name); next != names.end(); ++name, ++next) {
        EXPECT_FALSE(next->starts_with(*name));
    }
}

TEST(PracticeScripts, TheOnlookerStaysAndDoesNothing) {
    const TestField field;
    const PilotScript script = ScriptOfOnlooker(field.S, "YOU1");
    EXPECT_EQ(script.Name, "YOU1");
    EXPECT_TRUE(script.Stays);
    EXPECT_TRUE(script.Steps.empty());
}

}  // namespace
}  // namespace corvenna
