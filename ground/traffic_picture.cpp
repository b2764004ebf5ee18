#include "ground/traffic_picture.h"

#include <algorithm>

#include "ground/taxi_network.h"
#include "station/geometry.h"

namespace corvenna {

TaxiPosition PositionOf(const Station& station, const TaxiRouteRecord& route) {
    if (!station.Players.Holds(route.PilotIndex)) return {};
    const PlayerRecord& pilot = station.Players[route.PilotIndex];
    return {pilot.Latitude, pilot.Longitude};
}

// ---- RouteSet

void RouteSet::Set(std::size_t route, bool in) {
    const std::uint64_t bit = std::uint64_t{1} << (route % 64);
    words_[route / 64] = in ? words_[route / 64] | bit : words_[route / 64] & ~bit;
}

void RouteSet::Add(const RouteSet& others) {
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= others.words_[i];
}

bool RouteSet::HoldsAnyOutside(const RouteSet& others) const {
    for (std::size_t i = 0; i < words_.size(); ++i) {
        if ((words_[i] & ~others.words_[i]) != 0) return true;
    }
    return false;
}

// ---- TrafficPicture

template <class Visit>
void TrafficPicture::ForEachPoint(Visit visit) {
    for (auto first = links_.begin(); first != links_.end();) {
        const auto last =
            std::find_if(first, links_.end(), [&](const LiveLink& link) { return link.End != first->End; });
        visit(Group(first, last));
        first = last;
    }
}

void TrafficPicture::Make(const Station& station) {
    Collect(station);
    SortByEnd(station.AirportTaxiPoints.size());
    ForEachPoint([&](Group group) { Measure(station, group); });
    Decide(static_cast<std::size_t>(station.TaxiRouteCount()));
}

// The order and the distances stand.
void TrafficPicture::DropPassedLinks(const Station& station) {
    std::erase_if(links_, [&](const LiveLink& link) {
        return !IsLive(station.TaxiRoutes[link.Route].Links[static_cast<std::size_t>(link.Place)]);
    });
    Decide(static_cast<std::size_t>(station.TaxiRouteCount()));
}

void TrafficPicture::Collect(const Station& station) {
    links_.clear();
    for (std::int16_t route = 0; route < station.TaxiRouteCount(); ++route) {
        std::int32_t place = 0;
        for (const TaxiPath& link : LinksOf(station.TaxiRoutes[route])) {
            if (IsLive(link)) {
                links_.push_back({.Start = link.StartPoint,
                                  .End = link.EndPoint,
                                  .Place = place,
                                  .Route = route,
                                  .OnRunway = IsOfActiveRunway(station, link)});
            }
            ++place;
        }
    }
}

/// Counts, then places. Links into points that are not there stay together at the end, as one group that is
/// never measured.
void TrafficPicture::SortByEnd(std::size_t points) {
    const auto slotOf = [&](const LiveLink& link) {
        const bool isPlace = link.End >= 0 && static_cast<std::size_t>(link.End) < points;
        return isPlace ? static_cast<std::size_t>(link.End) : points;
    };
    places_.assign(points + 2, 0);
    for (const LiveLink& link : links_) ++places_[slotOf(link) + 1];
    for (std::size_t slot = 0; slot <= points; ++slot) places_[slot + 1] += places_[slot];
    sorted_.resize(links_.size());
    for (const LiveLink& link : links_) {
        sorted_[static_cast<std::size_t>(places_[slotOf(link)]++)] = link;
    }
    links_.swap(sorted_);
}

/// Only where links conflict are there distances to compare.
void TrafficPicture::Measure(const Station& station, Group intoOnePoint) {
    const TaxiPoint* const point = FindTaxiPoint(station, intoOnePoint.front().End);
    const bool conflict = std::any_of(intoOnePoint.begin(), intoOnePoint.end(), [&](const LiveLink& link) {
        return link.Start != intoOnePoint.front().Start;
    });
    if (point == nullptr || !conflict) return;
    for (LiveLink& link : intoOnePoint) {
        const TaxiPosition pilot = PositionOf(station, station.TaxiRoutes[link.Route]);
        link.Feet = DistanceFeet(pilot.Latitude, pilot.Longitude, point->Latitude, point->Longitude);
    }
    std::sort(intoOnePoint.begin(), intoOnePoint.end(),
              [](const LiveLink& a, const LiveLink& b) { return a.Feet < b.Feet; });
}

void TrafficPicture::Decide(std::size_t routes) {
    routes_ = routes;
    yieldsTo_.resize(routes);
    for (RouteSet& set : yieldsTo_) set.Resize(routes);
    overRunway_.assign(routes, 0);
    for (const LiveLink& link : links_) {
        if (link.OnRunway) overRunway_[static_cast<std::size_t>(link.Route)] = 1;
    }
    ForEachPoint([&](Group group) {
        if (group.front().Feet != NotMeasured) DecideAt(group);
    });
    for (std::size_t route = 0; route < routes; ++route) yieldsTo_[route].Set(route, false);
}

/// From the nearest outwards: each pilot yields to those met so far who come from other points. Pilots at the
/// same distance don't yield to each other.
void TrafficPicture::DecideAt(Group intoOnePoint) {
    streamCount_ = 0;
    for (auto first = intoOnePoint.begin(); first != intoOnePoint.end();) {
        auto last = first;
        for (; last != intoOnePoint.end() && last->Feet == first->Feet; ++last) {
            for (std::size_t i = 0; i < streamCount_; ++i) {
                if (streams_[i].Start == last->Start) continue;
                yieldsTo_[static_cast<std::size_t>(last->Route)].Add(streams_[i].Routes);
            }
        }
        for (; first != last; ++first) {
            StreamFrom(first->Start).Routes.Set(static_cast<std::size_t>(first->Route), true);
        }
    }
}

TrafficPicture::Stream& TrafficPicture::StreamFrom(std::int32_t start) {
    for (std::size_t i = 0; i < streamCount_; ++i) {
        if (streams_[i].Start == start) return streams_[i];
    }
    if (streamCount_ == streams_.size()) streams_.emplace_back();
    Stream& stream = streams_[streamCount_++];
    stream.Start = start;
    stream.Routes.Resize(routes_);
    return stream;
}

}  // namespace corvenna
