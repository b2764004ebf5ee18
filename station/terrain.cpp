#include <algorithm>
#include <cmath>

#include "station/geometry.h"
#include "station/terrain_index.h"

namespace corvenna {

namespace {

constexpr double Pi = 3.14159265358979;  // the geometry's own

/// The fan of 90 degrees from a place along a course, as far as a range. It knows mountains that certainly
/// lie outside from their place on the unit sphere alone; all others are left to the formulas.
class Fan {
  public:
    Fan(const Station& station, const GeoPoint& from, const GeoPoint& to)
        : station_(station),
          from_(from),
          way_(WayTo(station, from.Latitude, from.Longitude, to.Latitude, to.Longitude)),
          origin_(PointOnSphere(from.Latitude, from.Longitude)),
          squaredReach_(SquaredReach(way_.Distance)) {
        const double lat = from.Latitude * (Pi / 180);
        const double lon = from.Longitude * (Pi / 180);
        cosLat_ = std::cos(lat);
        north_ = {-std::sin(lat) * std::cos(lon), -std::sin(lat) * std::sin(lon), cosLat_};
        east_ = {-std::sin(lon), std::cos(lon), 0};
        const double course =
            (way_.Bearing + MagneticVariation(station, from.Latitude, from.Longitude)) * (Pi / 180);
        cosCourse_ = std::cos(course);
        sinCourse_ = std::sin(course);
        // A right bound of 0 or 1 is never met by the walk of HeadingInSector: all directions are inside.
        everyDirection_ = NormalizeHeading(way_.Bearing + HalfWidth) <= 1;
    }

    bool Holds(const TerrainIndex::Peak& peak) const {
        if (IsTooFar(peak.Point) || LiesAside(peak.Point)) return false;
        Way way = WayTo(station_, from_.Latitude, from_.Longitude, peak.Latitude, peak.Longitude);
        return way.Distance <= way_.Distance && HeadingWithin(way.Bearing, way_.Bearing, HalfWidth);
    }

  private:
    static constexpr std::int16_t HalfWidth = 45;
    static constexpr double Everywhere = 5;  // beyond the longest chord

    /// A mile has its half up to the next one. The margin is far above what the formulas lose in rounding.
    static double SquaredReach(std::int16_t miles) {
        const double angle = (miles + 0.5 + 0.01) * Pi / 10800;
        return angle >= Pi ? Everywhere : 4 * std::sin(angle / 2) * std::sin(angle / 2);
    }

    /// Exact opposites can come out of the law of cosines at a distance of 0.
    bool IsTooFar(const SpherePoint& point) const {
        const double squared = SquaredChord(point, origin_);
        return squared > squaredReach_ && squared < 4 - 1e-9;
    }

    /// More than 50 degrees off the course, which whole degrees can't make 45. Close to the place itself, to
    /// its opposite and to the poles the formula for the bearing loses its digits, and due south it can
    /// even turn round: none of these is decided here.
    bool LiesAside(const SpherePoint& point) const {
        constexpr double CosineOf50 = 0.6427;
        if (everyDirection_) return false;
        const double northward = point.X * north_.X + point.Y * north_.Y + point.Z * north_.Z;
        const double eastward = point.X * east_.X + point.Y * east_.Y;
        const double squared = northward * northward + eastward * eastward;
        if (squared < 1e-10 || squared * cosLat_ * cosLat_ < 1e-20) return false;
        const double length = std::sqrt(squared);
        if (northward < -0.999 * length) return false;
        return eastward * sinCourse_ + northward * cosCourse_ < CosineOf50 * length;
    }

    const Station& station_;
    const GeoPoint& from_;
    Way way_;
    SpherePoint origin_;
    SpherePoint north_;
    SpherePoint east_;
    double squaredReach_;
    double cosLat_ = 0;
    double cosCourse_ = 0;
    double sinCourse_ = 0;
    bool everyDirection_ = false;
};

void UpdateTerrain(const Station& station) {
    const auto held = std::min(static_cast<std::size_t>(station.MountainCount), station.Mountains.size());
    station.Terrain.Update({station.Mountains.data(), held},
                           station.TickInProgress ? station.TicksBegun : TerrainIndex::NoTick);
}

}  // namespace

std::int32_t RouteTerrainAltitude(const Station& station, std::int32_t altitude, const GeoPoint& from,
                                  const GeoPoint& to) {
    if (station.MountainCount < 1) return altitude;
    UpdateTerrain(station);
    const Fan fan(station, from, to);
    for (const TerrainIndex::Peak& peak : station.Terrain.ByFallingAltitude()) {
        if (peak.Altitude <= altitude) break;
        if (fan.Holds(peak)) return peak.Altitude;
    }
    return altitude;
}

}  // namespace corvenna
