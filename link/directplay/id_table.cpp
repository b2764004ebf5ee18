#include "link/directplay/id_table.h"

#include <algorithm>

#include "link/directplay/wire_structures.h"

namespace corvenna::directplay {

namespace {

constexpr std::size_t MaxSlots = 0x10000;

/// So that no use reaches the highest bit of an id, which is to stay as the key has it.
constexpr std::uint16_t MaxUses = 0x7FFF;

bool IsReserved(std::uint32_t id) { return id == EverybodyId || id == ServerPlayerId || id == UnknownId; }

}  // namespace

std::uint32_t IdTable::Id(std::size_t slot) const {
    return (std::uint32_t{slots_[slot].Uses} << 16 | static_cast<std::uint32_t>(slot)) ^ key_;
}

IdTable::Slot& IdTable::SlotOf(std::uint32_t id) {
    const std::size_t slot = (id ^ key_) & 0xFFFF;
    if (slot >= slots_.size()) slots_.resize(slot + 1);
    return slots_[slot];
}

bool IdTable::Slot::CanBeUsed() const { return !Taken && Uses < MaxUses; }

std::optional<std::uint32_t> IdTable::Allocate() {
    while (firstUsable_ < slots_.size() && !slots_[firstUsable_].CanBeUsed()) ++firstUsable_;
    for (std::size_t slot = firstUsable_; slot < MaxSlots; ++slot) {
        if (slot == slots_.size()) slots_.emplace_back();
        Slot& candidate = slots_[slot];
        if (!candidate.CanBeUsed()) continue;
        ++candidate.Uses;
        const std::uint32_t id = Id(slot);
        if (IsReserved(id)) continue;  // this use of the slot is passed over
        candidate.Taken = true;
        return id;
    }
    return std::nullopt;
}

void IdTable::Free(std::uint32_t id) {
    const std::size_t slot = (id ^ key_) & 0xFFFF;
    if (slot >= slots_.size() || Id(slot) != id) return;
    slots_[slot].Taken = false;
    firstUsable_ = std::min(firstUsable_, slot);
}

void IdTable::TakeOver(std::uint32_t id) {
    Slot& slot = SlotOf(id);
    slot.Taken = true;
    slot.Uses = std::max(slot.Uses, static_cast<std::uint16_t>((id ^ key_) >> 16));
}

}  // namespace corvenna::directplay
