#include "world/airport_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>
#include <span>

#include "station/geometry.h"
#include "station/text.h"

namespace corvenna {

namespace {

using Findings = std::vector<AirportFinding>;

constexpr std::int16_t FarFromThresholdFeet = 1000;

/// The elements of an array; the one blank element stands for none.
template <class Element>
std::span<const Element> Present(const std::vector<Element>& array) {
    if (array.size() == 1 && array.front() == Element{}) return {};
    return array;
}

template <class Element>
bool Holds(std::span<const Element> elements, std::int32_t place) {
    return place >= 0 && static_cast<std::size_t>(place) < elements.size();
}

bool IsWalkable(const TaxiPath& path) {
    return path.Kind == TaxiPath::Taxiway || path.Kind == TaxiPath::Runway;
}

std::string Counted(std::size_t count, std::string_view one, std::string_view several) {
    return fmt::format("{} {}", count, count == 1 ? one : several);
}

std::string PlaceOf(double latitude, double longitude) {
    return fmt::format("{:.5f}, {:.5f}", latitude, longitude);
}

/// Points that hang together by walkable paths, each known by one of its points.
class Network {
  public:
    Network(std::span<const TaxiPoint> points, std::span<const TaxiPath> paths)
        : parents_(points.size()), inUse_(points.size()) {
        std::iota(parents_.begin(), parents_.end(), std::size_t{0});
        for (const TaxiPath& path : paths) {
            if (!Holds(points, path.StartPoint)) continue;
            if (path.Kind == TaxiPath::ParkingTie) Use(path.StartPoint);
            if (!IsWalkable(path) || !Holds(points, path.EndPoint)) continue;
            parents_[PartOf(path.StartPoint)] = PartOf(path.EndPoint);
            Use(path.StartPoint);
            Use(path.EndPoint);
        }
    }

    std::size_t PartOf(std::int32_t point) {
        auto at = static_cast<std::size_t>(point);
        while (parents_[at] != at) at = parents_[at] = parents_[parents_[at]];
        return at;
    }

    /// The points of each part that paths or ties lead to, the largest part first.
    std::vector<std::vector<std::int32_t>> Parts() {
        std::map<std::size_t, std::vector<std::int32_t>> byRoot;
        for (std::int32_t point = 0; point < std::ssize(parents_); ++point) {
            if (inUse_[static_cast<std::size_t>(point)]) byRoot[PartOf(point)].push_back(point);
        }
        std::vector<std::vector<std::int32_t>> parts;
        parts.reserve(byRoot.size());
        for (auto& [root, members] : byRoot) parts.push_back(std::move(members));
        std::stable_sort(parts.begin(), parts.end(),
                         [](const auto& a, const auto& b) { return a.size() > b.size(); });
        return parts;
    }

  private:
    void Use(std::int32_t point) { inUse_[static_cast<std::size_t>(point)] = true; }

    std::vector<std::size_t> parents_;
    std::vector<bool> inUse_;
};

/// Looks at one airport, question by question.
class AirportCheck {
  public:
    explicit AirportCheck(const Station& station)
        : station_(station),
          points_(Present(station.AirportTaxiPoints)),
          spots_(Present(station.AirportParkingSpots)),
          paths_(Present(station.AirportTaxiPaths)) {}

    Findings All() {
        CheckRunway();
        CheckFrequencies();
        if (std::none_of(paths_.begin(), paths_.end(), IsWalkable)) {
            Find("no taxi network");
        } else {
            CheckRunwayPaths();
            CheckParts();
        }
        CheckDeadEnds();
        if (spots_.empty()) Find("no parking spots");
        CheckTies();
        return std::move(findings_);
    }

  private:
    void Find(std::string what, std::vector<std::string> places = {}) {
        findings_.push_back({std::move(what), std::move(places)});
    }

    /// One finding for all places of a kind, if there is any.
    void FindEach(std::string_view one, std::string_view several, std::vector<std::string> places) {
        if (places.empty()) return;
        std::string what = Counted(places.size(), one, several);
        Find(std::move(what), std::move(places));
    }

    bool HasRunway() const { return !station_.ActiveRunway.empty(); }

    bool ThresholdIsKnown() const { return station_.RunwayLatitude != 0 || station_.RunwayLongitude != 0; }

    void CheckRunway() {
        if (!HasRunway()) {
            Find("no runway");
        } else if (!ThresholdIsKnown()) {
            Find(fmt::format("runway {} has no end, so its threshold is unknown", station_.ActiveRunway));
        }
    }

    void CheckFrequencies() {
        if (!station_.GroundFrequency.empty() || !station_.TowerFrequency.empty()) return;
        if (station_.CtafFrequency.empty()) {
            Find("no frequencies");
        } else {
            Find("no ground and no tower frequency, pilots get advisories only");
        }
    }

