#include "world/diagram_layout.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <numbers>

#include "station/text.h"

namespace corvenna {

namespace {

constexpr double FeetPerDegree = 60 * 6080;
constexpr double FarthestFeet = 10 * 6080;
constexpr double EmptyMapFeet = 2000;
constexpr double AroundTaxiways = 50;
constexpr double UnknownRunwayWidth = 100;
constexpr std::string_view RunwayPrefix = "Runway ";

double Radians(double degrees) { return degrees * std::numbers::pi / 180; }

double Distance(DrawingPoint a, DrawingPoint b) { return std::hypot(a.X - b.X, a.Y - b.Y); }

DrawingPoint Along(DrawingPoint from, double trueBearing, double feet) {
    return {from.X + std::sin(Radians(trueBearing)) * feet, from.Y - std::cos(Radians(trueBearing)) * feet};
}

double BearingOf(DrawingPoint from, DrawingPoint to) {
    return std::atan2(to.X - from.X, from.Y - to.Y) * 180 / std::numbers::pi;
}

/// Half a turn or less between two bearings.
double AngleBetween(double a, double b) { return std::abs(std::remainder(a - b, 360)); }

/// The number that a designator begins with, or 0.
int RunwayNumber(std::string_view designator) {
    int number = 0;
    std::from_chars(designator.data(), designator.data() + designator.size(), number);
    return number >= 1 && number <= 36 ? number : 0;
}

/// Lays out one airport.
class Layouter {
  public:
    Layouter(const Airport& airport, std::optional<std::int16_t> variation)
        : airport_(airport), variation_(variation.value_or(0)) {}

    DiagramLayout Run() {
        CollectPaths();
        CollectSpots();
        AddMainRunway();
        AddOtherRunways();
        FindBounds();
        return std::move(layout_);
    }

  private:
    template <class Element>
    static const Element* Find(const DynamicArray<Element>& array, std::int32_t place) {
        if (!array || place < 0 || static_cast<std::size_t>(place) >= array->size()) return nullptr;
        return &(*array)[static_cast<std::size_t>(place)];
    }

    /// Nothing for a place that is too far away to belong to the airport.
    std::optional<DrawingPoint> Place(double latitude, double longitude) const {
        const double east = std::remainder(longitude - airport_.Longitude, 360);
        const DrawingPoint place{east * FeetPerDegree * std::cos(Radians(airport_.Latitude)),
                                 (airport_.Latitude - latitude) * FeetPerDegree};
        if (!(std::hypot(place.X, place.Y) <= FarthestFeet)) return std::nullopt;
        return place;
    }

    template <class Element>
    std::optional<DrawingPoint> Place(const Element* element) const {
        if (element == nullptr) return std::nullopt;
        return Place(element->Latitude, element->Longitude);
    }

    void CollectPaths() {
        if (!airport_.TaxiPaths) return;
        for (const TaxiPath& path : *airport_.TaxiPaths) {
            if (path.Kind < TaxiPath::Taxiway || path.Kind > TaxiPath::ParkingTie) continue;
            const bool tie = path.Kind == TaxiPath::ParkingTie;
            const auto from = Place(Find(airport_.TaxiPoints, path.StartPoint));
            const auto to = tie ? Place(Find(airport_.ParkingSpots, path.EndPoint))
                                : Place(Find(airport_.TaxiPoints, path.EndPoint));
            if (!from || !to) {
                ++layout_.LeftOut;
            } else if (tie) {
                layout_.Ties.push_back({*from, *to});
            } else if (path.Kind == TaxiPath::Taxiway) {
                layout_.Taxiways.push_back({path.Name, *from, *to});
            } else {
                auto& points = runwayPoints_[std::string(path.Name)];
                points.push_back(*from);
                points.push_back(*to);
            }
        }
    }

    void CollectSpots() {
        if (!airport_.ParkingSpots) return;
        for (const ParkingSpot& spot : *airport_.ParkingSpots) {
            const auto place = Place(&spot);
            if (!place) {
                ++layout_.LeftOut;
                continue;
            }
            const double radius = std::clamp<double>(spot.Radius, 1, FarthestFeet / 10);
            layout_.Spots.push_back({spot.Name, *place, radius, FarthestFeet});
        }
        for (DiagramSpot& spot : layout_.Spots) {
            for (const DiagramSpot& other : layout_.Spots) {
                const double half = Distance(spot.Centre, other.Centre) / 2;
                if (&spot != &other && half > 0) spot.Room = std::min(spot.Room, half);
            }
        }
    }

