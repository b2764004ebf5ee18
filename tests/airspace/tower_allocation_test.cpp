#include <gtest/gtest.h>

#include <string>

#include "link/services.h"
#include "station/tick.h"
#include "support/allocation_count.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

class SentCount final : public ChatSender {
  public:
    void SendChat(std::string_view, std::string_view, std::span<const std::int32_t>) override { ++Count; }
    int Count = 0;
};

struct WaitingPilot {
    std::string_view Phase;
    std::uint8_t Rules;
    int Bearing;  // degrees from the threshold of runway 16
    int NauticalMiles;
    int FeetAboveRunway;
};

/// Pilots in every state of the Tower in which a pilot can stay for more than a tick.
constexpr WaitingPilot WaitingPilots[] = {
    {"", Vfr, 70, 8, 2000},
    {"Taxiing to runway", Vfr, 340, 0, 0},
    {"Taxiing to runway", Ifr, 340, 0, 0},
    {"Acknowledge Hold short", Vfr, 340, 0, 0},
    {"Holding short in runway", Ifr, 340, 0, 0},
    {"Acknowledge Takeoff", Vfr, 340, 0, 0},
    {"Takingoff", Vfr, 340, 0, 0},
    {"Takingoff", Ifr, 340, 0, 0},
    {"Takingoff", Ifr, 160, 16, 2000},
    {"Acknowledge contact departure", Ifr, 160, 2, 2000},
    {"Contact Departure", Ifr, 160, 2, 2000},
    {"Acknowledge contact ARTCC (DEPARTURE)", Ifr, 160, 2, 2000},
    {"Contact ARTCC (DEPARTURE)", Ifr, 160, 2, 2000},
    {"Acknowledge enter traffic pattern", Vfr, 70, 8, 2000},
    {"Flying traffic pattern", Vfr, 70, 8, 2000},
    {"Acknowledge Landing", Vfr, 340, 5, 1000},
    {"Landing", Vfr, 340, 5, 1000},
    {"Landing", Ifr, 340, 3, 0},
    {"Acknowledge going around", Vfr, 70, 8, 2000},
    {"Going Around", Vfr, 70, 8, 2000},
    {"Approach", Ifr, 340, 10, 2000},
    {"Acknowledge contact approach", Ifr, 70, 8, 2000},
    {"Contact Approach", Ifr, 70, 8, 2000},
    {"Acknowledge contact ARTCC (GO AROUND)", Ifr, 70, 8, 2000},
    {"Contact ARTCC (GO AROUND)", Ifr, 70, 8, 2000},
    {"Acknowledge contact ground", Vfr, 340, 0, 0},
    {"Contact Ground", Ifr, 340, 0, 0},
};

/// Everybody in WaitingPilots, with the heading of the runway and the first of the queue still on the ground.
void Fill(TestField& field) {
    for (std::size_t i = 0; i < std::size(WaitingPilots); ++i) {
        const WaitingPilot& waiting = WaitingPilots[i];
        const std::string name = "A callsign with many characters " + std::to_string(i);
        field.OnFrequency(name, field.S.TowerFrequency, waiting.Phase, waiting.Rules).Heading = 160;
        field.Place(name, waiting.Bearing, waiting.NauticalMiles, waiting.FeetAboveRunway);
    }
    field.S.TakeoffQueue.Add("A callsign with many characters 6");
    field.S.LandingQueue.Add("A callsign with many characters 16");
}

/// How often memory was taken in ten ticks, after two that settle the texts. Nothing may be sent.
std::size_t AllocationsOfTenTicks(TestField& field) {
    SentCount radio;
    for (int i = 0; i < 2; ++i) AtcTimer(field.S, ControllerServices, radio);
    radio.Count = 0;
    const std::size_t before = AllocationCount();
    for (int i = 0; i < 10; ++i) AtcTimer(field.S, ControllerServices, radio);
    const std::size_t after = AllocationCount();
    EXPECT_EQ(radio.Count, 0);
    return after - before;
}

TEST(TowerAllocation, TheCounterCounts) {
    const std::size_t before = AllocationCount();
    const std::string text(100, 'x');
    EXPECT_EQ(AllocationCount() - before, 1U);
}

TEST(TowerAllocation, AQuietTickTakesNoMemoryInAnyState) {
    TestField field;
    Fill(field);
    EXPECT_EQ(AllocationsOfTenTicks(field), 0U);
    for (std::size_t i = 0; i < std::size(WaitingPilots); ++i) {  // and they are all still there
        EXPECT_EQ(field.S.Players[static_cast<std::int32_t>(i)].Phase, WaitingPilots[i].Phase);
    }
}

TEST(TowerAllocation, AQuietTickTakesNoMemoryForDigitsThatFitNothing) {
    TestField field;
    Fill(field);
    field.Tick();
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.Choice = 7;
    EXPECT_EQ(AllocationsOfTenTicks(field), 0U);
}

TEST(TowerAllocation, AQuietTickTakesNoMemoryForTheScanOfTheRunway) {
    TestField field;
    field.OnFrequency("N1", field.S.TowerFrequency, "Holding short in runway");
    field.Place("N1", 340, 0, 0);
    field.S.TakeoffQueue.Add("N1");
    for (int i = 2; i < 40; ++i) {
        field.Enters("N" + std::to_string(i), Role::Observer);
        field.Place("N" + std::to_string(i), 160, 1, 0);
    }
    EXPECT_EQ(AllocationsOfTenTicks(field), 0U);
    EXPECT_EQ(field.Pilot("N1").Phase, "Holding short in runway");
}

}  // namespace
}  // namespace corvenna
