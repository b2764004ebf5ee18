#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace corvenna {

struct PlayerRecord;

/// A place as a point of the unit sphere, where the poles and the 180th meridian are like any other place.
struct SpherePoint {
    double X = 0;
    double Y = 0;
    double Z = 0;
};

/// Latitude and longitude in degrees.
SpherePoint PointOnSphere(double latitude, double longitude);

double SquaredChord(const SpherePoint& a, const SpherePoint& b);

/// Who is where in space, so that a search for near traffic need not look at everybody. The players are
/// sorted into cells of the unit sphere and layers of height; a search looks into the few cells around a
/// place. It answers with those near in height who can be near in miles by the controller's own formulas,
/// and with few others: whoever asks applies the formulas to those.
class TrafficIndex {
  public:
    /// What counts as near: less than 5 whole miles, and less than this height.
    static constexpr std::int64_t NearFeet = 3000;

    /// Places in players, rising, of those who can be near the pilot. The first search of a tick sorts the
    /// players; they must stay where they are for the rest of it. tick is the number of the tick in progress,
    /// from 1. The answer is valid until the next search.
    std::span<const std::int32_t> Near(std::span<const PlayerRecord> players, const PlayerRecord& pilot,
                                       std::uint64_t tick);

    /// The answer between ticks, when nothing can be relied on: everybody who is near in height.
    std::span<const std::int32_t> NearInHeight(std::span<const PlayerRecord> players,
                                               const PlayerRecord& pilot);

  private:
    /// Small, so that the entries of a full session stay near the processor.
    struct Entry {
        float X = 0;
        float Y = 0;
        float Z = 0;
        std::int32_t Altitude = 0;
        std::int32_t Place = 0;
    };

    void Build(std::span<const PlayerRecord> players);
    std::size_t BucketOf(std::uint64_t cell) const;
    void Collect(const SpherePoint& centre, double reach, std::int32_t altitude);
    void CollectBucket(std::size_t bucket, const SpherePoint& centre, double squaredReach,
                       std::int32_t altitude);

    std::uint64_t tick_ = 0;                   // in which the players were sorted
    bool sorted_ = false;                      // false: somebody's position is beyond all reason
    std::size_t players_ = 0;                  // how many were sorted
    int bucketBits_ = 0;                       // 2^bucketBits_ buckets
    std::vector<std::uint32_t> bucketBegins_;  // where the entries of each bucket begin
    std::vector<Entry> entries_;               // by bucket
    std::vector<Entry> unsorted_;              // by place
    std::vector<std::uint64_t> cells_;         // of the entries, by place
    std::vector<std::size_t> buckets_;         // of a search
    std::vector<std::int32_t> found_;
};

}  // namespace corvenna
