#include "airspace/vectors.h"

#include <cstdlib>

#include "airspace/fixes.h"
#include "airspace/radar_phases.h"
#include "airspace/radar_state.h"
#include "airspace/vector_words.h"
#include "station/geometry.h"
#include "station/numbers.h"
#include "station/text.h"

namespace corvenna {

namespace {

// ---- Course

/// Whether the heading last assigned is still what the pilot reads.
bool InstructionStands(Station& station, const PlayerRecord& pilot) {
    station.Phrase.assign("heading ").append(pilot.AssignedHeading).append(".");
    return ContainsIgnoringCase(pilot.MenuText, station.Phrase);
}

/// To a point on the inbound course, two thirds of the way back from the fix. The assigned heading stays.
void AddInterception(const Station& station, const PlayerRecord& pilot, std::int16_t reciprocal,
                     std::int16_t distance, std::string& line) {
    const double back = distance - distance / 3.0;
    const GeoPoint point =
        ProjectNm(pilot.Target.Latitude, pilot.Target.Longitude, reciprocal, ToWhole<std::int32_t>(back));
    AddTurnWords(line, pilot,
                 BearingTo(station, pilot.Latitude, pilot.Longitude, point.Latitude, point.Longitude));
}

void AddDirectHeading(const Station& station, PlayerRecord& pilot, std::string& line) {
    const auto heading =
        BearingTo(station, pilot.Latitude, pilot.Longitude, pilot.Target.Latitude, pilot.Target.Longitude);
    AssignHeading(pilot, heading);
    AddTurnWords(line, pilot, heading);
}

/// One correction per excursion: once it is spoken the text holds the assigned heading no more, and the
/// next one comes when the pilot is back within 10 degrees.
void CorrectCourse(Station& station, PlayerRecord& pilot, std::int16_t reciprocal, std::int16_t distance,
                   bool onCourse, std::string& line) {
    const bool stands = InstructionStands(station, pilot);
    if (!onCourse && stands) {
        AddInterception(station, pilot, reciprocal, distance, line);
    } else if (onCourse && !stands) {
        AddDirectHeading(station, pilot, line);
    }
}

// ---- Altitude

/// The leg that Target's name tells, provided that its chain was built in the pilot's present quadrant: in
/// any other the name keeps its tail and is no leg.
std::string_view LegOf(Station& station, const PlayerRecord& pilot) {
    std::string& name = station.LegName;
    name = pilot.Target.Name;
    station.Phrase.assign(" - ").append(pilot.Quadrant);
    for (auto at = name.find(station.Phrase); at != std::string::npos; at = name.find(station.Phrase, at)) {
        name.erase(at, station.Phrase.size());
    }
    return name;
}

void RenewFix(const Station& station, GeoPoint& fix, std::string_view leg, std::int32_t miles) {
    PlaceFix(station, fix, station.SectorSouth, miles);
    fix.Name = leg;
    fix.Kind = "Waypoint";
}

void RenewFinal(Station& station, const GeoPoint& base) {
    RenewFix(station, station.FinalFix, Leg::Final, FinalFixMiles);
    station.FinalFix.Altitude =
        RouteTerrainAltitude(station, station.RunwayElevation, station.FinalFix, base);
}

std::int64_t RequiredOnDownwind(Station& station, const PlayerRecord& pilot, GeoPoint& downwind,
                                GeoPoint& base, std::string_view baseLeg) {
    downwind = pilot.Target;
    const auto distance = DistanceNm(pilot.Target.Latitude, pilot.Target.Longitude, station.RunwayLatitude,
                                     station.RunwayLongitude);
    RenewFix(station, base, baseLeg, HalfOf(distance));
    RenewFinal(station, base);
    base.Altitude = RouteTerrainAltitude(station, station.FinalFix.Altitude, base, downwind);
    return RouteTerrainAltitude(station, base.Altitude, downwind, PositionOf(pilot)) + TerrainMargin;
}

std::int64_t RequiredOnBase(Station& station, const PlayerRecord& pilot, GeoPoint& base) {
    base = pilot.Target;
    RenewFinal(station, base);
    return RouteTerrainAltitude(station, station.FinalFix.Altitude, base, PositionOf(pilot)) + TerrainMargin;
}

std::int64_t RequiredOnFinal(Station& station, const PlayerRecord& pilot) {
    station.FinalFix = pilot.Target;
    return RouteTerrainAltitude(station, station.RunwayElevation, station.FinalFix, PositionOf(pilot)) +
           TerrainMargin;
}

/// Feet that the pilot needs to have by now; 0 when his leg is unknown.
std::int64_t RequiredAltitude(Station& station, const PlayerRecord& pilot) {
    const std::string_view leg = LegOf(station, pilot);
    if (leg == Leg::LeftDownwind) {
        return RequiredOnDownwind(station, pilot, station.LeftDownwindFix, station.LeftBaseFix,
                                  Leg::LeftBase);
    }
    if (leg == Leg::RightDownwind) {
        return RequiredOnDownwind(station, pilot, station.RightDownwindFix, station.RightBaseFix,
                                  Leg::RightBase);
    }
    if (leg == Leg::LeftBase) return RequiredOnBase(station, pilot, station.LeftBaseFix);
    if (leg == Leg::RightBase) return RequiredOnBase(station, pilot, station.RightBaseFix);
    if (leg == Leg::Final) return RequiredOnFinal(station, pilot);
    return 0;
}

/// A change of up to 2000 ft is not passed on, but a new heading repeats the altitude.
void RenewAltitude(PlayerRecord& pilot, std::int64_t required, bool hasHeading, std::string& line) {
    if (required > 0 && std::abs(WholeNumber(pilot.AssignedAltitude) - required) > 2000) {
        AssignAltitude(pilot, required);
        AddAltitudeWords(line, pilot);
    } else if (hasHeading) {
        AddAltitudeWords(line, pilot);
    }
}

void PassFix(PlayerRecord& pilot) {
    DropTarget(pilot);
    if (pilot.Phase == RadarPhase::MissedApproach) pilot.Phase = RadarPhase::Approach;
}

}  // namespace

void SteerToTarget(Station& station, PlayerRecord& pilot, std::string_view service) {
    if (pilot.Target.Name.empty()) return;
    const GeoPoint& target = pilot.Target;
    const std::int16_t reciprocal =
        NormalizeHeading(Narrow<std::int32_t>(WholeNumber(pilot.AssignedHeading) - 180));
    Way way = WayTo(station, target.Latitude, target.Longitude, pilot.Latitude, pilot.Longitude);
    if (way.Distance < 1 || !HeadingWithin(way.Bearing, reciprocal, 90)) {
        PassFix(pilot);
        return;
    }

    std::string& line = station.Line;
    line.assign(pilot.Name).append(",");
    const std::size_t begun = line.size();
    CorrectCourse(station, pilot, reciprocal, way.Distance, HeadingWithin(way.Bearing, reciprocal, 10), line);
    RenewAltitude(pilot, RequiredAltitude(station, pilot), line.size() > begun, line);
    if (line.size() == begun) return;
    AddVectorMenu(line, service);
    pilot.MenuText = line;
    pilot.Choice = 0;
}

}  // namespace corvenna
