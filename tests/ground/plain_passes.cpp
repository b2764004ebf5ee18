#include "ground/ground_control.h"
#include "ground/plain_ground.h"
#include "station/geometry.h"
#include "station/numbers.h"
#include "station/text.h"

namespace corvenna {

namespace {

std::int32_t UpperIndex(const auto& array) { return static_cast<std::int32_t>(array.size()) - 1; }

/// The record at an index, or a blank one whose changes nobody sees.
PlayerRecord& RecordAt(Station& station, std::int32_t index, PlayerRecord& blank) {
    if (!station.Players.Holds(index)) return blank;
    return station.Players[index];
}

bool IsHolding(const PlayerRecord& pilot) {
    return pilot.Phase == "Acknowledge hold position" || pilot.Phase == "Hold position";
}

bool Lives(const TaxiPath& link) { return link.StartPoint != -1 && link.EndPoint != -1; }

/// Whether another pilot makes this one hold, on this link.
bool OtherMakesHold(Station& station, const PlayerRecord& me, std::int32_t r, const TaxiPath& link) {
    bool mustHold = false;
    for (std::int32_t o = 0; o <= station.TaxiRouteCount() - 1; ++o) {
        if (o == r) continue;
        const TaxiRouteRecord& route = station.TaxiRoutes[o];
        PlayerRecord blank;
        const PlayerRecord& other = RecordAt(station, route.PilotIndex, blank);
        for (std::int32_t m = 0; m <= UpperIndex(route.Links) - 1; ++m) {
            const TaxiPath& theirs = route.Links[static_cast<std::size_t>(m)];
            if (!Lives(theirs)) continue;
            if (theirs.EndPoint != link.EndPoint || theirs.StartPoint == link.StartPoint) continue;
            if (!PlainIsPoint(station, link.EndPoint) || IsHolding(other)) continue;
            const TaxiPoint& point = station.AirportTaxiPoints[static_cast<std::size_t>(link.EndPoint)];
            if (DistanceFeet(me.Latitude, me.Longitude, point.Latitude, point.Longitude) >
                DistanceFeet(other.Latitude, other.Longitude, point.Latitude, point.Longitude)) {
                mustHold = true;
            }
        }
    }
    return mustHold;
}

bool IsOnLink(const Station& station, const PlayerRecord& me, const TaxiPath& link) {
    if (!PlainIsPoint(station, link.StartPoint) || !PlainIsPoint(station, link.EndPoint)) return false;
    const TaxiPoint& a = station.AirportTaxiPoints[static_cast<std::size_t>(link.StartPoint)];
    const TaxiPoint& b = station.AirportTaxiPoints[static_cast<std::size_t>(link.EndPoint)];
    const std::int16_t course = BearingTo(station, a.Latitude, a.Longitude, b.Latitude, b.Longitude);
    const std::int16_t lo = NormalizeHeading(course - 30);
    const std::int16_t hi = NormalizeHeading(course + 30);
    std::int16_t bearing = BearingTo(station, a.Latitude, a.Longitude, me.Latitude, me.Longitude);
    return DistanceFeet(a.Latitude, a.Longitude, me.Latitude, me.Longitude) <=
               DistanceFeet(a.Latitude, a.Longitude, b.Latitude, b.Longitude) &&
           HeadingInSector(bearing, lo, hi);
}

}  // namespace

bool PlainComputeRunwayOccupied(const Station& station, const PlayerRecord& pilot) {
    bool occupied = false;
    const double latitude = station.RunwayLatitude;
    const double longitude = station.RunwayLongitude;
    for (std::int32_t i = 0; i <= station.PlayerCount() - 1; ++i) {
        const PlayerRecord& other = station.Players[i];
        if (other.Name == pilot.Name) continue;
        std::int16_t b = BearingTo(station, latitude, longitude, other.Latitude, other.Longitude);
        const std::int16_t lo = NormalizeHeading(station.SectorNorth - 30);
        const std::int16_t hi = NormalizeHeading(station.SectorNorth + 30);
        const bool low = std::int64_t{other.Altitude} < std::int64_t{station.RunwayElevation} + 300;
        if (!low || !HeadingInSector(b, lo, hi)) continue;
        const std::int16_t d = DistanceFeet(latitude, longitude, other.Latitude, other.Longitude);
        if (d >= station.RunwayLength) continue;
        const GeoPoint p = ProjectFeet(latitude, longitude, station.SectorNorth, d);
        if (DistanceFeet(p.Latitude, p.Longitude, other.Latitude, other.Longitude) <
            ToWhole<std::int32_t>(station.RunwayWidth / 2.0)) {
            occupied = true;
        }
    }
    return occupied;
}

ParkingOffer PlainUpdateParkingAvailability(Station& station) {
    ParkingOffer offer;
    if (UpperIndex(station.AirportTaxiPaths) <= 0 || UpperIndex(station.AirportTaxiPoints) <= 0 ||
        UpperIndex(station.AirportParkingSpots) < 0 || station.AirportParkingSpots[0].Name.empty()) {
        return offer;
    }
    for (std::int32_t i = 0; i <= UpperIndex(station.AirportParkingSpots); ++i) {
        ParkingSpot& s = station.AirportParkingSpots[static_cast<std::size_t>(i)];
        s.Spare = 1;
        for (const TaxiPath& path : station.AirportTaxiPaths) {
            if (path.Kind == 2 && path.EndPoint == i) s.Spare = 0;
        }
        for (std::int32_t p = 0; p <= station.PlayerCount() - 1; ++p) {
            const PlayerRecord& player = station.Players[p];
            if (!InMagVarGrid(s.Latitude, s.Longitude)) continue;
            if (DistanceFeet(player.Latitude, player.Longitude, s.Latitude, s.Longitude) < s.Radius)
                s.Spare = 1;
        }
        if (station.TaxiRouteCount() > 0) {
            for (std::int32_t r = 0; r <= station.TaxiRouteCount() - 1; ++r) {
                if (UpperCase(station.TaxiRoutes[r].Target.Name) == UpperCase(s.Name)) s.Spare = 1;
            }
        }
        if (s.Spare == 0) {
            if (UpperCase(s.Name).find("GATE") != std::string::npos) {
                offer.Gate = true;
            } else {
                offer.Parking = true;
            }
        }
    }
    return offer;
}

void PlainSeparateTaxiRoutes(Station& station, bool runwayOccupied) {
    for (std::int32_t r = 0; r <= station.TaxiRouteCount() - 1; ++r) {
        const TaxiRouteRecord& route = station.TaxiRoutes[r];
        PlayerRecord blank;
        PlayerRecord& me = RecordAt(station, route.PilotIndex, blank);
        bool mustHold = false;
        for (std::int32_t l = 0; l <= UpperIndex(route.Links) - 1; ++l) {
            const TaxiPath& link = route.Links[static_cast<std::size_t>(l)];
            if (!Lives(link)) continue;
            if (OtherMakesHold(station, me, r, link)) mustHold = true;
            if (LowerCase(link.Name) == LowerCase("runway " + station.ActiveRunway) &&
                !(station.TakeoffQueue[0].empty() && station.LandingQueue[0].empty() && !runwayOccupied)) {
                mustHold = true;
            }
        }
        const std::string menu = "Choose one of the following options for the Ground frequency: ";
        if (mustHold && !IsHolding(me)) {
            me.MenuText = me.Name + ", Hold position, caution other traffic. " + menu +
                          "1-Acknowledge 2-Close ATC Services";
            me.Phase = "Acknowledge hold position";
        }
        if (!mustHold && IsHolding(me)) {
            if (route.Target.Kind == "Runway") {
                me.MenuText = me.Name + ", Continue taxi. " + menu + "1-Tune " + station.AirportName +
                              " Tower Frequency 2-Close ATC Services";
                me.Phase = "Taxiing to runway";
            } else if (route.Target.Kind == "Gate or parking") {
                me.MenuText = me.Name +
                              ", Continue taxi. Report us when you are parked in the gate or parking. " +
                              menu + "1-Report Parking 2-Close ATC Services";
                me.Phase = "Taxiing to gate";
            }
        }
    }
}

void PlainAdvanceTaxiRoutes(Station& station) {
    for (std::int32_t r = 0; r <= station.TaxiRouteCount() - 1; ++r) {
        TaxiRouteRecord& route = station.TaxiRoutes[r];
        PlayerRecord blank;
        const PlayerRecord& me = RecordAt(station, route.PilotIndex, blank);
        std::int32_t found = -1;
        for (std::int32_t l = 0; l <= UpperIndex(route.Links) - 1; ++l) {
            const TaxiPath& link = route.Links[static_cast<std::size_t>(l)];
            if (link.StartPoint <= -1 || link.EndPoint <= -1) continue;
            if (!IsOnLink(station, me, link)) continue;
            found = l;
            break;
        }
        for (std::int32_t l = 0; l < found; ++l) {
            route.Links[static_cast<std::size_t>(l)].StartPoint = -1;
            route.Links[static_cast<std::size_t>(l)].EndPoint = -1;
        }
    }
}

void PlainGroundControl(Station& station, PlayerRecord& pilot) {
    const bool runwayOccupied = PlainComputeRunwayOccupied(station, pilot);
    const ParkingOffer offer = PlainUpdateParkingAvailability(station);
    if (station.TaxiRouteCount() > 0) PlainSeparateTaxiRoutes(station, runwayOccupied);
    if (station.TaxiRouteCount() > 0) PlainAdvanceTaxiRoutes(station);
    TakeGroundTurn(station, pilot, offer);
}

}  // namespace corvenna
