// A tick in which no text changes takes no memory. The global allocation functions of this program are
// replaced here by counting ones.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

#include "link/services.h"
#include "station/tick.h"
#include "support/test_field.h"

namespace {

bool counting = false;
int allocations = 0;

void* Allocate(std::size_t size) {
    if (counting) ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void* AllocateAligned(std::size_t size, std::size_t alignment) {
    if (counting) ++allocations;
    if (void* memory = std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return AllocateAligned(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return AllocateAligned(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

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
    int AllocationsOfTenTicks() {
        SentCount radio;
        for (int i = 0; i < 2; ++i) AtcTimer(field.S, ControllerServices, radio);
        radio.Count = 0;
        allocations = 0;
        counting = true;
        for (int i = 0; i < 10; ++i) AtcTimer(field.S, ControllerServices, radio);
        counting = false;
        EXPECT_EQ(radio.Count, 0);
        return allocations;
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
    allocations = 0;
    counting = true;
    const std::string text(100, 'x');
    counting = false;
    EXPECT_EQ(allocations, 1);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsWhoWaitInTheOpeningDialogue) {
    for (int i = 0; i < 10; ++i) field.Enters("N" + std::to_string(i));
    field.Tick();
    field.Types("N3", "KTST,1");
    field.Tick();
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForVfrPilotsOnTheGroundInTheFrequencyMenu) {
    TenPilots(Vfr, 0, 1);
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForIfrPilotsOnTheGroundInTheFrequencyMenu) {
    TenPilots(Ifr, 0, 1);
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForVfrPilotsInTheAirInTheFrequencyMenu) {
    TenPilots(Vfr, 3000, 9);
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForIfrPilotsInTheAirInTheFrequencyMenu) {
    TenPilots(Ifr, 12000, 90);
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsInTheAdvisoryService) {
    field.S.TowerFrequency.clear();
    field.S.CtafFrequency = "122.8";
    TenPilots(Vfr, 3000, 9);
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsInTheAdvisoryServiceWhateverTheLengthOfTheCtafLabel) {
    field.S.GroundFrequency.clear();
    field.S.CtafFrequency = "122.8 or, when nobody answers, 122.95";
    TenPilots(Vfr, 3000, 9);
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsWhoseDigitFitsNoOption) {
    field.Enters("N0");
    TenPilots(Vfr, 3000, 9);
    TenPilots(Ifr, 0, 1);
    field.Tick();
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.Choice = 7;
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
    EXPECT_EQ(field.Pilot("N0").Choice, 7);
}

TEST_F(QuietTick, TakesNoMemoryForPilotsWhoseDigitFitsNoOptionOfTheAdvisoryMenu) {
    field.S.TowerFrequency.clear();
    TenPilots(Vfr, 3000, 9);
    field.Tick();
    for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.Choice = 7;
    EXPECT_EQ(AllocationsOfTenTicks(), 0);
}

}  // namespace
}  // namespace corvenna
