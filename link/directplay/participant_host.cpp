#include <fmt/format.h>

#include <algorithm>

#include "link/directplay/participant.h"

/// The host's duties: answering those who search, giving out ids, letting machines in.
namespace corvenna::directplay {

namespace {

/// Requesters that are remembered within one second, so that a flood of them takes no memory.
constexpr std::size_t MaxRequesters = 4096;

/// Ids that one machine may have asked for without using them.
constexpr std::ptrdiff_t MaxUnusedIds = 4;

constexpr std::uint32_t PasswordFlags = SessionFlag::Private | SessionFlag::PasswordRequired;

}  // namespace

bool Participant::Host(SessionDescription description, std::u16string name, std::u16string password) {
    ForgetSession();
    description_ = description;
    name_ = std::move(name);
    password_ = std::move(password);
    if (password_.empty()) description_.Flags &= ~PasswordFlags;
    if (!password_.empty() && (description_.Flags & PasswordFlags) == 0) {
        description_.Flags |= SessionFlag::PasswordRequired;
    }
    ids_ = IdTable(description_.Reserved1);
    ownId_ = hostId_ = ids_.Allocate().value();
    nameServerOpen_ = network_.OpenNameServerPorts();
    return nameServerOpen_;
}

// ---- Answering those who search

void Participant::On(const Source& source, const EnumSessions& question) {
    if (!IsHost() || !Answers(question) || !MayAnswer(source.Tcp)) return;
    EnumSessionsReply reply{CurrentDescription(), std::nullopt};
    reply.Name = name_;
    SendToStranger(source.Tcp, reply);
}

/// Which sessions are shown: one with room to anybody, one without only to who asks for all; one with a
/// password to who asks for those too or knows it, a private one only to who does both.
bool Participant::Answers(const EnumSessions& question) const {
    if (!question.Application.IsZero() && question.Application != description_.Application) return false;
    const bool closed =
        (description_.Flags & (SessionFlag::NewPlayersDisabled | SessionFlag::JoinDisabled)) != 0 || IsFull();
    if (closed && (question.Flags & EnumFlag::All) == 0) return false;
    if (password_.empty()) return true;
    const bool asksForLocked = (question.Flags & EnumFlag::PasswordRequired) != 0;
    const bool knowsPassword = question.Password == password_;
    if ((description_.Flags & SessionFlag::Private) != 0) return asksForLocked && knowsPassword;
    return asksForLocked || knowsPassword;
}

bool Participant::MayAnswer(const Endpoint& tcp) {
    if (now_ - answersSecond_ >= seconds(1)) {
        answersSecond_ = now_;
        answers_.clear();
    }
    if (answers_.size() >= MaxRequesters && !answers_.contains(tcp)) return false;
    return ++answers_[tcp] <= limits_.SearchAnswersPerSecond;
}

bool Participant::IsFull() const {
    return description_.MaxPlayers > 0 && members_.Players.Size() >= description_.MaxPlayers;
}

SessionDescription Participant::CurrentDescription() const {
    SessionDescription description = description_;
    description.CurrentPlayers = static_cast<std::uint32_t>(members_.Players.Size());
    return description;
}

// ---- Giving out ids

void Participant::On(const Source& source, const RequestId& request) {
    if (!IsHost() || source.Tcp.Port == 0) return;
    RequestPlayerReply reply;
    if (request.What == Command::RequestGroupId) {
        if (SenderOf(source) == nullptr) return void(++dropped_.Unknown);
        reply.Id = IdFor(source);
    } else if ((request.Flags & MemberFlag::System) != 0) {
        const bool closed = (description_.Flags & SessionFlag::JoinDisabled) != 0 || IsFull() ||
                            members_.Machines.Size() >= limits_.Machines;
        reply.Id = closed ? 0 : IdFor(source);
    } else {
        const Machine* sender = SenderOf(source);
        if (sender == nullptr) return void(++dropped_.Unknown);
        const bool closed = (description_.Flags & SessionFlag::NewPlayersDisabled) != 0 || IsFull() ||
                            members_.PlayersOf(sender->Id).size() >= limits_.PlayersOfMachine;
        reply.Id = closed ? 0 : IdFor(source);
    }
    if (reply.Id != 0) return SendTo(source.Tcp, reply);
    reply.Result = Result::NoNewPlayers;
    SendToStranger(source.Tcp, reply);
}

/// An id that must be used within a while, or 0.
std::uint32_t Participant::IdFor(const Source& source) {
    const auto unused = std::count_if(pending_.begin(), pending_.end(),
                                      [&](const auto& entry) { return entry.second.Tcp == source.Tcp; });
    if (unused >= MaxUnusedIds || pending_.size() >= limits_.PendingJoins) return 0;
    const auto id = ids_.Allocate();
    if (!id) return 0;
    pending_[*id] = {source.Tcp, now_};
    return *id;
}

void Participant::FreeId(std::uint32_t id) {
    pending_.erase(id);
    if (IsHost()) ids_.Free(id);
}

// ---- Letting machines in

void Participant::On(const Source& source, const AddForwardRequest& request) {
    if (!IsHost()) return;
    const std::uint32_t id = request.Player.Id;
    const auto pending = pending_.find(id);
    if (pending == pending_.end() || pending->second.Tcp != source.Tcp) return void(++dropped_.Foreign);
    if (request.Password != password_) {
        FreeId(id);
        return SendToStranger(source.Tcp, AddForwardReply{Result::InvalidPassword});
    }
    pending_.erase(pending);
    if (const Machine* earlier = members_.MachineAt(source.Tcp)) Gone(earlier->Id, "it came back anew");

    Newcomer newcomer{id, {}, now_ + timing_.Forward};
    for (const Machine& machine : members_.Machines) newcomer.Unconfirmed.insert(machine.Id);
    AddMachine(request.Player, source, true);
    for (const std::uint32_t other : newcomer.Unconfirmed) {
        const Endpoint reader = members_.Machines.Find(other)->Tcp;
        SendTo(reader, AddForward{RecordOf(*members_.Machines.Find(id), reader)});
    }
    newcomers_.push_back(std::move(newcomer));
    AdmitConfirmed();
}

void Participant::On(const Source& source, const AddForwardAck& ack) {
    const Machine* sender = SenderOf(source);
    if (!IsHost() || sender == nullptr) return;
    for (Newcomer& newcomer : newcomers_) {
        if (newcomer.MachineId == ack.Id) newcomer.Unconfirmed.erase(sender->Id);
    }
    AdmitConfirmed();
}

/// Sends the name table to everybody whom all the others know by now, or have had the time to.
void Participant::AdmitConfirmed() {
    std::erase_if(newcomers_, [&](const Newcomer& newcomer) {
        if (!newcomer.Unconfirmed.empty() && now_ < newcomer.Deadline) return false;
        if (const Machine* machine = members_.Machines.Find(newcomer.MachineId)) {
            SendTo(machine->Tcp, MakeNameTable(machine->Tcp, machine));
        }
        return true;
    });
}

void Participant::ExpireNewcomers() {
    if (!IsHost()) return;
    AdmitConfirmed();
    for (auto entry = pending_.begin(); entry != pending_.end();) {
        const auto [id, pending] = *entry++;
        if (now_ - pending.Since <= limits_.PendingJoinAge) continue;
        FreeId(id);
        if (members_.MachineAt(pending.Tcp) == nullptr) network_.Disconnect(pending.Tcp);
    }
}

/// Who only wants to look gets the table too, unless there is a password.
void Participant::On(const Source& source, const EnumPlayer&) {
    if (!IsHost() || !password_.empty() || !MayAnswer(source.Tcp)) return;
    SendToStranger(source.Tcp, MakeNameTable(source.Tcp, nullptr));
}

NameTable Participant::MakeNameTable(const Endpoint& reader, const Machine* newcomer) const {
    NameTable table;
    table.Description = CurrentDescription();
    table.Name = name_;
    if (newcomer != nullptr) table.Players.push_back(RecordOf(*newcomer, reader));
    PackedPlayer own;
    own.Flags = MemberFlag::System | MemberFlag::NameServer | MemberFlag::InGroup | MemberFlag::OfSender;
    own.Id = own.SystemPlayerId = ownId_;
    own.Provider = OwnPorts();
    table.Players.push_back(std::move(own));
    for (const Machine& machine : members_.Machines) {
        if (newcomer == nullptr || machine.Id != newcomer->Id)
            table.Players.push_back(RecordOf(machine, reader));
    }
    for (const Player& player : members_.Players) table.Players.push_back(RecordOf(player, reader));
    for (const Group& group : members_.Groups) table.Groups.push_back(RecordOf(group, reader));
    return table;
}

PackedPlayer Participant::RecordOf(const Machine& machine, const Endpoint& reader) const {
    PackedPlayer record;
    record.Flags = MemberFlag::System | MemberFlag::InGroup;
    record.Id = record.SystemPlayerId = machine.Id;
    record.Version = machine.Version;
    record.Provider = PortsOf(machine.Id, reader);
    return record;
}

PackedPlayer Participant::RecordOf(const Player& player, const Endpoint& reader) const {
    PackedPlayer record;
    record.Flags = player.Flags & ~(MemberFlag::OfSender | MemberFlag::InGroup);
    if (player.MachineId == ownId_) record.Flags |= MemberFlag::OfSender;
    if (members_.InAnyGroup(player.Id)) record.Flags |= MemberFlag::InGroup;
    record.Id = player.Id;
    record.ShortName = player.ShortName;
    record.LongName = player.LongName;
    record.Data = player.Data;
    record.SystemPlayerId = player.MachineId;
    record.Provider = PortsOf(player.MachineId, reader);
    return record;
}

PackedPlayer Participant::RecordOf(const Group& group, const Endpoint& reader) const {
    PackedPlayer record;
    record.Flags = group.Flags & ~MemberFlag::OfSender;
    if (group.MachineId == ownId_) record.Flags |= MemberFlag::OfSender;
    record.Id = group.Id;
    record.ShortName = group.ShortName;
    record.LongName = group.LongName;
    record.Data = group.Data;
    record.Members = group.Members;
    record.ParentId = group.ParentId;
    record.SystemPlayerId = group.MachineId;
    record.Provider = PortsOf(group.MachineId, reader);
    return record;
}

/// A machine on this computer is known by an address that means nothing elsewhere: who reads it from
/// another computer is to take ours.
Bytes Participant::PortsOf(std::uint32_t machineId, const Endpoint& reader) const {
    const Machine* machine = members_.Machines.Find(machineId);
    if (machine == nullptr) return OwnPorts();
    const bool hidden = IsLoopback(machine->Tcp.Ip) && !IsLoopback(reader.Ip);
    const std::uint32_t ip = hidden ? 0 : machine->Tcp.Ip;
    return EncodeServiceProviderData({{ip, machine->Tcp.Port}, {ip, machine->Udp.Port}});
}

}  // namespace corvenna::directplay
