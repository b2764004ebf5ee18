#include <gtest/gtest.h>

#include "ground/ground_field.h"
#include "ground/random_scene.h"
#include "link/services.h"
#include "station/phases.h"
#include "support/allocation_count.h"

namespace corvenna {
namespace {

class SentCount final : public ChatSender {
  public:
    void SendChat(std::string_view, std::string_view, std::span<const std::int32_t>) override { ++Count; }
    int Count = 0;
};

/// How often memory was taken in ten ticks, after two that settle the texts. Nothing may be sent.
std::size_t AllocationsOfTenTicks(Station& station) {
    SentCount radio;
    for (int i = 0; i < 2; ++i) AtcTimer(station, ControllerServices, radio);
    radio.Count = 0;
    const std::size_t before = AllocationCount();
    for (int i = 0; i < 10; ++i) AtcTimer(station, ControllerServices, radio);
    const std::size_t after = AllocationCount();
    EXPECT_EQ(radio.Count, 0);
    return after - before;
}

constexpr std::string_view WaitingPhases[] = {Phase::None,
                                              Phase::AcknowledgeTaxiToRunway,
                                              Phase::TaxiingToRunway,
                                              Phase::AcknowledgeHoldPosition,
                                              Phase::HoldPosition,
                                              Phase::AcknowledgeTaxiToGate,
                                              Phase::TaxiingToGate};

TEST(GroundAllocation, AQuietTickTakesNoMemoryInAnyPhase) {
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        GroundField field;
        field.StraightNetwork();
        for (const std::string_view phase : WaitingPhases) {
            field.Pilot("A callsign of some length " + std::string(phase), phase, rules);
        }
        EXPECT_EQ(AllocationsOfTenTicks(field.S), 0U);
    }
}

TEST(GroundAllocation, AQuietTickTakesNoMemoryForRoutesHoldsAndDigitsThatFitNothing) {
    GroundField field;
    field.StraightNetwork();
    const std::int32_t side = field.Point(300, 800);
    for (int i = 0; i < 70; ++i) {
        const std::string name = "N" + std::to_string(i);
        PlayerRecord& pilot = field.Pilot(name, Phase::TaxiingToRunway);
        field.Move(pilot, 500 + 10 * i, i % 2 * 100);
        if (i % 2 == 0) {
            field.Route(name, {0, 1, 2, 3});
        } else {
            field.Route(name, {side, 2, 3});
        }
        if (i % 5 == 0) pilot.Choice = 7;
    }
    EXPECT_EQ(AllocationsOfTenTicks(field.S), 0U);
}

}  // namespace
}  // namespace corvenna
