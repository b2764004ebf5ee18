#include "station/traffic_index.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
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

// What the coordinates of an entry lose, and more.
constexpr double EntryError = 1e-6;

constexpr double CellSize = 2 * NearChord;  // so that a search spans two cells in each direction
constexpr std::size_t MostCells = std::size_t{3} * 3 * 3 * 2;  // or three, by rounding

// Beyond any position that the session's messages can carry.
constexpr double ReasonableDegrees = 1e5;

bool IsReasonable(double degrees) { return std::abs(degrees) <= ReasonableDegrees; }

std::uint64_t CellAlong(double coordinate) {
    return static_cast<std::uint64_t>(std::floor((coordinate + 2) / CellSize));
}

/// Twice the height of what is near: a search spans at most two layers.
std::uint64_t LayerAt(std::int64_t altitude) {
    constexpr std::int64_t Lowest = std::numeric_limits<std::int32_t>::min() - TrafficIndex::NearFeet;
    return static_cast<std::uint64_t>((altitude - Lowest) / (2 * TrafficIndex::NearFeet));
}

std::uint64_t CellOf(std::uint64_t x, std::uint64_t y, std::uint64_t z, std::uint64_t layer) {
    return (layer << 36) | (x << 24) | (y << 12) | z;
}

std::uint64_t CellOf(const SpherePoint& point, std::int32_t altitude) {
    return CellOf(CellAlong(point.X), CellAlong(point.Y), CellAlong(point.Z), LayerAt(altitude));
}

bool IsNearInHeight(std::int32_t altitude, std::int32_t other) {
    return std::abs(std::int64_t{altitude} - other) < TrafficIndex::NearFeet;
}

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
    buckets_.reserve(MostCells);  // so that no search takes memory, wherever they fly
    found_.reserve(players.size());
    sorted_ = std::all_of(players.begin(), players.end(), [](const PlayerRecord& player) {
        return IsReasonable(player.Latitude) && IsReasonable(player.Longitude);
    });
    if (!sorted_) return;

    bucketBits_ = std::max(1, static_cast<int>(std::bit_width(players.size())));
    bucketBegins_.assign((std::size_t{1} << bucketBits_) + 2, 0);  // shifted by one until all are placed
    unsorted_.resize(players.size());
    cells_.resize(players.size());
    for (std::size_t i = 0; i < players.size(); ++i) {
        const PlayerRecord& player = players[i];
        const SpherePoint point = PointOnSphere(player.Latitude, player.Longitude);
        cells_[i] = CellOf(point, player.Altitude);
        unsorted_[i] = {static_cast<float>(point.X), static_cast<float>(point.Y), static_cast<float>(point.Z),
                        player.Altitude, static_cast<std::int32_t>(i)};
        ++bucketBegins_[BucketOf(cells_[i]) + 2];
    }
    std::partial_sum(bucketBegins_.begin(), bucketBegins_.end(), bucketBegins_.begin());
    entries_.resize(players.size() + 1);  // one behind the last, for the empty buckets at the end
    for (std::size_t i = 0; i < players.size(); ++i) {
        entries_[bucketBegins_[BucketOf(cells_[i]) + 1]++] = unsorted_[i];
    }
}

/// Near places lie far apart in memory, so all of them are fetched before the first is looked at.
void TrafficIndex::Collect(const SpherePoint& centre, double reach, std::int32_t altitude) {
    const std::uint64_t lastX = CellAlong(centre.X + reach);
    const std::uint64_t lastY = CellAlong(centre.Y + reach);
    const std::uint64_t lastZ = CellAlong(centre.Z + reach);
    const std::uint64_t lastLayer = LayerAt(altitude + (NearFeet - 1));
    buckets_.clear();
    for (std::uint64_t x = CellAlong(centre.X - reach); x <= lastX; ++x) {
        for (std::uint64_t y = CellAlong(centre.Y - reach); y <= lastY; ++y) {
            for (std::uint64_t z = CellAlong(centre.Z - reach); z <= lastZ; ++z) {
                for (std::uint64_t layer = LayerAt(altitude - (NearFeet - 1)); layer <= lastLayer; ++layer) {
                    buckets_.push_back(BucketOf(CellOf(x, y, z, layer)));
                    __builtin_prefetch(&bucketBegins_[buckets_.back()]);
                }
            }
        }
    }
    std::sort(buckets_.begin(), buckets_.end());
    buckets_.erase(std::unique(buckets_.begin(), buckets_.end()), buckets_.end());  // cells may share one
    for (const std::size_t bucket : buckets_) __builtin_prefetch(&entries_[bucketBegins_[bucket]]);
    const double squaredReach = (reach + EntryError) * (reach + EntryError);
    for (const std::size_t bucket : buckets_) CollectBucket(bucket, centre, squaredReach, altitude);
}

/// Entries of other cells that share the bucket are looked at too.
void TrafficIndex::CollectBucket(std::size_t bucket, const SpherePoint& centre, double squaredReach,
                                 std::int32_t altitude) {
    for (std::size_t i = bucketBegins_[bucket]; i < bucketBegins_[bucket + 1]; ++i) {
        const Entry& entry = entries_[i];
        if (!IsNearInHeight(entry.Altitude, altitude)) continue;
        if (SquaredChord({entry.X, entry.Y, entry.Z}, centre) <= squaredReach) found_.push_back(entry.Place);
    }
}

std::span<const std::int32_t> TrafficIndex::Near(std::span<const PlayerRecord> players,
                                                 const PlayerRecord& pilot, std::uint64_t tick) {
    if (tick_ != tick || players_ != players.size()) Build(players);
    tick_ = tick;
    if (!sorted_ || !IsReasonable(pilot.Latitude) || !IsReasonable(pilot.Longitude)) {
        return NearInHeight(players, pilot);
    }
    found_.clear();
    const SpherePoint point = PointOnSphere(pilot.Latitude, pilot.Longitude);
    Collect(point, NearChord, pilot.Altitude);
    Collect({-point.X, -point.Y, -point.Z}, OppositeChord, pilot.Altitude);
    std::sort(found_.begin(), found_.end());
    for (const std::int32_t place : found_) __builtin_prefetch(&players[static_cast<std::size_t>(place)]);
    return found_;
}

std::span<const std::int32_t> TrafficIndex::NearInHeight(std::span<const PlayerRecord> players,
                                                         const PlayerRecord& pilot) {
    found_.clear();
    for (std::size_t i = 0; i < players.size(); ++i) {
        if (IsNearInHeight(players[i].Altitude, pilot.Altitude))
            found_.push_back(static_cast<std::int32_t>(i));
    }
    return found_;
}

}  // namespace corvenna