    bool IsRunwayPath(const TaxiPath& path) const {
        return path.Kind == TaxiPath::Runway &&
               EqualIgnoringCase(path.Name, "Runway " + station_.ActiveRunway);
    }

    void CheckRunwayPaths() {
        if (!HasRunway()) return;
        std::int16_t nearest = std::numeric_limits<std::int16_t>::max();
        bool any = false;
        for (const TaxiPath& path : paths_) {
            if (!IsRunwayPath(path)) continue;
            any = true;
            for (const std::int32_t end : {path.StartPoint, path.EndPoint}) {
                if (Holds(points_, end)) nearest = std::min(nearest, FeetFromThreshold(end));
            }
        }
        if (!any) {
            Find(fmt::format("runway {} has no taxi paths, no route leads to it", station_.ActiveRunway));
        } else if (ThresholdIsKnown() && nearest > FarFromThresholdFeet) {
            Find(fmt::format("the taxi paths of runway {} end {} ft from its threshold",
                             station_.ActiveRunway, nearest),
                 {"threshold at " + PlaceOf(station_.RunwayLatitude, station_.RunwayLongitude)});
        }
    }

    std::int16_t FeetFromThreshold(std::int32_t point) const {
        const TaxiPoint& place = points_[static_cast<std::size_t>(point)];
        return DistanceFeet(place.Latitude, place.Longitude, station_.RunwayLatitude,
                            station_.RunwayLongitude);
    }

    void CheckParts() {
        Network network(points_, paths_);
        const auto parts = network.Parts();
        if (parts.size() < 2) return;
        std::vector<std::string> places;
        for (std::size_t i = 1; i < parts.size(); ++i) places.push_back(TellPart(network, parts[i]));
        Find(fmt::format("the taxi network is in {} parts", parts.size()), std::move(places));
    }

    std::string TellPart(Network& network, const std::vector<std::int32_t>& part) const {
        const TaxiPoint& first = points_[static_cast<std::size_t>(part.front())];
        std::string told =
            fmt::format("apart: {} at {} (point {})", Counted(part.size(), "point", "points, the first"),
                        PlaceOf(first.Latitude, first.Longitude), part.front());
        for (const TaxiPath& path : paths_) {
            if (path.Kind != TaxiPath::ParkingTie || !Holds(points_, path.StartPoint) ||
                !Holds(spots_, path.EndPoint) ||
                network.PartOf(path.StartPoint) != network.PartOf(part.front())) {
                continue;
            }
            told.append(", ").append(spots_[static_cast<std::size_t>(path.EndPoint)].Name);
        }
        return told;
    }

    void CheckDeadEnds() {
        std::vector<std::string> paths, ties;
        for (std::size_t i = 0; i < paths_.size(); ++i) {
            const TaxiPath& path = paths_[i];
            const bool isTie = path.Kind == TaxiPath::ParkingTie;
            if (!isTie && !IsWalkable(path)) continue;
            const bool ends = Holds(points_, path.StartPoint) &&
                              (isTie ? Holds(spots_, path.EndPoint) : Holds(points_, path.EndPoint));
            if (ends) continue;
            (isTie ? ties : paths)
                .push_back(fmt::format("path {} \"{}\": from point {} to {} {}; there are {} and {}", i,
                                       path.Name, path.StartPoint, isTie ? "spot" : "point", path.EndPoint,
                                       Counted(points_.size(), "point", "points"),
                                       Counted(spots_.size(), "spot", "spots")));
        }
        FindEach("path that points nowhere", "paths that point nowhere", std::move(paths));
        FindEach("tie that points nowhere", "ties that point nowhere", std::move(ties));
    }

    void CheckTies() {
        std::vector<bool> tied(spots_.size());
        for (const TaxiPath& path : paths_) {
            if (path.Kind == TaxiPath::ParkingTie && Holds(spots_, path.EndPoint)) {
                tied[static_cast<std::size_t>(path.EndPoint)] = true;
            }
        }
        std::vector<std::string> places;
        for (std::size_t i = 0; i < spots_.size(); ++i) {
            if (tied[i]) continue;
            places.push_back(spots_[i].Name + " at " + PlaceOf(spots_[i].Latitude, spots_[i].Longitude));
        }
        FindEach("parking spot without a tie", "parking spots without a tie", std::move(places));
    }

    const Station& station_;
    std::span<const TaxiPoint> points_;
    std::span<const ParkingSpot> spots_;
    std::span<const TaxiPath> paths_;
    Findings findings_;
};

}  // namespace

std::vector<AirportFinding> CheckAirport(const Station& station) { return AirportCheck(station).All(); }

std::string FindingsInOneLine(const std::vector<AirportFinding>& findings) {
    std::string line;
    for (const AirportFinding& finding : findings) {
        if (!line.empty()) line += "; ";
        line += finding.What;
    }
    return line;
}

}  // namespace corvenna