    /// From its threshold, as long as it is, in the direction of its own taxi paths if they go far enough and
    /// else in that of its heading, which is known in whole degrees only.
    void AddMainRunway() {
        if (airport_.MainRunwayId.empty()) return;
        if (airport_.MainRunwayLatitude == 0 && airport_.MainRunwayLongitude == 0) return;
        const auto threshold = Place(airport_.MainRunwayLatitude, airport_.MainRunwayLongitude);
        if (!threshold) return;
        const double length = std::clamp<double>(airport_.MainRunwayLength, 100, FarthestFeet);
        const std::string pathName = std::string(RunwayPrefix) + airport_.MainRunwayId;
        double bearing = airport_.MainRunwayHeading + variation_;
        double farthest = length / 2;
        for (const DrawingPoint point : runwayPoints_[pathName]) {
            if (Distance(*threshold, point) <= farthest) continue;
            farthest = Distance(*threshold, point);
            bearing = BearingOf(*threshold, point);
        }
        runwayPoints_.erase(pathName);
        layout_.Runways.push_back({airport_.MainRunwayId, OppositeDesignator(airport_.MainRunwayId),
                                   *threshold, Along(*threshold, bearing, length),
                                   std::clamp<double>(airport_.MainRunwayWidth, 20, 500), true});
    }

    /// From end to end of their taxi paths.
    void AddOtherRunways() {
        for (const auto& [name, points] : runwayPoints_) {
            DiagramRunway runway{.Width = UnknownRunwayWidth};
            for (const DrawingPoint a : points) {
                for (const DrawingPoint b : {points.front(), runway.Threshold, runway.FarEnd}) {
                    if (Distance(a, b) > Distance(runway.Threshold, runway.FarEnd)) {
                        runway.Threshold = a;
                        runway.FarEnd = b;
                    }
                }
            }
            runway.Designator = name.starts_with(RunwayPrefix) ? name.substr(RunwayPrefix.size()) : name;
            runway.OtherDesignator = OppositeDesignator(runway.Designator);
            const double heading = RunwayNumber(runway.Designator) * 10 + variation_;
            if (AngleBetween(BearingOf(runway.Threshold, runway.FarEnd), heading) > 90) {
                std::swap(runway.Threshold, runway.FarEnd);
            }
            layout_.Runways.push_back(std::move(runway));
        }
    }

    void FindBounds() {
        for (const DiagramSpot& spot : layout_.Spots) layout_.Parking.Include(spot.Centre, spot.Radius);
        layout_.All = layout_.Parking;
        for (const DiagramRunway& runway : layout_.Runways) {
            layout_.All.Include(runway.Threshold, runway.Width);
            layout_.All.Include(runway.FarEnd, runway.Width);
        }
        for (const DiagramTaxiway& taxiway : layout_.Taxiways) {
            layout_.All.Include(taxiway.From, AroundTaxiways);
            layout_.All.Include(taxiway.To, AroundTaxiways);
        }
        if (layout_.All.Empty()) layout_.All.Include({0, 0}, EmptyMapFeet / 2);
    }

    const Airport& airport_;
    double variation_;
    DiagramLayout layout_;
    std::map<std::string, std::vector<DrawingPoint>> runwayPoints_;
};

}  // namespace

void DrawingBounds::Include(DrawingPoint place, double around) {
    TopLeft = {std::min(TopLeft.X, place.X - around), std::min(TopLeft.Y, place.Y - around)};
    BottomRight = {std::max(BottomRight.X, place.X + around), std::max(BottomRight.Y, place.Y + around)};
}

bool DrawingBounds::Holds(DrawingPoint place) const {
    return place.X >= TopLeft.X && place.X <= BottomRight.X && place.Y >= TopLeft.Y &&
           place.Y <= BottomRight.Y;
}

DiagramLayout LayOut(const Airport& airport, std::optional<std::int16_t> variation) {
    return Layouter(airport, variation).Run();
}

std::string_view SpotNumber(std::string_view name) {
    const std::size_t number = name.rfind(' ') + 1;  // 0 without a blank
    const bool lettered = number >= 3 && name[number - 3] == ' ' && name[number - 2] != ' ';
    return name.substr(lettered ? number - 2 : number);
}

std::string OppositeDesignator(std::string_view designator) {
    const int number = RunwayNumber(designator);
    if (number == 0) return {};
    std::string opposite = std::to_string(number > 18 ? number - 18 : number + 18);
    if (designator.ends_with('L')) return opposite + 'R';
    if (designator.ends_with('R')) return opposite + 'L';
    if (designator.ends_with('C')) return opposite + 'C';
    return opposite;
}

}  // namespace corvenna
