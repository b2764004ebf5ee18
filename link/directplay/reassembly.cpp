#include "link/directplay/reassembly.h"

#include <algorithm>

#include "link/directplay/wire_frame.h"

namespace corvenna::directplay {

std::optional<Bytes> Reassembly::Put(std::uint32_t machineId, const Packet& packet, TimePoint now) {
    std::erase_if(open_, [&](const Open& open) { return now - open.LastPiece > limits_.ReassemblyAge; });
    if (packet.MessageSize > MaxFrameSize || packet.Data.empty()) return std::nullopt;

    Open& open = Find(machineId, packet, now);
    open.LastPiece = now;
    if (!Insert(open, packet)) {
        Close(open);
        return std::nullopt;
    }
    if (open.Received < open.Size) return std::nullopt;

    Bytes whole;
    for (const Piece& piece : open.Pieces) whole.insert(whole.end(), piece.Data.begin(), piece.Data.end());
    Close(open);
    return whole;
}

Reassembly::Open& Reassembly::Find(std::uint32_t machineId, const Packet& packet, TimePoint now) {
    const auto known = std::find_if(open_.begin(), open_.end(), [&](const Open& open) {
        return open.MachineId == machineId && open.Message == packet.Message;
    });
    if (known != open_.end()) return *known;
    const auto isOfMachine = [&](const Open& open) { return open.MachineId == machineId; };
    const auto ofMachine = std::count_if(open_.begin(), open_.end(), isOfMachine);
    if (ofMachine >= static_cast<std::ptrdiff_t>(limits_.OpenReassemblies)) {
        open_.erase(std::find_if(open_.begin(), open_.end(), isOfMachine));
    }
    return open_.emplace_back(Open{machineId, packet.Message, packet.MessageSize, now, 0, {}});
}

void Reassembly::Close(const Open& open) { open_.erase(open_.begin() + (&open - open_.data())); }

/// False for a piece that does not fit the others. The same piece again changes nothing.
bool Reassembly::Insert(Open& open, const Packet& packet) const {
    if (open.Pieces.size() >= limits_.PiecesOfMessage) return false;
    const std::size_t start = packet.Offset;
    const std::size_t end = start + packet.Data.size();
    if (packet.MessageSize != open.Size || end > open.Size) return false;

    const auto behind = std::find_if(open.Pieces.begin(), open.Pieces.end(),
                                     [&](const Piece& piece) { return piece.Offset >= start; });
    if (behind != open.Pieces.end()) {
        if (behind->Offset == start && behind->Data.size() == packet.Data.size()) return true;
        if (behind->Offset < end) return false;
    }
    if (behind != open.Pieces.begin()) {
        const Piece& before = *(behind - 1);
        if (before.Offset + before.Data.size() > start) return false;
    }
    open.Pieces.insert(behind, Piece{packet.Offset, packet.Data});
    open.Received += packet.Data.size();
    return true;
}

}  // namespace corvenna::directplay
