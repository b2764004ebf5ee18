#include <fmt/format.h>

#include <algorithm>

#include "link/directplay/participant.h"

/// The host's duties: answering those who search, giving out ids, letting machines in.
namespace corvenna::directplay {

namespace {

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

/// Every answer to a stranger costs a connection, so there are only so many in a second.
bool Participant::MayAnswer(const Endpoint& tcp) {
    if (now_ - answersSecond_ >= seconds(1)) {
        answersSecond_ = now_;
        answers_.clear();
    }
    if (answers_.size() >= limits_.StrangersPerSecond && !answers_.contains(tcp)) return false;
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
    const Machine* sender = SenderOf(source);
    if (sender == nullptr && !MayAnswer(source.Tcp)) return void(++dropped_.Excess);
    RequestPlayerReply reply;
    if (request.What == Command::RequestPlayerId && (request.Flags & MemberFlag::System) != 0) {
        reply.Id = MayEnter(source.Tcp) ? IdFor(source) : 0;
    } else if (sender == nullptr) {
        return void(++dropped_.Unknown);
    } else if (request.What == Command::RequestGroupId || MayHaveAnotherPlayer(sender->Id)) {
        reply.Id = IdFor(source);
    }
    if (reply.Id != 0) return SendTo(source.Tcp, reply);
    reply.Result = Result::NoNewPlayers;
    SendToStranger(source.Tcp, reply);
}

/// Those who have asked and not come in yet are limited, so that one address does not bar the door.
bool Participant::MayEnter(const Endpoint& tcp) const {
    if ((description_.Flags & SessionFlag::JoinDisabled) != 0 || IsFull()) return false;
    if (members_.Machines.Size() >= limits_.Machines || pending_.size() >= limits_.PendingJoins) return false;
    const auto ofAddress = std::count_if(pending_.begin(), pending_.end(),
                                         [&](const auto& entry) { return entry.second.Tcp.Ip == tcp.Ip; });
    return ofAddress < static_cast<std::ptrdiff_t>(limits_.PendingJoinsOfAddress);
}

bool Participant::MayHaveAnotherPlayer(std::uint32_t machineId) const {
    return (description_.Flags & SessionFlag::NewPlayersDisabled) == 0 && !IsFull() &&
           members_.PlayersOf(machineId).size() < limits_.PlayersOfMachine;
}

/// An id that must be used within a while, or 0.
std::uint32_t Participant::IdFor(const Source& source) {
    const auto unused = std::count_if(pending_.begin(), pending_.end(),
                                      [&](const auto& entry) { return entry.second.Tcp == source.Tcp; });
    if (unused >= MaxUnusedIds) return 0;
    const auto id = ids_.Allocate();
    if (!id) return 0;
    pending_[*id] = {source.Tcp, now_};
    return *id;
}

void Participant::FreeId(std::uint32_t id) {
    pending_.erase(id);
    ids_.Free(id);
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
    if (members_.Machines.Size() >= limits_.Machines) {
        FreeId(id);
        return SendToStranger(source.Tcp, AddForwardReply{Result::NoNewPlayers});
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
    std::vector<std::uint32_t> confirmed;
    std::erase_if(newcomers_, [&](const Newcomer& newcomer) {
        if (!newcomer.Unconfirmed.empty() && now_ < newcomer.Deadline) return false;
        confirmed.push_back(newcomer.MachineId);
        return true;
    });
    for (const std::uint32_t id : confirmed) Admit(id);
}

void Participant::Admit(std::uint32_t machineId) {
    const Machine* machine = members_.Machines.Find(machineId);
    if (machine == nullptr) return;
    try {
        SendTo(machine->Tcp, MakeNameTable(machine->Tcp, machine));
    } catch (const WireError&) {
        SendTo(machine->Tcp, AddForwardReply{Result::NoNewPlayers});
        Gone(machineId, "the table of everybody's names and data is longer than a message can be");
    }
}

/// What the players and groups of a machine take in the name table, beside a fixed part.
std::size_t Participant::TableBytesOf(std::uint32_t machineId) const {
    std::size_t bytes = 0;
    const auto count = [&](const auto& record) {
        if (record.MachineId != machineId) return;
        bytes += record.Data.size() + 2 * record.ShortName.value_or(u"").size() +
                 2 * record.LongName.value_or(u"").size();
    };
    for (const Player& player : members_.Players) count(player);
    for (const Group& group : members_.Groups) count(group);
    return bytes;
}

void Participant::CheckTableBytes(std::uint32_t machineId) {
    if (!IsHost() || TableBytesOf(machineId) <= limits_.TableBytesOfMachine) return;
    if (members_.Machines.Find(machineId) == nullptr) return;
    CutOff(machineId, fmt::format("the names and data of its players take more than {} bytes",
                                  limits_.TableBytesOfMachine));
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
