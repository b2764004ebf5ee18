#include <fmt/format.h>

#include "ground/plain_ground.h"
#include "station/geometry.h"
#include "station/text.h"

namespace corvenna {

namespace {

using Attempts = std::vector<std::vector<TaxiPath>>;

std::int32_t UpperIndex(const auto& array) { return static_cast<std::int32_t>(array.size()) - 1; }

const TaxiPath& PathAt(const Station& station, std::int32_t i) {
    return station.AirportTaxiPaths[static_cast<std::size_t>(i)];
}
const ParkingSpot& SpotAt(const Station& station, std::int32_t i) {
    return station.AirportParkingSpots[static_cast<std::size_t>(i)];
}

std::int32_t FeetFromPoint(const Station& station, std::int32_t place, double latitude, double longitude) {
    const TaxiPoint& point = station.AirportTaxiPoints[static_cast<std::size_t>(place)];
    return DistanceFeet(point.Latitude, point.Longitude, latitude, longitude);
}

/// A taxiway or runway whose points both are there.
bool CanBeWalked(const Station& station, const TaxiPath& path) {
    return (path.Kind == 0 || path.Kind == 1) && PlainIsPoint(station, path.StartPoint) &&
           PlainIsPoint(station, path.EndPoint);
}

template <class Counts>
std::int32_t NearestEnd(const Station& station, double latitude, double longitude, Counts counts) {
    std::int32_t start = -1;
    std::int32_t bestDistance = -1;
    for (std::int32_t i = 0; i <= UpperIndex(station.AirportTaxiPaths); ++i) {
        const TaxiPath& path = PathAt(station, i);
        if (!CanBeWalked(station, path) || !counts(path)) continue;
        const std::int32_t dA = FeetFromPoint(station, path.StartPoint, latitude, longitude);
        const std::int32_t dB = FeetFromPoint(station, path.EndPoint, latitude, longitude);
        if (start == -1 && bestDistance == -1) {
            if (dA < dB) {
                start = path.StartPoint;
                bestDistance = dA;
            }
            if (dB < dA) {
                start = path.EndPoint;
                bestDistance = dB;
            }
        } else {
            if (dA < dB && dA < bestDistance) {
                start = path.StartPoint;
                bestDistance = dA;
            }
            if (dB < dA && dB < bestDistance) {
                start = path.EndPoint;
                bestDistance = dB;
            }
        }
    }
    return start;
}

std::int32_t PlainStart(const Station& station, const PlayerRecord& pilot) {
    for (std::int32_t s = 0; s <= UpperIndex(station.AirportParkingSpots); ++s) {
        const ParkingSpot& spot = SpotAt(station, s);
        if (!InMagVarGrid(spot.Latitude, spot.Longitude)) continue;
        if (DistanceFeet(pilot.Latitude, pilot.Longitude, spot.Latitude, spot.Longitude) < spot.Radius) {
            for (std::int32_t i = 0; i <= UpperIndex(station.AirportTaxiPaths); ++i) {
                const TaxiPath& path = PathAt(station, i);
                if (path.Kind == 2 && path.EndPoint == s) {
                    return path.StartPoint;
                }
            }
        }
    }
    return NearestEnd(station, pilot.Latitude, pilot.Longitude, [](const TaxiPath&) { return true; });
}

std::int32_t PlainEnd(const Station& station, const GeoPoint& target) {
    if (target.Kind == "Runway") {
        return NearestEnd(
            station, station.RunwayLatitude, station.RunwayLongitude, [&](const TaxiPath& path) {
                return path.Kind == 1 && LowerCase(path.Name) == LowerCase("runway " + station.ActiveRunway);
            });
    }
    std::int32_t end = -1;
    if (target.Kind == "Gate or parking") {
        for (std::int32_t s = 0; s <= UpperIndex(station.AirportParkingSpots); ++s) {
            if (UpperCase(SpotAt(station, s).Name) != UpperCase(target.Name)) continue;
            for (std::int32_t i = 0; i <= UpperIndex(station.AirportTaxiPaths); ++i) {
                const TaxiPath& path = PathAt(station, i);
                if (path.Kind == 2 && path.EndPoint == s) {
                    end = path.StartPoint;
                }
            }
        }
    }
    return end;
}

/// One step of a walk.
struct Candidate {
    std::int32_t Kind = -1;
    std::int32_t To = -1;
    std::int32_t Distance = -1;
    std::string Name;
};

class PlainStep {
  public:
    PlainStep(const Station& station, const Attempts& attempts, std::int32_t current, std::int32_t end,
              const GeoPoint& target)
        : station_(station), attempts_(attempts), current_(current), end_(end), target_(target) {}

    Candidate Find() {
        for (std::int32_t i = 0; i <= UpperIndex(station_.AirportTaxiPaths); ++i) {
            const TaxiPath& path = PathAt(station_, i);
            if (!CanBeWalked(station_, path)) continue;
            if (path.StartPoint == current_ && Offer(path.Kind, path.EndPoint, path.Name)) return best_;
            if (path.EndPoint == current_ && Offer(path.Kind, path.StartPoint, path.Name)) return best_;
        }
        return best_;
    }

