#include <fmt/format.h>

#include <algorithm>

#include "link/directplay/participant.h"
#include "link/session.h"

/// What players say to each other.
namespace corvenna::directplay {

namespace {

/// A bare message is taken for a system message when its bytes spell the signature in the wrong place.
bool WouldBeMistaken(const Bytes& bare, std::size_t place) {
    return bare.size() >= place + 4 && ByteReader(bare).At(place).U32() == Signature;
}

}  // namespace

// ---- Sending

void Participant::Send(std::uint32_t from, std::uint32_t to, ByteSpan payload, bool guaranteed) {
    if (!IsOwnPlayer(from)) throw SessionError(fmt::format("player {} is not one of this station's", from));
    Deliver(from, to, ownId_, payload, guaranteed);
    const std::vector<std::uint32_t> machines = MachinesFor(to);
    if (machines.empty()) return;

    ByteWriter writer;
    writer.U32(from);
    writer.U32(to);
    writer.Append(payload);
    const auto bare = std::make_shared<const Bytes>(writer.Release());
    const bool wrapped = WouldBeMistaken(*bare, guaranteed ? 0 : HeaderSize);
    const auto frame = std::make_shared<const Bytes>(
        wrapped ? Frame(network_.TcpPort(),
                        EncodeSystemMessage(PlayerWrapper{from, to, {payload.begin(), payload.end()}}))
                : Frame(network_.TcpPort(), *bare));
    const auto datagram = wrapped ? frame : bare;
    for (const std::uint32_t id : machines) {
        const Machine* machine = members_.Machines.Find(id);
        if (!guaranteed && machine->Udp.Port != 0 && datagram->size() <= MaxDatagramSize) {
            network_.SendDatagram(machine->Udp, datagram);
        } else if (machine->Tcp.Port != 0) {
            network_.SendFrame(machine->Tcp, frame);
        }
    }
}

/// The machines that get a copy: one for each, however many of its players are meant.
std::vector<std::uint32_t> Participant::MachinesFor(std::uint32_t to) const {
    std::vector<std::uint32_t> machines;
    if (to == EverybodyId) {
        for (const Machine& machine : members_.Machines) machines.push_back(machine.Id);
    } else if (const Player* player = members_.Players.Find(to)) {
        if (player->MachineId != ownId_) machines.push_back(player->MachineId);
    } else if (const Group* group = members_.Groups.Find(to)) {
        for (const std::uint32_t id : group->Members) {
            const Player* member = members_.Players.Find(id);
            if (member != nullptr && member->MachineId != ownId_) machines.push_back(member->MachineId);
        }
        std::sort(machines.begin(), machines.end());
        machines.erase(std::unique(machines.begin(), machines.end()), machines.end());
    }
    return machines;
}

// ---- Receiving

void Participant::On(const Source& source, const PlayerWrapper& message) {
    OnPlayerMessage(source, message.From, message.To, message.Payload);
}

/// A message in pieces stands inside them without its header. Every guaranteed piece is acknowledged.
void Participant::On(const Source& source, const Packet& packet) {
    Machine* sender = SenderOf(source);
    if (sender == nullptr || reassembling_) return void(++dropped_.Unknown);
    if (packet.What == Command::Packet2Data) {
        const Packet2Ack ack{packet.Message, packet.Index};
        if (source.IsDatagram()) {
            SendDatagramTo(*sender, ack);
        } else {
            SendTo(sender->Tcp, ack);
        }
    }
    const auto whole = reassembly_.Put(sender->Id, packet, now_);
    if (!whole || whole->size() < EnvelopeSize) return;
    const bool system = ByteReader(*whole).U32() == Signature;
    reassembling_ = true;
    try {
        Handle(source, system ? Incoming::Kind::System : Incoming::Kind::Player, *whole);
    } catch (const WireError&) {
        ++dropped_.Malformed;
    }
    reassembling_ = false;
}

void Participant::OnPlayerMessage(const Source& source, std::uint32_t from, std::uint32_t to,
                                  ByteSpan payload) {
    if (!IsMember()) return void(++dropped_.Unknown);  // nobody is here yet who could hear it
    const Player* player = members_.Players.Find(from);
    if (player == nullptr) {
        ByteWriter body;
        body.U32(from);
        body.U32(to);
        body.Append(payload);
        return KeepForLater(source, Incoming::Kind::Player, body.Release());
    }
    if (!MaySpeakFor(source, *player)) return CountForeign(source, "spoke for somebody else");
    Deliver(from, to, player->MachineId, payload, !source.IsDatagram());
}

/// A frame tells by its header who sent it. A bare datagram does not: it must come from the machine's
/// address, and not from where another machine is known to send.
bool Participant::MaySpeakFor(const Source& source, const Player& player) {
    const Machine* owner = members_.Machines.Find(player.MachineId);
    if (owner == nullptr) return false;
    const Machine* sender = SenderOf(source);
    if (sender != nullptr) return sender->Id == owner->Id;
    return source.IsDatagram() && source.Datagram.Ip == owner->Tcp.Ip;
}

void Participant::Deliver(std::uint32_t from, std::uint32_t to, std::uint32_t machineId, ByteSpan payload,
                          bool guaranteed) {
    for (const std::uint32_t addressee : LocalAddressees(from, to)) {
        if (inbox_.Put({from, addressee, machineId, {payload.begin(), payload.end()}})) continue;
        ++dropped_.Excess;
        if (!guaranteed || machineId == ownId_) continue;
        return CutOff(machineId, "more of its messages wait than the station can hold");
    }
}

/// The players of this machine that a message is for. Nobody hears himself.
std::vector<std::uint32_t> Participant::LocalAddressees(std::uint32_t from, std::uint32_t to) const {
    std::vector<std::uint32_t> addressees;
    const Group* group = members_.Groups.Find(to);
    for (const Player& player : members_.Players) {
        if (player.MachineId != ownId_ || player.Id == from) continue;
        const bool meant =
            to == EverybodyId || to == player.Id || (group != nullptr && group->Has(player.Id));
        if (meant) addressees.push_back(player.Id);
    }
    return addressees;
}

}  // namespace corvenna::directplay
