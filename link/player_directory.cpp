#include "link/player_directory.h"

namespace corvenna {

std::int32_t PlayerDirectory::FirstFullMatch(const Station& station, std::int32_t id, std::string_view name) {
    Follow(station);
    const auto found = byId_.find(id);
    return found == byId_.end() ? None : FullMatchFrom(station, found->second.First, name);
}

std::int32_t PlayerDirectory::NextFullMatch(const Station& station, std::int32_t place) const {
    return FullMatchFrom(station, nextOfId_[static_cast<std::size_t>(place)], station.Players[place].Name);
}

std::int32_t PlayerDirectory::FirstNameMatch(const Station& station, std::string_view name) {
    Follow(station);
    const auto found = byName_.find(name);
    return found == byName_.end() ? None : found->second.First;
}

std::int32_t PlayerDirectory::NextNameMatch(std::int32_t place) const {
    return nextOfName_[static_cast<std::size_t>(place)];
}

void PlayerDirectory::Follow(const Station& station) {
    if (revision_ != station.Players.Revision()) {
        byId_.clear();
        byName_.clear();
        nextOfId_.clear();
        nextOfName_.clear();
        revision_ = station.Players.Revision();
    }
    for (auto place = static_cast<std::int32_t>(nextOfId_.size()); place < station.PlayerCount(); ++place) {
        Append(byId_[station.Players[place].Id], nextOfId_, place);
        Append(byName_[station.Players[place].Name], nextOfName_, place);
    }
}

void PlayerDirectory::Append(Chain& chain, std::vector<std::int32_t>& next, std::int32_t place) {
    next.push_back(None);
    if (chain.First == None) {
        chain.First = place;
    } else {
        next[static_cast<std::size_t>(chain.Last)] = place;
    }
    chain.Last = place;
}

std::int32_t PlayerDirectory::FullMatchFrom(const Station& station, std::int32_t place,
                                            std::string_view name) const {
    while (place != None && station.Players[place].Name != name) {
        place = nextOfId_[static_cast<std::size_t>(place)];
    }
    return place;
}

}  // namespace corvenna
