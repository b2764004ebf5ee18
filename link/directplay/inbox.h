#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <unordered_map>

#include "link/directplay/limits.h"
#include "link/directplay/wire_bytes.h"

namespace corvenna::directplay {

/// A message of one player to one player of this machine.
struct Letter {
    std::uint32_t From = 0;
    std::uint32_t To = 0;
    std::uint32_t MachineId = 0;  ///< who brought it
    Bytes Payload;
};

/// Messages that wait for the players of this machine, in the order of their arrival. How many may wait is
/// limited for each machine that sends. One thread.
class Inbox {
  public:
    explicit Inbox(const Limits& limits) : limits_(limits) {}

    /// False when the machine has too much waiting already; then nothing is added.
    bool Put(Letter letter);

    std::optional<Letter> Take();

    std::size_t Count(std::uint32_t playerId) const;

    /// Drops what waits for a player.
    void Forget(std::uint32_t playerId);

    void Clear();

  private:
    struct Share {
        std::size_t Messages = 0;
        std::size_t Bytes = 0;
    };

    void Discount(const Letter& letter);

    const Limits& limits_;
    std::deque<Letter> letters_;
    std::unordered_map<std::uint32_t, std::size_t> waitingFor_;
    std::unordered_map<std::uint32_t, Share> sentBy_;
};

}  // namespace corvenna::directplay
