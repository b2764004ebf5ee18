#include "practice/practice_pilot.h"

#include <gmock/gmock.h>

#include "practice/practice_host.h"
#include "practice/practice_session.h"

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
    PracticeHost Host{std::make_unique<MemorySession>(Network), TestSessionName, 8};
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
    pilot->Step(19999ms);
    pilot->Step(19999ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    pilot->Step(20000ms);
    pilot->Step(20001ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("2"));
}

TEST_F(PracticePilotTest, HeAwaitsWordsThatAreMeantForHim) {
    const auto pilot = AdmittedPilot(Script({Await{"cleared for takeoff", 60s}, AskAgain{}}));
    Says(FrequencyMenu);
    pilot->Step(1000ms);
    Says("N2, Cleared for takeoff on runway 16.");
    pilot->Step(5000ms);
    pilot->Step(5100ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    Says("N1, Cleared for takeoff on runway 16.");
    pilot->Step(6000ms);
    pilot->Step(8000ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("R"));
}

TEST_F(PracticePilotTest, HeAwaitsThemNoLongerThanTold) {
    const auto pilot = AdmittedPilot(Script({Await{"cleared for takeoff", 60s}, AskAgain{}}));
    Says(FrequencyMenu);
    pilot->Step(1000ms);
    pilot->Step(59999ms);
    pilot->Step(59999ms);
    EXPECT_THAT(Controller.Texts(), IsEmpty());
    pilot->Step(60000ms);
    pilot->Step(60001ms);
    EXPECT_THAT(Controller.Texts(), ElementsAre("R"));
}

TEST_F(PracticePilotTest, HeTravelsWhenItIsTheTime) {
    const auto pilot = AdmittedPilot(Script({Linger{10s}, Travel{{48, -122, 3400, 60}}}));
    pilot->Step(9999ms);
    EXPECT_EQ(pilot->Where().Latitude, 47);
    pilot->Step(10000ms);
    pilot->Step(70000ms);
    EXPECT_NEAR(pilot->Where().Latitude, 47 + 1.0 / 60, 1e-9);
    EXPECT_NEAR(pilot->Where().AltitudeFeet, 450, 1e-6);
}

TEST_F(PracticePilotTest, WhenTheScriptIsDoneHeLeavesTheSession) {
    PilotScript script = Script({Linger{1s}});
    script.Stays = false;
    const auto pilot = AdmittedPilot(script);
    pilot->Step(1000ms);
    EXPECT_FALSE(pilot->Gone());
    pilot->Step(1100ms);
    EXPECT_TRUE(pilot->Gone());
    EXPECT_EQ(Controller.IdOf("N1"), 0);
    pilot->Step(1200ms);
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

}  // namespace
}  // namespace corvenna
