#include "tests/airspace/plain_radar.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>

#include "airspace/approach_control.h"
#include "airspace/approach_service.h"
#include "airspace/artcc_service.h"
#include "airspace/departure_service.h"
#include "station/geometry.h"
#include "station/numbers.h"
#include "station/text.h"

namespace corvenna::plain {

namespace {

constexpr double Pi = 3.14159265358979;

double Radians(double degrees) { return degrees * (Pi / 180); }

double CentralAngle(double lat1, double lon1, double lat2, double lon2) {
    if (std::trunc(lat1 - lat2) == 0 && std::trunc(lon2 - lon1) == 0) {
        const double a = std::sin((lat1 - lat2) / 2);
        const double b = std::sin((lon1 - lon2) / 2);
        return 2 * ArcSin(std::sqrt(a * a + std::cos(lat1) * std::cos(lat2) * (b * b)));
    }
    return ArcCos(std::sin(lat1) * std::sin(lat2) + std::cos(lat1) * std::cos(lat2) * std::cos(lon1 - lon2));
}

bool Within(std::int16_t x, int centre, int halfWidth) {
    return HeadingInSector(x, NormalizeHeading(centre - halfWidth), NormalizeHeading(centre + halfWidth));
}

GeoPoint At(double latitude, double longitude) {
    GeoPoint point;
    point.Latitude = latitude;
    point.Longitude = longitude;
    return point;
}

GeoPoint FromRunway(const Station& station, std::int16_t bearing, int miles, std::string_view name) {
    GeoPoint fix = ProjectNm(station.RunwayLatitude, station.RunwayLongitude, bearing, miles);
    fix.Name = name;
    fix.Kind = "Waypoint";
    return fix;
}

std::string TurnWords(const PlayerRecord& pilot, std::int16_t x) {
    const bool left =
        HeadingInSector(x, NormalizeHeading(pilot.Heading - 180), NormalizeHeading(pilot.Heading));
    return fmt::format(" Turn {} heading {}.", left ? "left" : "right", x);
}

std::string AltitudeWords(const PlayerRecord& pilot) {
    const long long v = std::stoll(pilot.AssignedAltitude);
    if (pilot.Altitude < v) return fmt::format(" Climb and Maintain {} ft.", v);
    if (pilot.Altitude > v) return fmt::format(" Descent and Maintain {} ft.", v);
    return "";
}

std::int64_t RequiredAltitude(Station& s, const PlayerRecord& pilot) {
    std::string name = pilot.Target.Name;
    const std::string tail = " - " + pilot.Quadrant;
    for (auto at = name.find(tail); at != std::string::npos; at = name.find(tail))
        name.erase(at, tail.size());

    const auto dt =
        plain::DistanceNm(pilot.Target.Latitude, pilot.Target.Longitude, s.RunwayLatitude, s.RunwayLongitude);
    const GeoPoint p = At(pilot.Latitude, pilot.Longitude);
    const auto half = ToWhole<int>(dt / 2.0);
    const auto finalFix = [&](const GeoPoint& base) {
        s.FinalFix = FromRunway(s, s.SectorSouth, 7, "Final Approach");
        s.FinalFix.Altitude = plain::RouteTerrainAltitude(s, s.RunwayElevation, s.FinalFix, base);
    };
    const auto downwind = [&](GeoPoint& downwindFix, GeoPoint& baseFix, std::string_view baseName) {
        downwindFix = pilot.Target;
        baseFix = FromRunway(s, s.SectorSouth, half, baseName);
        finalFix(baseFix);
        baseFix.Altitude = plain::RouteTerrainAltitude(s, s.FinalFix.Altitude, baseFix, downwindFix);
        return std::int64_t{plain::RouteTerrainAltitude(s, baseFix.Altitude, downwindFix, p)} + 2000;
    };
    const auto base = [&](GeoPoint& baseFix) {
        baseFix = pilot.Target;
        finalFix(baseFix);
        return std::int64_t{plain::RouteTerrainAltitude(s, s.FinalFix.Altitude, baseFix, p)} + 2000;
    };
    if (name == "Left Downwind Leg") return downwind(s.LeftDownwindFix, s.LeftBaseFix, "Left Base Leg");
    if (name == "Right Downwind Leg") return downwind(s.RightDownwindFix, s.RightBaseFix, "Right Base Leg");
    if (name == "Left Base Leg") return base(s.LeftBaseFix);
    if (name == "Right Base Leg") return base(s.RightBaseFix);
    if (name == "Final Approach") {
        s.FinalFix = pilot.Target;
        return std::int64_t{plain::RouteTerrainAltitude(s, s.RunwayElevation, s.FinalFix, p)} + 2000;
    }
    return 0;
}

}  // namespace

std::int16_t DistanceNm(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double angle =
        CentralAngle(Radians(latitude1), Radians(longitude1), Radians(latitude2), Radians(longitude2));
    const double miles = angle * 10800 / Pi;
    return ToWhole<std::int16_t>(miles > 32767 ? 32767 : miles);
}

std::int16_t BearingTo(const Station& station, double latitude1, double longitude1, double latitude2,
                       double longitude2) {
    const double lat1 = Radians(latitude1), lon1 = Radians(longitude1);
    const double lat2 = Radians(latitude2), lon2 = Radians(longitude2);
    const double d = CentralAngle(lat1, lon1, lat2, lon2);
    double c = 0;
    if (d != 0) {
        c = ArcCos((std::sin(lat2) - std::cos(d) * std::sin(lat1)) / (std::cos(lat1) * std::sin(d)));
        if (!(std::sin(lon2 - lon1) < 0)) c = 6.28318530717958 - c;
    }
    const auto t = static_cast<int>(360 - std::floor(c * 180 / Pi));
    return TrueToMagnetic(station, NormalizeHeading(t), latitude1, longitude1);
}

bool HeadingInSector(std::int16_t& x, std::int16_t low, std::int16_t high) {
    if (x == 0) x = 360;
    if (low == high) return false;
    int a = low;
    for (int steps = 0; a != high && steps < 70000; ++steps) {
        if (a > 360) a = 1;
        if (a == x) return true;
        ++a;
    }
    return false;
}

void UpdatePilotGeometry(Station& s, PlayerRecord& pilot) {
    s.DistanceToAirport =
        plain::DistanceNm(s.AirportLatitude, s.AirportLongitude, pilot.Latitude, pilot.Longitude);
    s.DistanceToRunway =
        plain::DistanceNm(s.RunwayLatitude, s.RunwayLongitude, pilot.Latitude, pilot.Longitude);
    s.BearingFromRunway =
        plain::BearingTo(s, s.RunwayLatitude, s.RunwayLongitude, pilot.Latitude, pilot.Longitude);
    struct {
        std::string_view Word;
        std::int16_t Centre;
        std::int16_t HalfWidth;
    } const sectors[] = {
        {"north", s.SectorNorth, 30},         {"northeast", s.SectorNortheast, 15},
        {"northwest", s.SectorNorthwest, 15}, {"east", s.SectorEast, 30},
        {"west", s.SectorWest, 30},           {"southeast", s.SectorSoutheast, 15},
        {"southwest", s.SectorSouthwest, 15}, {"south", s.SectorSouth, 30},
    };
    const auto holds = [&](const auto& sector) {
        return plain::HeadingInSector(s.BearingFromRunway, NormalizeHeading(sector.Centre - sector.HalfWidth),
                                      NormalizeHeading(sector.Centre + sector.HalfWidth));
    };
    for (const auto& sector : sectors) {
        if (sector.Word == pilot.Quadrant && holds(sector)) return;
    }
    for (const auto& sector : sectors) {
        if (!holds(sector)) continue;
        pilot.Quadrant = sector.Word;
        return;
    }
}

std::int32_t RouteTerrainAltitude(const Station& station, std::int32_t altitude, const GeoPoint& from,
                                  const GeoPoint& to) {
    std::int32_t result = altitude;
    if (station.MountainCount < 1) return result;
    const auto b = plain::BearingTo(station, from.Latitude, from.Longitude, to.Latitude, to.Longitude);
    const auto r = plain::DistanceNm(from.Latitude, from.Longitude, to.Latitude, to.Longitude);
    for (std::int32_t i = 0; i < station.MountainCount; ++i) {
        const GeoPoint& mountain = station.Mountains[static_cast<std::size_t>(i)];
        const auto m =
            plain::BearingTo(station, from.Latitude, from.Longitude, mountain.Latitude, mountain.Longitude);
        const auto dm =
            plain::DistanceNm(from.Latitude, from.Longitude, mountain.Latitude, mountain.Longitude);
        if (Within(m, b, 45) && dm <= r && mountain.Altitude > result) result = mountain.Altitude;
    }
    return result;
}

void ScanTraffic(Station& station, PlayerRecord& pilot, std::string_view service) {
    struct {
        const char* Word;
        int Centre;
        int HalfWidth;
    } const arcs[] = {
        {"twelve o'clock", 0, 30},   {"two o'clock", 45, 15},   {"ten o'clock", -45, 15},
        {"three o'clock", 90, 30},   {"nine o'clock", -90, 30}, {"five o'clock", 135, 15},
        {"eight o'clock", -135, 15}, {"six o'clock", -180, 30},
    };
    std::string clock;
    for (std::int32_t i = 0; i < station.PlayerCount(); ++i) {
        const PlayerRecord& other = station.Players[i];
        if (other.Name == pilot.Name) continue;
        const auto d = plain::DistanceNm(pilot.Latitude, pilot.Longitude, other.Latitude, other.Longitude);
        if (std::abs(std::int64_t{pilot.Altitude} - std::int64_t{other.Altitude}) >= 3000 || d >= 5) continue;
        if (LowerCase(pilot.AdvisedTraffic).find(LowerCase(other.Name)) != std::string::npos) continue;
        pilot.Heading = NormalizeHeading(pilot.Heading);
        const auto b =
            plain::BearingTo(station, pilot.Latitude, pilot.Longitude, other.Latitude, other.Longitude);
        for (const auto& arc : arcs) {
            if (Within(b, pilot.Heading + arc.Centre, arc.HalfWidth)) clock = arc.Word;
        }
        if (d < 2) {
            pilot.MenuText = fmt::format(
                "{}, TRAFFIC ALERT!, {} miles, {}, {} ft, type {}. Avoid traffic and report them. Choose one "
                "of the following options for the {} frequency: 1-Report traffic in sight 2-Report traffic "
                "not in sight 3-Close ATC Services",
                pilot.Name, d, clock, other.Altitude, other.AircraftName, service);
        } else {
            pilot.MenuText = fmt::format(
                "{}, Traffic is {} miles, {}, {} ft, type {}. Report them in sight. Choose one of the "
                "following options for the {} frequency: 1-Report traffic in sight 2-Report traffic not in "
                "sight 3-Close ATC Services",
                pilot.Name, d, clock, other.Altitude, other.AircraftName, service);
        }
        pilot.Choice = 0;
        pilot.AdvisedTraffic += other.Name + ", ";
    }
}

void SteerToTarget(Station& station, PlayerRecord& pilot, std::string_view service) {
    if (pilot.Target.Name.empty()) return;
    const int reciprocal = NormalizeHeading(std::stoi(pilot.AssignedHeading) - 180);
    const GeoPoint& target = pilot.Target;
    const auto d = plain::DistanceNm(target.Latitude, target.Longitude, pilot.Latitude, pilot.Longitude);
    const auto b =
        plain::BearingTo(station, target.Latitude, target.Longitude, pilot.Latitude, pilot.Longitude);
    if (d < 1 || !Within(b, reciprocal, 90)) {
        pilot.Target = GeoPoint{};
        if (pilot.Phase == "Missed Approach") pilot.Phase = "Approach";
        return;
    }
    const std::string start = pilot.Name + ",";
    std::string line = start;
    const bool onCourse = Within(b, reciprocal, 10);
    const bool stands = LowerCase(pilot.MenuText).find(LowerCase("heading " + pilot.AssignedHeading + ".")) !=
                        std::string::npos;
    if (!onCourse && stands) {
        const double k = d - d / 3.0;
        const GeoPoint q = ProjectNm(target.Latitude, target.Longitude, reciprocal, ToWhole<int>(k));
        line += TurnWords(
            pilot, plain::BearingTo(station, pilot.Latitude, pilot.Longitude, q.Latitude, q.Longitude));
    } else if (onCourse && !stands) {
        const auto heading =
            plain::BearingTo(station, pilot.Latitude, pilot.Longitude, target.Latitude, target.Longitude);
        pilot.AssignedHeading = std::to_string(heading);
        line += TurnWords(pilot, heading);
    }
    const std::int64_t required = RequiredAltitude(station, pilot);
    if (std::abs(std::stoll(pilot.AssignedAltitude) - required) > 2000 && required > 0) {
        pilot.AssignedAltitude = std::to_string(required);
        line += AltitudeWords(pilot);
    } else if (line != start) {
        line += AltitudeWords(pilot);
    }
    const std::string closing = fmt::format(
        " Choose one of the following options for the {} frequency: 1-Acknowledge 2-Close ATC Services",
        service);
    if (line + closing == start + closing) return;
    pilot.MenuText = line + closing;
    pilot.Choice = 0;
}

void ApproachControl(Station& station, PlayerRecord& pilot) {
    const std::int64_t feet = std::int64_t{pilot.Altitude} - station.RunwayElevation;
    if (!(feet > 300 && feet < 10000 && station.DistanceToAirport < 20)) {
        corvenna::ApproachControl(station, pilot);  // leaves the airspace, without any search
        return;
    }
    plain::ScanTraffic(station, pilot, pilot.Phase == "Departure" ? "Departure" : "Approach");
    plain::SteerToTarget(station, pilot, "Approach");
    if (pilot.FlightRules == Vfr) {
        RunVfrApproach(station, pilot);
    } else if (pilot.FlightRules == Ifr && !RunDeparture(station, pilot)) {
        RunApproach(station, pilot);
    }
}

void ArtccControl(Station& station, PlayerRecord& pilot) {
    if (station.DistanceToAirport >= 200) {
        if (pilot.FlightRules <= Ifr) ResetPilot(station, pilot);
        return;
    }
    plain::ScanTraffic(station, pilot, "ARTCC");
    plain::SteerToTarget(station, pilot, "ARTCC");
    if (pilot.FlightRules == Vfr) {
        RunVfrArtcc(station, pilot);
    } else if (pilot.FlightRules == Ifr) {
        RunIfrArtcc(station, pilot);
    }
}

}  // namespace corvenna::plain