  private:
    /// True when the end point has come in sight.
    bool Offer(std::int32_t kind, std::int32_t to, const std::string& name) {
        if (to == end_) {
            best_ = {kind, to, 0, name};
            return true;
        }
        if (IsBarredByAnAttempt(to) || IsOnThePath(to)) return false;
        const std::int32_t d = FeetFromPoint(station_, to, target_.Latitude, target_.Longitude);
        const std::vector<TaxiPath>& path = attempts_.back();
        if (best_.Distance == -1) {  // NOLINT(bugprone-branch-clone): rule by rule
            best_ = {kind, to, d, name};
        } else if (!path.empty() && path.back().Kind == 1) {
            if (best_.Kind == kind && d < best_.Distance) best_ = {kind, to, d, name};
            if (best_.Kind > kind) best_ = {kind, to, d, name};
        } else if (d < best_.Distance) {
            best_ = {kind, to, d, name};
        }
        return false;
    }

    bool IsBarredByAnAttempt(std::int32_t to) const {
        for (std::size_t i = 0; i + 1 < attempts_.size(); ++i) {
            if (attempts_[i].empty()) continue;
            const TaxiPath& last = attempts_[i].back();
            if (last.StartPoint == current_ && last.EndPoint == to) return true;
        }
        return false;
    }

    bool IsOnThePath(std::int32_t to) const {
        for (const TaxiPath& link : attempts_.back()) {
            if (link.StartPoint == current_ && link.EndPoint == to) return true;
            if (link.StartPoint == to && link.EndPoint == current_) return true;
        }
        return false;
    }

    const Station& station_;
    const Attempts& attempts_;
    std::int32_t current_;
    std::int32_t end_;
    const GeoPoint& target_;
    Candidate best_;
};

/// The attempts, the last of them the one that arrived; a last one without links when an attempt died with no
/// link at all, which every later one would do too.
Attempts PlainSearch(const Station& station, std::int32_t start, std::int32_t end, const GeoPoint& target) {
    Attempts attempts;
    while (true) {
        attempts.emplace_back();
        while (true) {
            std::vector<TaxiPath>& path = attempts.back();
            const std::int32_t current = path.empty() ? start : path.back().EndPoint;
            const Candidate best = PlainStep(station, attempts, current, end, target).Find();
            if (best.To == -1) break;
            path.push_back({best.Kind, current, best.To, best.Name});
            if (best.To == end) return attempts;
        }
        if (attempts.back().empty()) return attempts;
    }
}

void PlainStore(Station& station, const PlayerRecord& pilot, const GeoPoint& target,
                const std::vector<TaxiPath>& links) {
    TaxiRouteRecord route;
    route.PilotName = pilot.Name;
    for (std::int32_t i = 0; i <= station.PlayerCount() - 1; ++i) {
        if (station.Players[i].Name == pilot.Name) route.PilotIndex = static_cast<std::int16_t>(i);
    }
    route.Links = links;
    route.Links.emplace_back();
    route.Target.Name = target.Name;
    route.Target.Kind = target.Kind;
    route.Target.Latitude = target.Latitude;
    route.Target.Longitude = target.Longitude;
    station.TaxiRoutes.Add(route);
}

std::string PlainRouteText(const std::vector<TaxiPath>& links) {
    std::string route;
    for (const TaxiPath& link : links) {
        const std::string w = UpperCase(link.Name);
        if (w != " " && !w.empty() && !route.ends_with(" " + w)) route.append(" ").append(w);
    }
    return route + " ";
}

}  // namespace

bool PlainIsPoint(const Station& station, std::int32_t place) {
    return place >= 0 && place <= UpperIndex(station.AirportTaxiPoints) &&
           InMagVarGrid(station.AirportTaxiPoints[static_cast<std::size_t>(place)].Latitude,
                        station.AirportTaxiPoints[static_cast<std::size_t>(place)].Longitude);
}

PlainSearchCount PlainAssignTaxiRoute(Station& station, PlayerRecord& pilot, const GeoPoint& target) {
    const std::int32_t start = PlainStart(station, pilot);
    const std::int32_t end = PlainEnd(station, target);
    Attempts attempts;
    if (PlainIsPoint(station, start) && PlainIsPoint(station, end))
        attempts = PlainSearch(station, start, end, target);
    const bool found = !attempts.empty() && !attempts.back().empty();

    std::string route;
    if (found) {
        PlainStore(station, pilot, target, attempts.back());
        route = " using taxiway" + PlainRouteText(attempts.back());
    }
    const std::string menu =
        "Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";
    if (target.Kind == "Runway") {
        pilot.MenuText = pilot.Name + ", Taxi to and hold short runway " + station.ActiveRunway + route +
                         ". Contact tower on " + station.TowerFrequency + " when ready. " + menu;
        pilot.Phase = "Acknowledge taxi to runway";
        pilot.Choice = 0;
    } else if (target.Kind == "Gate or parking") {
        pilot.MenuText = pilot.Name + ", Taxi to " + UpperCase(target.Name) + route + ". " + menu;
        pilot.Phase = "Acknowledge taxi to gate";
        pilot.Choice = 0;
    }
    return {static_cast<int>(attempts.size()), found ? static_cast<int>(attempts.back().size()) : 0};
}

}  // namespace corvenna
