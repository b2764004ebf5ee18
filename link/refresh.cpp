#include "link/refresh.h"

#include <set>
#include <utility>

#include "link/fs_messages.h"

namespace corvenna {

namespace {

void AskWhoTheyAre(Station& station, Session& dp, PlayerDirectory& directory) {
    const DirectPlayMessage whoAreYou = WriteEmpty(MessageId::WhoAreYou);
    const auto members = dp.GetDPEnumPlayers();
    if (members.empty()) return;
    const std::string own = dp.GetPlayerFriendlyName(station.ControllerId);
    for (const SessionMember& member : members) {
        if (member.Id == station.ControllerId || member.ShortName == own) continue;
        if (directory.FirstFullMatch(station, member.Id, member.ShortName) != PlayerDirectory::None) continue;
        dp.Send(station.ControllerId, member.Id, whoAreYou);
    }
}

void AskForAircraft(Station& station, Session& dp) {
    const DirectPlayMessage askAircraft = WriteEmpty(MessageId::AskAircraft);
    for (const PlayerRecord& pilot : station.Players.Valid()) {
        if (pilot.Role == Role::Player) dp.Send(station.ControllerId, pilot.Id, askAircraft);
    }
}

}  // namespace

void RefreshPlayers(Station& station, Session& dp, PlayerDirectory& directory) {
    if (station.PlayerCount() > 0) PurgeLeftPlayers(station, dp);
    AskWhoTheyAre(station, dp, directory);
    AskForAircraft(station, dp);
}

void PurgeLeftPlayers(Station& station, Session& dp) {
    std::set<std::pair<std::int32_t, std::string>> present;
    for (SessionMember& member : dp.GetDPEnumPlayers())
        present.emplace(member.Id, std::move(member.ShortName));
    station.Players.PurgeWalk([&](PlayerRecord& pilot) {
        const bool stays = present.contains({pilot.Id, pilot.Name});
        if (!stays) ResetPilot(station, pilot);
        return stays;
    });
}

}  // namespace corvenna
