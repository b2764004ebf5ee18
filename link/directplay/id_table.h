#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace corvenna::directplay {

/// The ids that a host gives out. An id is made of a slot, which is used again when its owner has gone, and
/// of how often the slot has been used, so that no id comes back; both are hidden behind the session's key.
/// One thread.
class IdTable {
  public:
    explicit IdTable(std::uint32_t key = 0) : key_(key) {}

    /// The next id: the lowest free slot. Nothing when all 65536 slots are taken or used up.
    std::optional<std::uint32_t> Allocate();

    /// The slot of an id becomes free. An id that this table does not have changes nothing.
    void Free(std::uint32_t id);

    /// Takes note of an id that an earlier host gave out.
    void TakeOver(std::uint32_t id);

  private:
    struct Slot {
        std::uint16_t Uses = 0;
        bool Taken = false;

        bool CanBeUsed() const;
    };

    std::uint32_t Id(std::size_t slot) const;
    Slot& SlotOf(std::uint32_t id);

    std::uint32_t key_;
    std::vector<Slot> slots_;
    std::size_t firstUsable_ = 0;  ///< no slot below it can be used
};

}  // namespace corvenna::directplay
