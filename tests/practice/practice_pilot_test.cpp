#include "practice/practice_pilot.h"

#include <gmock/gmock.h>

#include "practice/practice_session.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view Welcome = "N1. Want to use our ATC services at Test Field?: 1-Use ATC services";
constexpr std::string_view FlightType =
    "N1. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services";
constexpr std::string_view FrequencyMenu =
    "N1. Choose one of the following options: 1-Close ATC Services 2-Tune Test Field Ground Frequency";
constexpr std::string_view HoldPosition =
    "N1, Hold position, caution other traffic. Choose one of the following options for the Ground frequency: "
    "1-Acknowledge 2-Close ATC Services";

/// A host, a controller played by hand, and a pilot at KTST.
class PracticePilotTest : public testing::Test {
  protected:
    PilotScript Script(std::vector<PilotStep> steps) {
        PilotScript script;
        script.Name = "N1";
        script.Aircraft = "Piper Cub";
        script.Start = {47, -122, 400, 90};
        script.Steps = std::move(steps);
        script.Stays = true;
        return script;
    }

    std::unique_ptr<PracticePilot> Pilot(PilotScript script, PilotEvents events = {}) {
        return std::make_unique<PracticePilot>(std::make_unique<MemorySession>(Network), TestSessionName,
                                               "KTST", std::move(script), std::move(events));
    }

    /// A pilot who has been admitted at time 0.
    std::unique_ptr<PracticePilot> AdmittedPilot(PilotScript script, PilotEvents events = {}) {
        auto pilot = Pilot(std::move(script), std::move(events));
        pilot->Step(0ms);
        Host.Step();
        pilot->Step(0ms);
        Controller.Received();
        return pilot;
    }

    void Says(std::string_view text) { Controller.Send(Controller.IdOf("N1"), WriteChat(text)); }

    MemoryNetwork Network;
    TestHost Host{Network, 8};
    HandPlayed Controller{Network, "KTST_Controller"};
};

// ---- Arriving

TEST_F(PracticePilotTest, HeIsNotThereBeforeHisTime) {
    PilotScript script = Script({});
    script.ArrivesAt = 5000ms;
    const auto pilot = Pilot(script);
    pilot->Step(4999ms);
    EXPECT_EQ(Controller.IdOf("N1"), 0);
    pilot->Step(5000ms);
    EXPECT_NE(Controller.IdOf("N1"), 0);
}

TEST_F(PracticePilotTest, HeAsksToBeAdmittedAndThenIntroducesHimself) {
    const auto pilot = Pilot(Script({}));
    pilot->Step(0ms);
    EXPECT_EQ(Controller.Received(MessageId::RequestJoinAsPlayer).size(), 1u);
    EXPECT_FALSE(pilot->InSession());
    Host.Step();
    pilot->Step(100ms);
    EXPECT_TRUE(pilot->InSession());
    auto introductions = Controller.Received(MessageId::AdmitPlayer);
    ASSERT_EQ(introductions.size(), 1u);
    EXPECT_EQ(introductions[0].Message.ReadLong(), Controller.IdOf("N1"));
}

TEST_F(PracticePilotTest, AnAdmissionOfSomebodyElseIsNotHis) {
    const auto pilot = Pilot(Script({}));
    pilot->Step(0ms);
    Controller.Send(Controller.IdOf("N1"), WriteAdmission(MessageId::AdmitPlayer, 4711));
    pilot->Step(100ms);
    EXPECT_FALSE(pilot->InSession());
}

TEST_F(PracticePilotTest, WhoIsRefusedGoes) {
    const auto pilot = Pilot(Script({}));
    pilot->Step(0ms);
    Controller.Send(Controller.IdOf("N1"), WriteEmpty(MessageId::RefusePlayer));
    pilot->Step(100ms);
    EXPECT_TRUE(pilot->Gone());
    EXPECT_EQ(Controller.IdOf("N1"), 0);
}

TEST_F(PracticePilotTest, ASessionThatIsNotThereIsAnError) {
    PracticePilot pilot(std::make_unique<MemorySession>(Network), "Elsewhere", "KTST", Script({}));
    EXPECT_THROW(pilot.Step(0ms), SessionError);
}

// ---- As a simulator

