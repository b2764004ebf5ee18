#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "station/model.h"

namespace corvenna {

/// Finds records by player id or by name without looking at all of them. It answers exactly what a walk
/// over Players from the first to the last would: it follows added records at its next question, and starts
/// afresh when records were removed or moved. Names and ids written into records from outside must be told
/// by Players.MarkChanged(). Station's thread.
class PlayerDirectory {
  public:
    static constexpr std::int32_t None = -1;

    /// The first record with this id and this name, both, or None.
    std::int32_t FirstFullMatch(const Station& station, std::int32_t id, std::string_view name);
    /// The next one behind it.
    std::int32_t NextFullMatch(const Station& station, std::int32_t place) const;

    /// The first record with this name, or None.
    std::int32_t FirstNameMatch(const Station& station, std::string_view name);
    std::int32_t NextNameMatch(std::int32_t place) const;

  private:
    /// The records of one key as a chain in the order of Players.
    struct Chain {
        std::int32_t First = None;
        std::int32_t Last = None;
    };

    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };

    void Follow(const Station& station);
    static void Append(Chain& chain, std::vector<std::int32_t>& next, std::int32_t place);
    std::int32_t FullMatchFrom(const Station& station, std::int32_t place, std::string_view name) const;

    std::uint64_t revision_ = 0;
    std::unordered_map<std::int32_t, Chain> byId_;
    std::unordered_map<std::string, Chain, TextHash, std::equal_to<>> byName_;
    std::vector<std::int32_t> nextOfId_;  ///< for each record indexed so far: the next one of the same id
    std::vector<std::int32_t> nextOfName_;
};

}  // namespace corvenna
