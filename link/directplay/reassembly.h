#pragma once

#include <optional>
#include <vector>

#include "link/directplay/limits.h"
#include "link/directplay/wire_messages.h"

namespace corvenna::directplay {

/// Puts messages together that come in pieces. Memory grows with the pieces received, never with the size
/// that one claims. One thread.
class Reassembly {
  public:
    explicit Reassembly(const Limits& limits) : limits_(limits) {}

    /// Takes a piece from a machine; gives the whole message once nothing of it is missing. Pieces that
    /// contradict each other, or a message longer than a frame, end their message.
    std::optional<Bytes> Put(std::uint32_t machineId, const Packet& packet, TimePoint now);

  private:
    struct Piece {
        std::uint32_t Offset = 0;
        Bytes Data;
    };
    struct Open {
        std::uint32_t MachineId = 0;
        Guid Message;
        std::uint32_t Size = 0;
        TimePoint LastPiece{};
        std::size_t Received = 0;
        std::vector<Piece> Pieces;  ///< by offset, without overlap
    };

    Open& Find(std::uint32_t machineId, const Packet& packet, TimePoint now);
    void Close(const Open& open);
    bool Insert(Open& open, const Packet& packet) const;

    const Limits& limits_;
    std::vector<Open> open_;  ///< oldest first
};

}  // namespace corvenna::directplay
