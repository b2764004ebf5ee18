#include "practice/taxi_network.h"

#include <algorithm>
#include <limits>
#include <queue>

#include "station/text.h"

namespace corvenna {

namespace {

constexpr int HoldingKind = 2;  // of a taxi point

// What a path costs, as a multiple of its length.
constexpr double AsTold = 1;
constexpr double Nameless = 1.2;
constexpr double AnotherTaxiway = 6;
constexpr double UntoldRunway = 12;
constexpr double MilesPerNameLeftOut = 3;

/// How much of the route told has been begun: so many of its names.
struct Reached {
    double Cost;
    std::size_t State;

    bool operator>(const Reached& other) const { return Cost > other.Cost; }
};

}  // namespace

TaxiNetwork::TaxiNetwork(const Station& station) {
    const auto& points = station.AirportTaxiPoints;
    const auto& spots = station.AirportParkingSpots;
    pointCount_ = static_cast<int>(points.size());
    for (const TaxiPoint& point : points) {
        nodes_.push_back({{point.Latitude, point.Longitude}, point.Kind == HoldingKind, "", {}});
    }
    for (const ParkingSpot& spot : spots) {
        nodes_.push_back({{spot.Latitude, spot.Longitude}, false, UpperCase(spot.Name), {}});
    }
    const auto inside = [](int place, std::size_t count) {
        return place >= 0 && static_cast<std::size_t>(place) < count;
    };
    for (const TaxiPath& path : station.AirportTaxiPaths) {
        const bool tie = path.Kind == TaxiPath::ParkingTie;
        if (!inside(path.StartPoint, points.size())) continue;
        if (!inside(path.EndPoint, tie ? spots.size() : points.size())) continue;
        if (!tie && path.StartPoint == path.EndPoint) continue;
        Join(path.StartPoint, tie ? pointCount_ + path.EndPoint : path.EndPoint,
             path.Kind == TaxiPath::Runway, path.Name);
    }
    const bool anyLink =
        std::any_of(nodes_.begin(), nodes_.end(), [](const Node& node) { return !node.Links.empty(); });
    if (!anyLink) nodes_.clear();
}

void TaxiNetwork::Join(int a, int b, bool runway, std::string_view name) {
    const double miles = MilesBetween(At(a), At(b));
    nodes_[static_cast<std::size_t>(a)].Links.push_back({b, miles, runway, UpperCase(Trim(name))});
    nodes_[static_cast<std::size_t>(b)].Links.push_back({a, miles, runway, UpperCase(Trim(name))});
}

bool TaxiNetwork::HasTaxiway(int node) const {
    const auto& links = nodes_[static_cast<std::size_t>(node)].Links;
    return std::any_of(links.begin(), links.end(),
                       [&](const Link& link) { return !link.Runway && link.To < pointCount_; });
}

int TaxiNetwork::Nearest(Place place) const {
    int nearest = None;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (nodes_[i].Links.empty()) continue;
        const double miles = MilesBetween(place, nodes_[i].Where);
        if (miles < least) {
            least = miles;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

int TaxiNetwork::Spot(std::string_view name) const {
    for (std::size_t i = static_cast<std::size_t>(pointCount_); i < nodes_.size(); ++i) {
        if (!nodes_[i].Links.empty() && EqualIgnoringCase(nodes_[i].Spot, name)) return static_cast<int>(i);
    }
    return None;
}

/// Dijkstra's search over pairs of a node and the number of names begun so far.
std::vector<int> TaxiNetwork::Way(int from, int to, std::span<const std::string> taxiways) const {
    const std::size_t layers = taxiways.size() + 1;
    std::vector<double> costs(nodes_.size() * layers, std::numeric_limits<double>::infinity());
    std::vector<std::size_t> before(costs.size(), costs.size());
    std::priority_queue<Reached, std::vector<Reached>, std::greater<>> open;
    const auto reach = [&](std::size_t state, double cost, std::size_t previous) {
        if (cost >= costs[state]) return;
        costs[state] = cost;
        before[state] = previous;
        open.push({cost, state});
    };
    reach(static_cast<std::size_t>(from) * layers, 0, costs.size());
    while (!open.empty()) {
        const Reached best = open.top();
        open.pop();
        if (best.Cost > costs[best.State]) continue;
        const std::size_t begun = best.State % layers;
        const std::size_t cameFrom = before[best.State];
        const auto isBack = [&](const Link& link) {  // nobody turns round on a taxiway
            return cameFrom != costs.size() && static_cast<int>(cameFrom / layers) == link.To;
        };
        for (const Link& link : nodes_[best.State / layers].Links) {
            if (isBack(link)) continue;
            if (link.To >= pointCount_ && link.To != to) continue;  // across somebody's spot
            const std::size_t there = static_cast<std::size_t>(link.To) * layers;
            const bool onName = begun > 0 && link.Name == taxiways[begun - 1];
            const double price = onName              ? AsTold
                                 : link.Runway       ? UntoldRunway
                                 : link.Name.empty() ? Nameless
                                                     : AnotherTaxiway;
            reach(there + begun, best.Cost + price * link.Miles, best.State);
            for (std::size_t next = begun; next < taxiways.size(); ++next) {
                if (link.Name != taxiways[next]) continue;
                const double leftOut = static_cast<double>(next - begun) * MilesPerNameLeftOut;
                reach(there + next + 1, best.Cost + AsTold * link.Miles + leftOut, best.State);
                break;
            }
        }
    }
    std::size_t end = static_cast<std::size_t>(to) * layers;
    const auto total = [&](std::size_t state) {
        return costs[state] + static_cast<double>(layers - 1 - state % layers) * MilesPerNameLeftOut;
    };
    for (std::size_t i = 1; i < layers; ++i) {
        const std::size_t state = static_cast<std::size_t>(to) * layers + i;
        if (total(state) < total(end)) end = state;
    }
    std::vector<int> way;
    if (costs[end] == std::numeric_limits<double>::infinity()) return way;
    for (std::size_t state = end; state != costs.size(); state = before[state]) {
        way.push_back(static_cast<int>(state / layers));
    }
    std::reverse(way.begin(), way.end());
    return way;
}

}  // namespace corvenna
