// A tick in which no text changes takes no memory.

#include <gtest/gtest.h>

#include <string>

#include "link/services.h"
#include "station/tick.h"
#include "support/allocation_count.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

/// Counts what the tick sends and keeps nothing.
class SentCount final : public ChatSender {
  public:
    void SendChat(std::string_view, std::string_view, std::span<const std::int32_t>) override { ++Count; }
    int Count = 0;
};

class QuietTick : public testing::Test {
  protected:
    /// How often memory was taken in ten ticks, after two that settle the texts. Nothing may be sent.
    std::size_t AllocationsOfTenTicks() {
        SentCount radio;
        for (int i = 0; i < 2; ++i) AtcTimer(field.S, ControllerServices, radio);
        radio.Count = 0;
        const std::size_t before = AllocationCount();
        for (int i = 0; i < 10; ++i) AtcTimer(field.S, ControllerServices, radio);
        const std::size_t taken = AllocationCount() - before;
        EXPECT_EQ(radio.Count, 0);
        return taken;
    }

    /// Ten pilots under service on no frequency, at so many feet and miles, with callsigns long and short.
    void TenPilots(std::uint8_t flightRules, int feetAboveField, int nauticalMiles) {
        for (int i = 0; i < 10; ++i) {
            const std::string name = i % 2 == 0 ? "N" : "A callsign with many characters ";
            field.OnFrequency(name + std::to_string(i), "", "", flightRules);
            field.Place(name + std::to_string(i), 20 + 30 * i, nauticalMiles, feetAboveField);
        }
    }

    TestField field;
};

TEST_F(QuietTick, TheCounterCounts) {
    const std::size_t before = AllocationCount();
    const std::string text(100, 'x');
    EXPECT_EQ(AllocationCount() - before, 1u);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsWhoWaitInTheOpeningDialogue) {
    for (int i = 0; i < 10; ++i) field.Enters("N" + std::to_string(i));
    field.Tick();
    field.Types("N3", "KTST,1");
    field.Tick();
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForVfrPilotsOnTheGroundInTheFrequencyMenu) {
    TenPilots(Vfr, 0, 1);
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForIfrPilotsOnTheGroundInTheFrequencyMenu) {
    TenPilots(Ifr, 0, 1);
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForVfrPilotsInTheAirInTheFrequencyMenu) {
    TenPilots(Vfr, 3000, 9);
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForIfrPilotsInTheAirInTheFrequencyMenu) {
    TenPilots(Ifr, 12000, 90);
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsInTheAdvisoryService) {
    field.S.TowerFrequency.clear();
    field.S.CtafFrequency = "122.8";
    TenPilots(Vfr, 3000, 9);
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsInTheAdvisoryServiceWhateverTheLengthOfTheCtafLabel) {
    field.S.GroundFrequency.clear();
    field.S.CtafFrequency = "122.8 or, when nobody answers, 122.95";
    TenPilots(Vfr, 3000, 9);
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsWhoseDigitFitsNoOption) {
    field.Enters("N0");
    TenPilots(Vfr, 3000, 9);
    TenPilots(Ifr, 0, 1);
    field.Tick();
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.Choice = 7;
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
    EXPECT_EQ(field.Pilot("N0").Choice, 7);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsWhoseDigitFitsNoOptionOfTheAdvisoryMenu) {
    field.S.TowerFrequency.clear();
    TenPilots(Vfr, 3000, 9);
    field.Tick();
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.Choice = 7;
    EXPECT_EQ(AllocationsOfTenTicks(), 0u);
}

}  // namespace
}  // namespace corvenna
