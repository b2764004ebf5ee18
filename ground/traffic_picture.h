#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "station/model.h"

namespace corvenna {

/// The links of a route in travel order, without the spare element.
inline std::span<const TaxiPath> LinksOf(const TaxiRouteRecord& route) {
    return std::span(route.Links).first(route.Links.empty() ? 0 : route.Links.size() - 1);
}
inline std::span<TaxiPath> LinksOf(TaxiRouteRecord& route) {
    return std::span(route.Links).first(route.Links.empty() ? 0 : route.Links.size() - 1);
}

/// Whether a link has not been passed yet.
inline bool IsLive(const TaxiPath& link) { return link.StartPoint != -1 && link.EndPoint != -1; }

/// Where a pilot is, as a route sees it: his PilotIndex may have gone stale and name the spare record, or
/// none at all, which counts as a blank one.
struct TaxiPosition {
    double Latitude = 0;
    double Longitude = 0;
};
TaxiPosition PositionOf(const Station& station, const TaxiRouteRecord& route);

/// A set of places in TaxiRoutes.
class RouteSet {
  public:
    void Resize(std::size_t routes) { words_.assign((routes + 63) / 64, 0); }
    void Set(std::size_t route, bool in);
    void Add(const RouteSet& others);

    /// Whether the set holds a route that others does not.
    bool HoldsAnyOutside(const RouteSet& others) const;

  private:
    std::vector<std::uint64_t> words_;
};

/// Who has to give way to whom. Two live links conflict when they run into the same point from different
/// points; of the two pilots the one farther from that point, as the crow flies, yields. All live links
/// count, however far ahead. The picture depends on positions and routes alone, not on who is holding.
class TrafficPicture {
  public:
    /// Makes the picture of all the routes.
    void Make(const Station& station);

    /// Makes it again, when since then nothing happened but that links have been passed.
    void DropPassedLinks(const Station& station);

    /// The routes to whose pilots the pilot of this one yields, unless they hold themselves.
    const RouteSet& YieldsTo(std::size_t route) const { return yieldsTo_[route]; }

    /// Whether a live link of the route is named after the runway in use.
    bool IsOverRunway(std::size_t route) const { return overRunway_[route] != 0; }

  private:
    static constexpr std::int16_t NotMeasured = -1;

    struct LiveLink {
        std::int32_t Start = 0;
        std::int32_t End = 0;
        std::int32_t Place = 0;  ///< in the route's Links
        std::int16_t Route = 0;
        std::int16_t Feet = NotMeasured;  ///< from the pilot to the end point, where links conflict
        bool OnRunway = false;
    };
    using Group = std::span<LiveLink>;

    void Collect(const Station& station);
    void SortByEnd(std::size_t points);
    static void Measure(const Station& station, Group intoOnePoint);
    void Decide(std::size_t routes);
    void DecideAt(Group intoOnePoint);

    /// Runs visit for each group of links that run into one point.
    template <class Visit>
    void ForEachPoint(Visit visit);

    /// The nearer pilots on the links that come from one point.
    struct Stream {
        std::int32_t Start = 0;
        RouteSet Routes;
    };
    Stream& StreamFrom(std::int32_t start);

    std::vector<LiveLink> links_;  ///< by end points, at each by distance
    std::vector<LiveLink> sorted_;
    std::vector<std::int32_t> places_;
    std::vector<RouteSet> yieldsTo_;
    std::vector<std::uint8_t> overRunway_;
    std::vector<Stream> streams_;
    std::size_t streamCount_ = 0;
    std::size_t routes_ = 0;
};

}  // namespace corvenna
