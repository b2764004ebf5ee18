#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "link/directplay/participant.h"
#include "link/session.h"
#include "station/code_page.h"

/// Players and groups: one's own, and what the others tell of theirs.
namespace corvenna::directplay {

namespace {

/// Longest names and data that are taken over from others, so that the table stays of a size to send on.
constexpr std::size_t MaxNameUnits = 4096;
constexpr std::size_t MaxDataBytes = 16384;

bool IsOfSize(const PackedPlayer& record) {
    return record.ShortName.value_or(u"").size() <= MaxNameUnits &&
           record.LongName.value_or(u"").size() <= MaxNameUnits && record.Data.size() <= MaxDataBytes;
}

/// An address of 0 is the sender's, and so is one that means "this computer" on another computer.
std::uint32_t PeerIp(std::uint32_t written, std::uint32_t sourceIp) {
    if (written == 0) return sourceIp;
    return IsLoopback(written) && !IsLoopback(sourceIp) ? sourceIp : written;
}

/// Each member once, of those who are there.
void KeepKnownOnce(std::vector<std::uint32_t>& ids, const IdList<Player>& players) {
    std::vector<std::uint32_t> kept;
    std::set<std::uint32_t> seen;
    for (const std::uint32_t id : ids) {
        if (players.Find(id) != nullptr && seen.insert(id).second) kept.push_back(id);
    }
    ids.swap(kept);
}

std::optional<std::u16string> GivenName(const std::u16string& name) {
    return name.empty() ? std::nullopt : std::optional(name);
}

}  // namespace

// ---- Machines

/// A machine that tells of itself listens where its header says. Without usable data about its ports, a
/// machine can be sent to there or not at all. Another machine that was known at the same place has gone.
void Participant::AddMachine(const PackedPlayer& record, const Source& source, bool isSender) {
    if (!IsGivenOut(record.Id)) return void(++dropped_.Malformed);
    Machine machine;
    machine.Id = record.Id;
    machine.Version = record.Version;
    machine.LastHeard = now_;
    if (const auto ports = ParseServiceProviderData(record.Provider)) {
        machine.Tcp = {PeerIp(ports->Tcp.Ip, source.Tcp.Ip), ports->Tcp.Port};
        machine.Udp = {PeerIp(ports->Udp.Ip, source.Tcp.Ip), ports->Udp.Port};
    }
    if (isSender) {
        machine.Tcp = source.Tcp;
        machine.Udp.Ip = source.Tcp.Ip;
    }
    const Machine* earlier = machine.Tcp.Port == 0 ? nullptr : members_.MachineAt(machine.Tcp);
    if (earlier != nullptr && earlier->Id != machine.Id) {
        if (earlier->Id == hostId_) return void(++dropped_.Foreign);
        RemoveMachine(earlier->Id);
    }
    if (Machine* known = members_.Machines.Find(machine.Id)) {
        if (known->Tcp != machine.Tcp) known->DoubtedSince.reset();
        known->Tcp = machine.Tcp;
        known->Udp = machine.Udp;
    } else if (members_.Machines.Size() >= limits_.Machines || members_.Knows(machine.Id)) {
        ++dropped_.Excess;
    } else {
        ids_.TakeOver(machine.Id);
        members_.Machines.Add(machine);
    }
}

/// May the sender change what belongs to a machine? Its own things anybody may, the host everything.
bool Participant::MayChange(const Source& source, std::uint32_t ownerId) {
    const Machine* sender = SenderOf(source);
    if (sender != nullptr && (sender->Id == ownerId || sender->Id == hostId_)) return true;
    CountForeign(source, "changed what belongs to somebody else");
    return false;
}

/// Ids come from the host. One who has just taken over cannot know what the last one gave out.
bool Participant::MayUseId(const Source& source, std::uint32_t id) {
    const auto pending = pending_.find(id);
    if (pending == pending_.end()) {
        if (!IsHost() || members_.Knows(id)) return true;
        if (tookOver_ && now_ - *tookOver_ <= limits_.PendingJoinAge) return true;
        CountForeign(source, "made up an id of its own");
        return false;
    }
    if (pending->second.Tcp != source.Tcp) {
        CountForeign(source, "used an id given to somebody else");
        return false;
    }
    pending_.erase(pending);
    return true;
}

// ---- Creating

void Participant::On(const Source& source, const CreateMember& message) {
    const PackedPlayer& record = message.Member;
    if (record.IsSystem() || !IsGivenOut(record.Id) || !IsOfSize(record)) {
        return void(++dropped_.Malformed);
    }
    if (members_.Machines.Find(record.SystemPlayerId) == nullptr) {
        if (record.SystemPlayerId == ownId_) return void(++dropped_.Foreign);
        if (IsHost()) return void(++dropped_.Unknown);
        return KeepForLater(source, Incoming::Kind::System, EncodeSystemMessage(message));
    }
    if (!MayChange(source, record.SystemPlayerId)) return;
    if (!MayUseId(source, record.Id)) return;
    if (message.What == Command::CreateGroup) {
        if (AddRemoteGroup(record)) ReplayEarly();
    } else if (AddRemotePlayer(record)) {
        if (message.What == Command::CreatePlayer) VerifyOwnPlayers(record);
        ReplayEarly();
    }
    CheckTableBytes(record.SystemPlayerId);
}

/// True when he was not known. A known one is brought up to date.
bool Participant::AddRemotePlayer(const PackedPlayer& record) {
    if (Player* known = members_.Players.Find(record.Id)) {
        if (known->MachineId != record.SystemPlayerId) return ++dropped_.Foreign, false;
        Rename(*known, record.ShortName, record.LongName);
        known->Data = record.Data;
        return false;
    }
    const Machine* machine = members_.Machines.Find(record.SystemPlayerId);
    if (machine == nullptr || record.Id == ownId_ || !IsGivenOut(record.Id) || members_.Knows(record.Id)) {
        return ++dropped_.Foreign, false;
    }
    if (members_.PlayersOf(machine->Id).size() >= limits_.PlayersOfMachine) {
        CutOff(machine->Id, fmt::format("it has more than {} players", limits_.PlayersOfMachine));
        return false;
    }
    ids_.TakeOver(record.Id);
    Player player = MakePlayer(record);
    player.Created = now_;
    members_.Players.Add(std::move(player));
    return true;
}

bool Participant::AddRemoteGroup(const PackedPlayer& record) {
    if (Group* known = members_.Groups.Find(record.Id)) {
        if (known->MachineId != record.SystemPlayerId) return ++dropped_.Foreign, false;
        Rename(*known, record.ShortName, record.LongName);
        known->Data = record.Data;
        return false;
    }
    if (record.Id == ownId_ || !IsGivenOut(record.Id) || members_.Knows(record.Id)) {
        return ++dropped_.Foreign, false;
    }
    if (members_.Groups.Size() >= limits_.Groups) return ++dropped_.Excess, false;
    ids_.TakeOver(record.Id);
    Group group = MakeGroup(record);
    KeepKnownOnce(group.Members, members_.Players);
    members_.Groups.Add(std::move(group));
    return true;
}

/// Two machines that create players at the same moment may miss each other's: who has made some lately
/// tells the newcomer once more. Machines of old versions do not understand it.
void Participant::VerifyOwnPlayers(const PackedPlayer& newPlayer) {
    const Machine* machine = members_.Machines.Find(newPlayer.SystemPlayerId);
    if (IsHost() || machine == nullptr || newPlayer.Version < VerifyingVersion) return;
    const Endpoint place = machine->Tcp;
    for (const Player& player : members_.Players) {
        if (player.MachineId != ownId_ || now_ - player.Created > timing_.RecentlyCreated) continue;
        SendTo(place, AnnouncementOf(player, Command::CreatePlayerVerify));
    }
}

void Participant::AddOwnPlayer(std::uint32_t id) {
    ids_.TakeOver(id);
    Player player;
    player.Id = id;
    player.MachineId = ownId_;
    player.Flags = MemberFlag::OfSender;
    player.Created = now_;
    Rename(player, GivenName(wantedShortName_), GivenName(wantedLongName_));
    SendToAll(AnnouncementOf(members_.Players.Add(std::move(player)), Command::CreatePlayer));
}

void Participant::AddOwnGroup(std::uint32_t id) {
    ids_.TakeOver(id);
    Group group;
    group.Id = id;
    group.MachineId = ownId_;
    group.Flags = MemberFlag::OfSender;
    Rename(group, GivenName(wantedShortName_), std::nullopt);
    CreateMember message{Command::CreateGroup, {}};
    message.Member.Flags = group.Flags;
    message.Member.Id = id;
    message.Member.ShortName = group.ShortName;
    message.Member.Provider = OwnPorts();
    message.Member.SystemPlayerId = ownId_;
    members_.Groups.Add(std::move(group));
    SendToAll(message);
}

CreateMember Participant::AnnouncementOf(const Player& player, Command what) const {
    CreateMember message{what, {}};
    message.Member.Flags = MemberFlag::OfSender;
    message.Member.Id = player.Id;
    message.Member.ShortName = player.ShortName;
    message.Member.LongName = player.LongName;
    message.Member.Provider = OwnPorts();
    message.Member.Data = player.Data;
    message.Member.SystemPlayerId = ownId_;
    return message;
}

// ---- Deleting, and who is in which group

void Participant::On(const Source& source, const ChangeMember& message) {
    switch (message.What) {
        case Command::DeletePlayer:
            return OnDelete(source, message.PlayerId);
        case Command::DeleteGroup:
            return OnDeleteGroup(source, message.GroupId);
        case Command::AddPlayerToGroup:
        case Command::DeletePlayerFromGroup:
            return OnGroupMembership(source, message);
        default:
            return;  // shortcuts between groups concern nobody here
    }
}

/// A system player takes his machine with him. Being deleted oneself means being put out of the session.
void Participant::OnDelete(const Source& source, std::uint32_t playerId) {
    const Player* player = members_.Players.Find(playerId);
    if (playerId == ownId_ || (player != nullptr && player->MachineId == ownId_)) {
        if (!IsFromHost(source)) return CountForeign(source, "deleted what belongs to somebody else");
        return Lose("the host has removed this station from the session");
    }
    if (player != nullptr) {
        if (!MayChange(source, player->MachineId)) return;
        members_.RemovePlayer(playerId);
        FreeId(playerId);
    } else if (members_.Machines.Find(playerId) != nullptr) {
        if (MayChange(source, playerId)) RemoveMachine(playerId);
    } else if (const auto pending = pending_.find(playerId); pending != pending_.end()) {
        if (pending->second.Tcp == source.Tcp) FreeId(playerId);
    }
}

void Participant::OnDeleteGroup(const Source& source, std::uint32_t groupId) {
    const Group* group = members_.Groups.Find(groupId);
    if (group == nullptr || !MayChange(source, group->MachineId)) return;
    members_.Groups.Remove(groupId);
    FreeId(groupId);
}

/// Anybody in the session may put anybody into a group or take him out.
void Participant::OnGroupMembership(const Source& source, const ChangeMember& message) {
    Group* group = members_.Groups.Find(message.GroupId);
    const bool known =
        SenderOf(source) != nullptr && group != nullptr && members_.Players.Find(message.PlayerId) != nullptr;
    if (!known) return void(++dropped_.Unknown);
    std::erase(group->Members, message.PlayerId);
    if (message.What == Command::AddPlayerToGroup) group->Members.push_back(message.PlayerId);
}

void Participant::DestroyPlayer(std::uint32_t playerId) {
    if (!IsOwnPlayer(playerId))
        throw SessionError(fmt::format("player {} is not one of this station's", playerId));
    members_.RemovePlayer(playerId);
    inbox_.Forget(playerId);
    FreeId(playerId);
    SendToAll(ChangeMember{Command::DeletePlayer, playerId, 0});
}

void Participant::AddPlayerToGroup(std::uint32_t groupId, std::uint32_t playerId) {
    Group* group = members_.Groups.Find(groupId);
    if (group == nullptr) throw SessionError(fmt::format("there is no group {}", groupId));
    if (members_.Players.Find(playerId) == nullptr)
        throw SessionError(fmt::format("there is no player {}", playerId));
    if (!group->Has(playerId)) group->Members.push_back(playerId);
    SendToAll(ChangeMember{Command::AddPlayerToGroup, playerId, groupId});
}

bool Participant::IsOwnPlayer(std::uint32_t playerId) const {
    const Player* player = members_.Players.Find(playerId);
    return player != nullptr && player->MachineId == ownId_;
}

// ---- Data and names

void Participant::On(const Source& source, const DataChanged& message) {
    if (message.Data.size() > MaxDataBytes) return void(++dropped_.Malformed);
    if (message.What == Command::PlayerDataChanged) {
        Player* player = members_.Players.Find(message.Id);
        if (player == nullptr || !MayChange(source, player->MachineId)) return;
        player->Data = message.Data;
        CheckTableBytes(player->MachineId);
    } else {
        Group* group = members_.Groups.Find(message.Id);
        if (group == nullptr || !MayChange(source, group->MachineId)) return;
        group->Data = message.Data;
        CheckTableBytes(group->MachineId);
    }
}

void Participant::On(const Source& source, const NameChanged& message) {
    if (message.ShortName.value_or(u"").size() > MaxNameUnits) return void(++dropped_.Malformed);
    if (message.LongName.value_or(u"").size() > MaxNameUnits) return void(++dropped_.Malformed);
    if (message.What == Command::PlayerNameChanged) {
        Player* player = members_.Players.Find(message.Id);
        if (player == nullptr || !MayChange(source, player->MachineId)) return;
        Rename(*player, message.ShortName, message.LongName);
        CheckTableBytes(player->MachineId);
    } else {
        Group* group = members_.Groups.Find(message.Id);
        if (group == nullptr || !MayChange(source, group->MachineId)) return;
        Rename(*group, message.ShortName, message.LongName);
        CheckTableBytes(group->MachineId);
    }
}

/// The key of the ids and the session itself stay what they are for the session's life.
void Participant::On(const Source& source, const SessionDescChanged& message) {
    if (!IsFromHost(source)) return CountForeign(source, "changed the session without being the host");
    const SessionDescription& changed = message.Description;
    if (changed.Instance != description_.Instance || changed.Reserved1 != description_.Reserved1) return;
    description_ = changed;
    if (message.Name) name_ = *message.Name;
    password_ = message.Password.value_or(u"");
}

}  // namespace corvenna::directplay
