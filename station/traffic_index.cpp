#include "station/traffic_index.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

#include "station/model.h"

namespace corvenna {

namespace {

constexpr double Pi = 3.14159265358979;  // the geometry's own

// 4.5 miles, from which on a distance is cut to 5 or more, as a chord of the unit sphere. The margin is far
// above what the formulas lose in rounding: 1e-9 of it.
constexpr double NearChord = 4.5 * Pi / 10800 * (1 + 1e-6);

// Two places that are exact opposites can come out of the law of cosines as one and the same, for want of
// the last bit: their distance is then 0.
constexpr double OppositeChord = 1e-6;

constexpr double CellSize = 2 * NearChord;  // so that a search spans at most two cells in each direction

// Beyond any position that the session's messages can carry.
constexpr double ReasonableDegrees = 1e5;

bool IsReasonable(double degrees) { return std::abs(degrees) <= ReasonableDegrees; }

std::uint64_t CellAlong(double coordinate) {
    return static_cast<std::uint64_t>(std::floor((coordinate + 2) / CellSize));
}

std::uint64_t CellOf(std::uint64_t x, std::uint64_t y, std::uint64_t z) { return (x << 40) | (y << 20) | z; }

}  // namespace

SpherePoint PointOnSphere(double latitude, double longitude) {
    const double lat = latitude * (Pi / 180);
    const double lon = longitude * (Pi / 180);
    const double cosLat = std::cos(lat);
    return {cosLat * std::cos(lon), cosLat * std::sin(lon), std::sin(lat)};
}

double SquaredChord(const SpherePoint& a, const SpherePoint& b) {
    const double x = a.X - b.X;
    const double y = a.Y - b.Y;
    const double z = a.Z - b.Z;
    return x * x + y * y + z * z;
}

std::size_t TrafficIndex::BucketOf(std::uint64_t cell) const {
    return static_cast<std::size_t>((cell * 0x9E3779B97F4A7C15u) >> (64 - bucketBits_));
}

/// A counting sort by bucket.
void TrafficIndex::Build(std::span<const PlayerRecord> players) {
    players_ = players.size();
    sorted_ = std::all_of(players.begin(), players.end(), [](const PlayerRecord& player) {
        return IsReasonable(player.Latitude) && IsReasonable(player.Longitude);
    });
    if (!sorted_) return;

    bucketBits_ = std::max(1, static_cast<int>(std::bit_width(players.size())));
    bucketEnds_.assign((std::size_t{1} << bucketBits_) + 1, 0);
    unsorted_.resize(players.size());
    for (std::size_t i = 0; i < players.size(); ++i) {
        const SpherePoint point = PointOnSphere(players[i].Latitude, players[i].Longitude);
        const auto cell = CellOf(CellAlong(point.X), CellAlong(point.Y), CellAlong(point.Z));
        unsorted_[i] = {point, cell, players[i].Altitude, static_cast<std::int32_t>(i)};
        ++bucketEnds_[BucketOf(cell) + 1];
    }
    std::partial_sum(bucketEnds_.begin(), bucketEnds_.end(), bucketEnds_.begin());
    entries_.resize(players.size());
    for (const Entry& entry : unsorted_) entries_[bucketEnds_[BucketOf(entry.Cell)]++] = entry;
}

void TrafficIndex::CollectCell(std::uint64_t cell, const SpherePoint& centre, double squaredReach,
                               std::int32_t altitude) {
    const std::size_t bucket = BucketOf(cell);
    const std::size_t begin = bucket == 0 ? 0 : bucketEnds_[bucket - 1];
    for (std::size_t i = begin; i < bucketEnds_[bucket]; ++i) {
        const Entry& entry = entries_[i];
        if (entry.Cell != cell) continue;  // another cell that shares the bucket
        if (std::abs(std::int64_t{entry.Altitude} - altitude) >= NearFeet) continue;
        if (SquaredChord(entry.Point, centre) <= squaredReach) found_.push_back(entry.Place);
    }
}

void TrafficIndex::Collect(const SpherePoint& centre, double reach, std::int32_t altitude) {
    const std::uint64_t lastX = CellAlong(centre.X + reach);
    const std::uint64_t lastY = CellAlong(centre.Y + reach);
    const std::uint64_t lastZ = CellAlong(centre.Z + reach);
    for (std::uint64_t x = CellAlong(centre.X - reach); x <= lastX; ++x) {
        for (std::uint64_t y = CellAlong(centre.Y - reach); y <= lastY; ++y) {
            for (std::uint64_t z = CellAlong(centre.Z - reach); z <= lastZ; ++z) {
                CollectCell(CellOf(x, y, z), centre, reach * reach, altitude);
            }
        }
    }
}

std::span<const std::int32_t> TrafficIndex::Near(std::span<const PlayerRecord> players,
                                                 const PlayerRecord& pilot, std::uint64_t tick) {
    if (tick_ != tick || players_ != players.size()) Build(players);
    tick_ = tick;
    if (!sorted_ || !IsReasonable(pilot.Latitude) || !IsReasonable(pilot.Longitude))
        return Everybody(players);
    found_.clear();
    const SpherePoint point = PointOnSphere(pilot.Latitude, pilot.Longitude);
    Collect(point, NearChord, pilot.Altitude);
    Collect({-point.X, -point.Y, -point.Z}, OppositeChord, pilot.Altitude);
    std::sort(found_.begin(), found_.end());
    return found_;
}

std::span<const std::int32_t> TrafficIndex::Everybody(std::span<const PlayerRecord> players) {
    found_.resize(players.size());
    std::iota(found_.begin(), found_.end(), 0);
    return found_;
}

}  // namespace corvenna
