#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>

#include "station/model.h"

namespace corvenna {

/// Small airports with a network, traffic, routes and queues, made by chance to meet all odd corners often:
/// dead ends, islands, points at equal distances, parallel paths, paths into nowhere, spots tied several
/// times or not at all, stale indexes, shared names. The same seed makes the same scenes.
class RandomScene {
  public:
    explicit RandomScene(std::uint64_t seed) : engine_(seed) {}

    Station Airport() { return Airport(Number(1, Chance(25) ? 40 : 14)); }
    Station Airport(int points);

    /// Pilots in all phases near points, spots and the runway, and routes over the network.
    void AddTraffic(Station& station);

    /// What may have happened between two ticks: moves, digits, and fields written from outside.
    void Disturb(Station& station);

    /// A runway or a spot of the airport, and now and then something else.
    GeoPoint Target(const Station& station);

    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
    bool Chance(int percent) { return Number(1, 100) <= percent; }

  private:
    TaxiPoint Point();
    TaxiPath Path(int points, int spots);
    ParkingSpot Spot(const Station& station, int number);
    PlayerRecord Pilot(const Station& station, int number);
    TaxiRouteRecord Route(const Station& station);
    void Place(const Station& station, PlayerRecord& pilot);
    std::int32_t Feet(int low, int high) { return Number(low, high); }

    template <class Words>
    std::string Word(const Words& words) {
        return std::string(
            words[static_cast<std::size_t>(Number(0, static_cast<int>(std::size(words)) - 1))]);
    }

    std::mt19937_64 engine_;
    bool onLattice_ = false;
    bool damaged_ = false;
};

}  // namespace corvenna