TEST_F(PracticePilotTest, AskedWhoHeIsHeTells) {
    const auto pilot = AdmittedPilot(Script({}));
    Controller.Send(Controller.IdOf("N1"), WriteEmpty(MessageId::WhoAreYou));
    pilot->Step(100ms);
    auto answers = Controller.Received(MessageId::AdmitPlayer);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].To, Controller.Id);
    EXPECT_EQ(answers[0].Message.ReadLong(), Controller.IdOf("N1"));
}

TEST_F(PracticePilotTest, AskedForHisAircraftHeTells) {
    const auto pilot = AdmittedPilot(Script({}));
    Controller.Send(Controller.IdOf("N1"), WriteEmpty(MessageId::AskAircraft));
    pilot->Step(100ms);
    auto answers = Controller.Received(MessageId::Aircraft);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(ReadAircraft(answers[0].Message, answers[0].PayloadSize), "Piper Cub");
}

TEST_F(PracticePilotTest, HeTellsHisPositionOnceASecond) {
    const auto pilot = AdmittedPilot(Script({}));
    pilot->Step(999ms);
    EXPECT_THAT(Controller.Received(MessageId::Position), IsEmpty());
    pilot->Step(1000ms);
    pilot->Step(1100ms);
    auto positions = Controller.Received(MessageId::Position);
    ASSERT_EQ(positions.size(), 1u);
    EXPECT_EQ(ReadPosition(positions[0].Message, MessageId::Position), PackPosition(47, -122, 400, 90));
}

TEST_F(PracticePilotTest, MessagesThatEndTooEarlyArePassedOver) {
    const auto pilot = AdmittedPilot(Script({}));
    const std::int32_t id = Controller.IdOf("N1");
    Controller.Send(id, DirectPlayMessage());
    DirectPlayMessage chat;
    chat.WriteLong(MessageId::Chat);
    chat.WriteLong(2147483647);
    Controller.Send(id, chat);
    Controller.Send(id, WriteEmpty(MessageId::AskAircraft));
    pilot->Step(100ms);
    EXPECT_EQ(Controller.Received(MessageId::Aircraft).size(), 1u);
}

TEST_F(PracticePilotTest, WhomTheHostRemovesIsGone) {
    const auto pilot = AdmittedPilot(Script({}));
    Controller.Send(Controller.IdOf("N1"), WriteEmpty(MessageId::Removed));
    pilot->Step(100ms);
    EXPECT_TRUE(pilot->Gone());
}

// ---- As a pilot

TEST_F(PracticePilotTest, HeThinksBeforeHeAnswers) {
    const auto pilot = AdmittedPilot(Script({Choose{"Use ATC services"}}));
    Says(Welcome);
    pilot->Step(1000ms);
    pilot->Step(2999ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    pilot->Step(3000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("KTST,1"));
}

TEST_F(PracticePilotTest, HePicksOptionsByTheirLabels) {
    const auto pilot = AdmittedPilot(
        Script({Choose{"Use ATC services"}, Choose{"IFR"}, Choose{"Tune Test Field Ground Frequency"}}));
    auto now = 1000ms;
    for (const auto text : {Welcome, FlightType, FrequencyMenu}) {
        Says(text);
        for (int i = 0; i < 40; ++i) pilot->Step(now += 100ms);
    }
    EXPECT_THAT(Controller.Texts(), ElementsAre("KTST,1", "KTST,2", "2"));
}

TEST_F(PracticePilotTest, AnAnswerIsGivenOnce) {
    const auto pilot = AdmittedPilot(Script({Choose{"Use ATC services"}, Choose{"Use ATC services"}}));
    Says(Welcome);
    for (auto now = 1000ms; now < 15000ms; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), ElementsAre("KTST,1"));
}

TEST_F(PracticePilotTest, ATextForSomebodyElseIsNotAnswered) {
    const auto pilot = AdmittedPilot(Script({Choose{"Use ATC services"}}));
    Says("N12. Want to use our ATC services at Test Field?: 1-Use ATC services");
    for (auto now = 1000ms; now < 15000ms; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    EXPECT_EQ(pilot->StandingText(), "");
}

TEST_F(PracticePilotTest, HeAsksForARepeat) {
    const auto pilot = AdmittedPilot(Script({AskAgain{}}));
    for (auto now = 100ms; now < 1000ms; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), IsEmpty());  // nothing has been said yet
    Says(FrequencyMenu);
    for (auto now = 1000ms; now < 5000ms; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), ElementsAre("R"));
}

