#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "station/model.h"
#include "station/phases.h"
#include "support/test_field.h"

namespace corvenna {

/// The test field with a taxi network of one's own. Places are feet east and north of the threshold of runway
/// 16, which points to the south-south-east; variation is zero.
struct GroundField {
    TestField Field;
    Station& S = Field.S;

    /// Each adds one and gives its number.
    std::int32_t Point(double east, double north);
    std::int32_t Spot(std::string_view name, double east, double north, std::int32_t radius = 100);

    void Path(std::int32_t kind, std::int32_t start, std::int32_t end, std::string_view name = {});
    void Taxiway(std::int32_t start, std::int32_t end, std::string_view name) { Path(0, start, end, name); }
    void Runway(std::int32_t start, std::int32_t end, std::string_view name = "Runway 16") {
        Path(1, start, end, name);
    }
    void Tie(std::int32_t point, std::int32_t spot) { Path(2, point, spot); }

    /// A straight taxiway into the threshold from the east, and the runway from there. Points: 0 the apron,
    /// 1, 2, 3 the threshold, 4 down the runway. Taxiway A as far as 2, then B. On the apron GATE A 1 (spot
    /// 0) and PARKING 1 (spot 1), both tied to point 0.
    void StraightNetwork();

    /// A pilot on Ground, 2000 ft east and 3000 ft north of it all, on the ground.
    PlayerRecord& Pilot(std::string_view name, std::string_view phase = {}, std::uint8_t flightRules = Vfr);

    void Move(PlayerRecord& pilot, double east, double north);

    /// A stored route over these points, for the runway or, with a name, for a spot. Its links bear no names.
    TaxiRouteRecord& Route(std::string_view pilot, std::initializer_list<std::int32_t> points,
                           std::string_view spot = {});

    /// One turn of the pilot, with a digit typed or none.
    void Turn(PlayerRecord& pilot, std::uint8_t choice = 0);

  private:
    double Latitude(double north) const;
    double Longitude(double east) const;
};

/// The points that links lead over, from start to end. Each link must begin where the one before it ends.
std::vector<std::int32_t> PointsOf(std::span<const TaxiPath> links);

/// A network of the test's own and one pilot, N1, to be routed over it. The runway's target is the threshold,
/// at 0 east and 0 north.
struct RoutingField : GroundField {
    PlayerRecord& PilotAt(double east, double north);

    GeoPoint RunwayTarget() const;
    GeoPoint SpotTarget(std::size_t spot) const;

    /// The points of the route that the pilot gets, from start to end; none without a route.
    std::vector<std::int32_t> Assign(const GeoPoint& target);
    std::vector<std::int32_t> ToRunway() { return Assign(RunwayTarget()); }
    std::vector<std::int32_t> ToSpot(std::size_t spot) { return Assign(SpotTarget(spot)); }

    std::string Said() { return Field.Pilot("N1").MenuText; }
};

/// Two taxiways, from the east (point 1) and from the west (point 2), into point 0; from there to point 3,
/// a little east of south: to the very south a bearing can come out as 360.
struct JunctionField : GroundField {
    JunctionField();

    /// A pilot on Ground at a place, without a route.
    PlayerRecord& At(std::string_view name, double east, double north,
                     std::string_view phase = Phase::TaxiingToRunway);

    const std::string& PhaseOf(std::string_view name) { return Field.Pilot(name).Phase; }
    const std::string& TextOf(std::string_view name) { return Field.Pilot(name).MenuText; }

    void Separate(bool runwayOccupied = false);
};

/// The text of a clearance or of a menu behind the callsign's first words.
inline constexpr std::string_view GroundMenu =
    "Choose one of the following options for the Ground frequency: ";

}  // namespace corvenna
