#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "link/directplay/limits.h"
#include "link/directplay/wire_structures.h"

/// Who is in the session, as one participant knows it. Plain data on one thread.
namespace corvenna::directplay {

/// Records in the order in which they came, found by their Id. Adding and removing moves the others.
template <class T>
class IdList {
  public:
    T* Find(std::uint32_t id) {
        const auto place = places_.find(id);
        return place == places_.end() ? nullptr : &items_[place->second];
    }
    const T* Find(std::uint32_t id) const { return const_cast<IdList*>(this)->Find(id); }

    /// The Id must not be there yet.
    T& Add(T item) {
        places_.emplace(item.Id, items_.size());
        return items_.emplace_back(std::move(item));
    }

    void Remove(std::uint32_t id) {
        const auto place = places_.find(id);
        if (place == places_.end()) return;
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(place->second));
        places_.clear();
        for (std::size_t i = 0; i < items_.size(); ++i) places_.emplace(items_[i].Id, i);
    }

    void Clear() {
        items_.clear();
        places_.clear();
    }

    std::size_t Size() const { return items_.size(); }
    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

  private:
    std::vector<T> items_;
    std::unordered_map<std::uint32_t, std::size_t> places_;
};

/// A remote machine: its system player, and where it listens.
struct Machine {
    std::uint32_t Id = 0;
    Endpoint Tcp;
    Endpoint Udp;
    std::uint32_t Version = OwnVersion;

    TimePoint LastHeard{};
    TimePoint NextPing{};
    int PingsUnanswered = 0;
    std::optional<TimePoint> DoubtedSince;  ///< a probe is under way to learn whether it is still there

    TimePoint SecondStart{};
    std::size_t MessagesThisSecond = 0;
    bool Reported = false;  ///< the operator has been told once of a message it had no right to send
};

struct Player {
    std::uint32_t Id = 0;
    std::uint32_t MachineId = 0;
    std::uint32_t Flags = 0;
    std::string Name;  ///< ShortName in the code page
    std::optional<std::u16string> ShortName;
    std::optional<std::u16string> LongName;
    Bytes Data;
    TimePoint Created{};
};

struct Group {
    std::uint32_t Id = 0;
    std::uint32_t MachineId = 0;  ///< who looks after it
    std::uint32_t Flags = 0;
    std::string Name;
    std::optional<std::u16string> ShortName;
    std::optional<std::u16string> LongName;
    Bytes Data;
    std::uint32_t ParentId = 0;
    std::vector<std::uint32_t> Members;

    bool Has(std::uint32_t playerId) const;
};

struct Members {
    IdList<Machine> Machines;  ///< the others
    IdList<Player> Players;    ///< everybody's, without system players
    IdList<Group> Groups;

    Machine* MachineAt(const Endpoint& tcp);
    std::vector<std::uint32_t> PlayersOf(std::uint32_t machineId) const;
    bool InAnyGroup(std::uint32_t playerId) const;

    /// Also takes him out of all groups.
    void RemovePlayer(std::uint32_t playerId);

    /// Every id that is in use.
    bool Knows(std::uint32_t id) const;
};

Player MakePlayer(const PackedPlayer& record);
Group MakeGroup(const PackedPlayer& record);
void Rename(Player& player, std::optional<std::u16string> shortName, std::optional<std::u16string> longName);
void Rename(Group& group, std::optional<std::u16string> shortName, std::optional<std::u16string> longName);

}  // namespace corvenna::directplay