TEST_F(PracticePilotTest, AnInstructionIsAcknowledgedWhateverTheScriptSays) {
    const auto pilot = AdmittedPilot(Script({Choose{"Something else"}}));
    Says(HoldPosition);
    for (auto now = 1000ms; now < 5000ms; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), ElementsAre("1"));
}

TEST_F(PracticePilotTest, WhatHeIsNotOfferedHeWaitsForUntilHisPatienceEnds) {
    const auto pilot =
        AdmittedPilot(Script({Choose{"Something else"}, Choose{"Tune Test Field Ground Frequency"}}));
    Says(FrequencyMenu);
    pilot->Step(1000ms);
    pilot->Step(20999ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    pilot->Step(21000ms);
    pilot->Step(21001ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("2"));
}

TEST_F(PracticePilotTest, AControllerWhoComesLateIsWaitedFor) {
    const auto pilot = AdmittedPilot(Script({Choose{"Tune Test Field Ground Frequency"}, AskAgain{}}));
    for (auto now = 1000ms; now < 90000ms; now += 1000ms) pilot->Step(now);
    Says(FrequencyMenu);
    pilot->Step(90000ms);
    pilot->Step(93000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("2"));
}

TEST_F(PracticePilotTest, TrafficThatIsCalledOutIsInSight) {
    const auto pilot = AdmittedPilot(Script({Choose{"Something else"}}));
    Says(
        "N1, Traffic is 3 miles, two o'clock, 4000 ft, type Piper Cub. Report them in sight. Choose one of "
        "the "
        "following options for the ARTCC frequency: 1-Report traffic in sight 2-Report traffic not in sight "
        "3-Close ATC Services");
    for (auto now = 1000ms; now < 5000ms; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), ElementsAre("1"));
}

// ---- In flight

constexpr std::string_view GroundMenu =
    "N1. Choose one of the following options for the Ground frequency: 1-Request Taxi to Runway 2-Close ATC "
    "Services";
constexpr std::string_view TaxiClearance =
    "N1, Taxi to and hold short runway 16. Contact tower on 119.9 when ready. Choose one of the following "
    "options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";

class PracticePilotInFlightTest : public PracticePilotTest {
  protected:
    PracticePilotInFlightTest() {
        Pilot = AdmittedPilot(Script({Fly{std::make_shared<AirportChart>(Field.S), {}}}));
    }

    void StepTo(std::chrono::milliseconds until) {
        for (; Now <= until; Now += 100ms) Pilot->Step(Now);
    }

    Place Runway() const { return {Field.S.RunwayLatitude, Field.S.RunwayLongitude}; }

    TestField Field;
    std::unique_ptr<PracticePilot> Pilot;
    std::chrono::milliseconds Now{100};
};

TEST_F(PracticePilotInFlightTest, HePicksWhatTheFlightWants) {
    StepTo(1000ms);
    Says(GroundMenu);
    StepTo(5000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("1"));
}

TEST_F(PracticePilotInFlightTest, HeObeysWhatIsMeantForHim) {
    StepTo(1000ms);
    Says("N2, Taxi to and hold short runway 16.");
    StepTo(1200ms);
    EXPECT_EQ(Pilot->TheFlight()->Stage(), FlightStage::AtRamp);
    Says(TaxiClearance);
    StepTo(5000ms);
    EXPECT_EQ(Pilot->TheFlight()->Stage(), FlightStage::TaxiingOut);
    EXPECT_THAT(Controller.Texts(), ElementsAre("1"));
    EXPECT_GT(Pilot->Aircraft().Knots, 0);
}

