#include "airspace/fixes.h"

#include "airspace/radar_phases.h"
#include "airspace/vector_words.h"
#include "station/geometry.h"
#include "station/numbers.h"
#include "station/say.h"

namespace corvenna {

namespace {

constexpr std::string_view ExpectVectors =
    "{callsign}, You are {distance} miles, {quadrant}, expect vectors for runway {runway} approach.";
constexpr std::string_view Waypoint = "Waypoint";
constexpr std::string_view BetweenLegAndQuadrant = " - ";

using Fix = GeoPoint Station::*;

/// A chain leads from the downwind fix over the base fix to the final fix, or begins further in.
struct Pattern {
    std::string_view Quadrant;
    std::string_view FirstLeg;  ///< what Target is called when the chain is flown
    Fix Downwind;               ///< nullptr: the chain begins at the base fix
    std::int16_t Station::*DownwindSector;
    std::string_view BaseLeg;  ///< empty: the chain begins at the final fix
    Fix Base;
};

constexpr Fix NoDownwind = nullptr;
constexpr std::int16_t Station::*NoSector = nullptr;

// A pilot in the south has no base leg, but the altitude of his final fix is still taken over the way to the
// right base fix, wherever the last pilot left that.
constexpr Pattern Patterns[] = {
    {Side::North, Leg::LeftDownwind, &Station::LeftDownwindFix, &Station::SectorSouthwest, Leg::LeftBase,
     &Station::LeftBaseFix},
    {Side::Northwest, Leg::LeftDownwind, &Station::LeftDownwindFix, &Station::SectorSouthwest, Leg::LeftBase,
     &Station::LeftBaseFix},
    {Side::West, Leg::LeftDownwind, &Station::LeftDownwindFix, &Station::SectorSouthwest, Leg::LeftBase,
     &Station::LeftBaseFix},
    {Side::Northeast, Leg::RightDownwind, &Station::RightDownwindFix, &Station::SectorSoutheast,
     Leg::RightBase, &Station::RightBaseFix},
    {Side::East, Leg::RightDownwind, &Station::RightDownwindFix, &Station::SectorSoutheast, Leg::RightBase,
     &Station::RightBaseFix},
    {Side::Southwest, Leg::LeftBase, NoDownwind, NoSector, Leg::LeftBase, &Station::LeftBaseFix},
    {Side::Southeast, Leg::RightBase, NoDownwind, NoSector, Leg::RightBase, &Station::RightBaseFix},
    {Side::South, Leg::Final, NoDownwind, NoSector, "", &Station::RightBaseFix},
};

constexpr const Pattern& MissedApproachPattern = Patterns[4];  // the right-hand one
constexpr std::int32_t MissedApproachDownwindMiles = 30;
constexpr std::int32_t MissedApproachBaseMiles = 15;

bool IsNamed(std::string_view name, std::string_view leg, std::string_view quadrant) {
    if (name.size() != leg.size() + BetweenLegAndQuadrant.size() + quadrant.size()) return false;
    return name.starts_with(leg) && name.substr(leg.size()).starts_with(BetweenLegAndQuadrant) &&
           name.ends_with(quadrant);
}

void CreateFix(const Station& station, GeoPoint& fix, std::string_view leg, const PlayerRecord& pilot,
               std::int16_t bearing, std::int32_t miles) {
    PlaceFix(station, fix, bearing, miles);
    fix.Name.assign(leg).append(BetweenLegAndQuadrant).append(pilot.Quadrant);
    fix.Kind = Waypoint;
}

/// Heading and altitude to a fix, added to what MenuText begins with. previousAltitude is that of the next
/// fix inward.
void SendTo(Station& station, PlayerRecord& pilot, const GeoPoint& fix, std::int32_t previousAltitude,
            std::string_view service) {
    pilot.Target = fix;
    const auto heading = BearingTo(station, pilot.Latitude, pilot.Longitude, fix.Latitude, fix.Longitude);
    AssignHeading(pilot, heading);
    AddTurnWords(pilot.MenuText, pilot, heading);
    pilot.Choice = 0;
    AssignAltitude(pilot,
                   RouteTerrainAltitude(station, previousAltitude, fix, PositionOf(pilot)) + TerrainMargin);
    AddAltitudeWords(pilot.MenuText, pilot);
    AddVectorMenu(pilot.MenuText, service);
}

/// Creates the fixes from the last leg outward, then their altitudes from the runway outward, and sends the
/// pilot to the first.
void FlyPattern(Station& station, PlayerRecord& pilot, const Pattern& pattern, std::int32_t downwindMiles,
                std::int32_t baseMiles, std::string_view service) {
    GeoPoint& base = station.*pattern.Base;
    GeoPoint& final = station.FinalFix;

    CreateFix(station, final, Leg::Final, pilot, station.SectorSouth, FinalFixMiles);
    if (!pattern.BaseLeg.empty()) {
        CreateFix(station, base, pattern.BaseLeg, pilot, station.SectorSouth, baseMiles);
    }
    final.Altitude = RouteTerrainAltitude(station, station.RunwayElevation, final, base);
    if (pattern.Downwind == nullptr) {
        if (pattern.BaseLeg.empty()) {
            SendTo(station, pilot, final, station.RunwayElevation, service);
        } else {
            SendTo(station, pilot, base, final.Altitude, service);
        }
        return;
    }
    GeoPoint& downwind = station.*pattern.Downwind;
    CreateFix(station, downwind, pattern.FirstLeg, pilot, station.*pattern.DownwindSector, downwindMiles);
    base.Altitude = RouteTerrainAltitude(station, final.Altitude, base, downwind);
    SendTo(station, pilot, downwind, base.Altitude, service);
}

void BeginVector(PlayerRecord& pilot) { pilot.MenuText.assign(pilot.Name).append(","); }

}  // namespace

void PlaceFix(const Station& station, GeoPoint& fix, std::int16_t bearing, std::int32_t miles) {
    const GeoPoint place = ProjectNm(station.RunwayLatitude, station.RunwayLongitude, bearing, miles);
    fix.Latitude = place.Latitude;
    fix.Longitude = place.Longitude;
    fix.Altitude = 0;
}

std::int32_t HalfOf(std::int16_t miles) { return ToWhole<std::int32_t>(miles / 2.0); }

GeoPoint PositionOf(const PlayerRecord& pilot) {
    GeoPoint position;
    position.Latitude = pilot.Latitude;
    position.Longitude = pilot.Longitude;
    return position;
}

void BuildPatternFixes(Station& station, PlayerRecord& pilot, std::string_view service) {
    for (const Pattern& pattern : Patterns) {
        if (pilot.Quadrant != pattern.Quadrant) continue;
        if (IsNamed(pilot.Target.Name, pattern.FirstLeg, pilot.Quadrant)) return;
        if (pilot.MenuText.empty()) {
            Say(station, pilot, ExpectVectors, fmt::arg("distance", station.DistanceToRunway),
                fmt::arg("quadrant", pilot.Quadrant));
        } else {
            BeginVector(pilot);
        }
        FlyPattern(station, pilot, pattern, station.DistanceToRunway, HalfOf(station.DistanceToRunway),
                   service);
        return;
    }
}

void BuildMissedApproachFixes(Station& station, PlayerRecord& pilot, std::string_view service) {
    if (!pilot.Target.Name.empty()) return;
    BeginVector(pilot);
    FlyPattern(station, pilot, MissedApproachPattern, MissedApproachDownwindMiles, MissedApproachBaseMiles,
               service);
}

}  // namespace corvenna
