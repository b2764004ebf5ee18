#include "link/directplay/members.h"

#include <algorithm>

#include "station/code_page.h"

namespace corvenna::directplay {

namespace {

template <class Record>
void SetNames(Record& record, std::optional<std::u16string>&& shortName,
              std::optional<std::u16string>&& longName) {
    record.Name = Utf16ToCodePage(shortName.value_or(u""));
    record.ShortName = std::move(shortName);
    record.LongName = std::move(longName);
}

}  // namespace

bool Group::Has(std::uint32_t playerId) const {
    return std::find(Members.begin(), Members.end(), playerId) != Members.end();
}

Machine* Members::MachineAt(const Endpoint& tcp) {
    const auto machine =
        std::find_if(Machines.begin(), Machines.end(), [&](const Machine& m) { return m.Tcp == tcp; });
    return machine == Machines.end() ? nullptr : &*machine;
}

std::vector<std::uint32_t> Members::PlayersOf(std::uint32_t machineId) const {
    std::vector<std::uint32_t> ids;
    for (const Player& player : Players) {
        if (player.MachineId == machineId) ids.push_back(player.Id);
    }
    return ids;
}

bool Members::InAnyGroup(std::uint32_t playerId) const {
    return std::any_of(Groups.begin(), Groups.end(), [&](const Group& group) { return group.Has(playerId); });
}

void Members::RemovePlayer(std::uint32_t playerId) {
    for (Group& group : Groups) std::erase(group.Members, playerId);
    Players.Remove(playerId);
}

bool Members::Knows(std::uint32_t id) const {
    return Machines.Find(id) != nullptr || Players.Find(id) != nullptr || Groups.Find(id) != nullptr;
}

Player MakePlayer(const PackedPlayer& record) {
    Player player;
    player.Id = record.Id;
    player.MachineId = record.SystemPlayerId;
    player.Flags = record.Flags;
    player.Data = record.Data;
    Rename(player, record.ShortName, record.LongName);
    return player;
}

Group MakeGroup(const PackedPlayer& record) {
    Group group;
    group.Id = record.Id;
    group.MachineId = record.SystemPlayerId;
    group.Flags = record.Flags;
    group.Data = record.Data;
    group.ParentId = record.ParentId;
    group.Members = record.Members;
    Rename(group, record.ShortName, record.LongName);
    return group;
}

void Rename(Player& player, std::optional<std::u16string> shortName, std::optional<std::u16string> longName) {
    SetNames(player, std::move(shortName), std::move(longName));
}

void Rename(Group& group, std::optional<std::u16string> shortName, std::optional<std::u16string> longName) {
    SetNames(group, std::move(shortName), std::move(longName));
}

}  // namespace corvenna::directplay