TEST_F(PracticePilotInFlightTest, AfterHalfAMinuteOfSilenceHeAsksForARepeat) {
    StepTo(1000ms);
    Says(FrequencyMenu.substr(0, FrequencyMenu.find(" 2-")));
    StepTo(31000ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    StepTo(31100ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("R"));
    Says(FrequencyMenu.substr(0, FrequencyMenu.find(" 2-")));
    StepTo(91000ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    StepTo(91200ms);  // nothing new: twice as long as before
    EXPECT_THAT(Controller.Texts(), ElementsAre("R"));
}

TEST_F(PracticePilotInFlightTest, WhoIsHeldAsksAgainEveryHalfMinute) {
    StepTo(1000ms);
    Says("N1, Taxi to and hold short runway 16 using taxiway A .");
    StepTo(2000ms);
    const std::string_view held =
        "N1. Choose one of the following options for the Ground frequency: 1-Close ATC Services";
    int asked = 0;
    Says(held);
    for (auto now = 2000ms; now <= 200s; now += 100ms) {
        StepTo(now);
        for (const std::string& text : Controller.Texts()) {
            EXPECT_EQ(text, "R");
            ++asked;
            Says(held);
        }
    }
    EXPECT_GE(asked, 6);
}

TEST_F(PracticePilotInFlightTest, WhoeverIsNotHeardAtAllJoinsAnew) {
    StepTo(1000ms);
    Says(FrequencyMenu.substr(0, FrequencyMenu.find(" 2-")));
    const std::int32_t id = Controller.IdOf("N1");
    StepTo(120000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("R", "R", "R"));
    EXPECT_EQ(Controller.IdOf("N1"), id);
    StepTo(122000ms);
    EXPECT_EQ(Controller.Received(MessageId::RequestJoinAsPlayer).size(), 1u);
    EXPECT_NE(Controller.IdOf("N1"), id);
}

TEST_F(PracticePilotInFlightTest, WhoeverIsNotGreetedWhereOthersAreJoinsAnew) {
    StepTo(1000ms);
    StepTo(200000ms);
    const std::int32_t id = Controller.IdOf("N1");
    EXPECT_EQ(Controller.Received(MessageId::RequestJoinAsPlayer).size(), 0u);
    Says("N2. Welcome. Want to use our ATC services at Field?: 1-Use ATC services");
    StepTo(201000ms);
    EXPECT_NE(Controller.IdOf("N1"), id);
}

TEST_F(PracticePilotInFlightTest, HeSeesTheOthersAndForgetsWhoIsGone) {
    StepTo(1000ms);
    Says(TaxiClearance);
    StepTo(1200ms);
    const AircraftState& own = Pilot->Aircraft();
    const Place ahead = PlaceBeyond(own.Where(), CourseTo(own.Where(), Runway()), 0.015);
    Controller.Send(Controller.IdOf("N1"),
                    WritePosition(PackPosition(ahead.Latitude, ahead.Longitude, own.AltitudeFeet, 0)));
    StepTo(5000ms);
    EXPECT_LT(Pilot->Aircraft().Knots, 2);
    StepTo(9000ms);  // not heard of any more
    EXPECT_GT(Pilot->Aircraft().Knots, 4);
}

TEST_F(PracticePilotInFlightTest, ALandingClearanceInTheAirIsReadBackNearTheRunway) {
    const AirportChart chart(Field.S);
    FlightPlan plan;
    plan.Kind = FlightKind::VisualArrival;
    const Place place = chart.FromRunway({-8, 0});
    const Flight flight(std::make_shared<AirportChart>(Field.S), plan,
                        {place.Latitude, place.Longitude, 2400, 160, 90});
    EXPECT_FALSE(flight.ReadsBack("N1, You are cleared to land on runway 16. Number 2 for landing."));
    EXPECT_TRUE(flight.ReadsBack("N1, Test Field Tower, Fly straight in runway 16."));
}

TEST_F(PracticePilotInFlightTest, TakenForOneOnTheGroundHeClosesTheServiceAndThenJoinsAnew) {
    FlightPlan plan;
    plan.Kind = FlightKind::VisualArrival;
    PilotScript script = Script({Fly{std::make_shared<AirportChart>(Field.S), plan}});
    script.Name = "N9";
    script.Start = {48, -122, 3000, 180, 90};
    const auto pilot = AdmittedPilot(script);
    const std::int32_t id = Controller.IdOf("N9");
    Controller.Send(
        id, WriteChat("N9, Continue taxi. Choose one of the following options for the Ground frequency: "
                      "1-Report Parking 2-Close ATC Services"));
    for (auto now = 100ms; now < 100s; now += 100ms) pilot->Step(now);
    EXPECT_THAT(Controller.Texts(), testing::Each("2"));
    EXPECT_EQ(Controller.IdOf("N9"), id);
    for (auto now = 100000ms; now < 200s; now += 100ms) pilot->Step(now);
    EXPECT_NE(Controller.IdOf("N9"), id);
    EXPECT_FALSE(pilot->InSession());  // until the host admits him
    Host.Step();
    pilot->Step(200s);
    EXPECT_TRUE(pilot->InSession());
}

TEST_F(PracticePilotInFlightTest, InTheOpeningDialogueHeSaysHisAnswerAgain) {
    StepTo(1000ms);
    Says(Welcome);
    StepTo(30000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("KTST,1"));
    StepTo(40000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("KTST,1"));
}

TEST_F(PracticePilotInFlightTest, WhoHasNotBeenGreetedDoesNotAskForARepeat) {
    StepTo(120000ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
}

TEST_F(PracticePilotTest, WhenTheScriptIsDoneHeLeavesTheSession) {
    PilotScript script = Script({AskAgain{}});
    script.Stays = false;
    const auto pilot = AdmittedPilot(script);
    Says(FrequencyMenu);
    pilot->Step(1000ms);
    pilot->Step(3000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("R"));
    EXPECT_FALSE(pilot->Gone());
    Says(FrequencyMenu);
    pilot->Step(4000ms);
    pilot->Step(4100ms);
    EXPECT_TRUE(pilot->Gone());
    EXPECT_EQ(Controller.IdOf("N1"), 0);
    pilot->Step(4200ms);
    EXPECT_TRUE(pilot->Gone());
}

TEST_F(PracticePilotTest, WhoStaysSaysWhatHeIsToldTo) {
    std::vector<std::string> said;
    std::vector<std::string> heard;
    const auto pilot = AdmittedPilot(
        Script({}),
        {.Heard = [&](auto, auto text) { heard.emplace_back(text); },
         .Said = [&](auto name,
                     auto text) { said.push_back(std::string(name) + ": " + std::string(text)); }});
    Says(HoldPosition);
    for (auto now = 1000ms; now < 30000ms; now += 100ms) pilot->Step(now);
    pilot->Say("1");
    EXPECT_THAT(Controller.Texts(), ElementsAre("1"));
    EXPECT_THAT(said, ElementsAre("N1: 1"));
    EXPECT_THAT(heard, ElementsAre(std::string(HoldPosition)));
}

TEST_F(PracticePilotTest, BeforeHeIsAdmittedNobodyHearsHim) {
    const auto pilot = Pilot(Script({}));
    pilot->Say("1");
    pilot->Step(0ms);
    pilot->Say("1");
    EXPECT_THAT(Controller.Texts(), IsEmpty());
}

// ---- Bad company

TEST_F(PracticePilotTest, DoesNotEnterUnderANameThatIsTaken) {
    auto first = AdmittedPilot(Script({}));
    auto second = Pilot(Script({}));
    EXPECT_THROW(second->Step(0ms), SessionError);
}

TEST_F(PracticePilotTest, SaysThatTheControllerHasLeftAndGoesOn) {
    std::vector<std::string> said;
    int abandoned = 0;
    auto station = std::make_unique<HandPlayed>(Network, "KTST_Tower");
    auto pilot = AdmittedPilot(Script({}), {.Heard = {},
                                            .Said = [&](auto, auto text) { said.emplace_back(text); },
                                            .Abandoned = [&](auto) { ++abandoned; }});
    station->Send(station->IdOf("N1"), WriteChat(Welcome));
    pilot->Step(1s);
    EXPECT_EQ(pilot->StandingText(), Welcome);
    station.reset();
    pilot->Step(2s);
    pilot->Step(4s);
    EXPECT_THAT(said, ElementsAre(PracticePilot::GoingOnAlone));
    EXPECT_EQ(abandoned, 1);
    EXPECT_EQ(pilot->StandingText(), "");
    EXPECT_TRUE(pilot->InSession());
}

TEST_F(PracticePilotTest, ShowsHimselfElsewhereAsLongAsHeIsTold) {
    auto pilot = AdmittedPilot(Script({}));
    pilot->ShowAt(AircraftState{10, 20, 3000, 0});
    pilot->Step(1s);
    auto told = Controller.Received(MessageId::Position);
    ASSERT_FALSE(told.empty());
    EXPECT_NEAR(ReadPosition(told.back().Message, MessageId::Position).LatitudeDegrees(), 10, 1e-4);
    pilot->ShowAt(std::nullopt);
    pilot->Step(2s);
    told = Controller.Received(MessageId::Position);
    ASSERT_FALSE(told.empty());
    EXPECT_NEAR(ReadPosition(told.back().Message, MessageId::Position).LatitudeDegrees(), 47, 1e-4);
}

}  // namespace
}  // namespace corvenna
