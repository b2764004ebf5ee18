#include "practice/flight_chart.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "station/geometry.h"

namespace corvenna {

namespace {

constexpr double FeetPerMile = 1852 / 0.3048;
constexpr double ClearFeet = 130;    // beside the runway's edge
constexpr double LineUpFeet = 150;   // ahead of the threshold
constexpr double HoldingFeet = 400;  // a holding point so far from the runway still belongs to it
constexpr double EdgeFeet = 10;
constexpr double WatchedSlackFeet = 25;  // beside the strip: places are told to some feet
constexpr double HeadingSlack = 0.015;   // so far beside the runway, per length along it, is still on it to
                                         // the controller, who has its heading in whole degrees

/// What of a station an airport is.
Station FieldOf(const Station& station) {
    Station field;
    field.AirportName = station.AirportName;
    field.AirportLatitude = station.AirportLatitude;
    field.AirportLongitude = station.AirportLongitude;
    field.AirportCode = station.AirportCode;
    field.GroundFrequency = station.GroundFrequency;
    field.TowerFrequency = station.TowerFrequency;
    field.AirportTaxiPoints = station.AirportTaxiPoints;
    field.AirportTaxiPaths = station.AirportTaxiPaths;
    field.AirportParkingSpots = station.AirportParkingSpots;
    field.RunwayLatitude = station.RunwayLatitude;
    field.RunwayLongitude = station.RunwayLongitude;
    field.RunwayElevation = station.RunwayElevation;
    field.RunwayLength = station.RunwayLength;
    field.RunwayWidth = station.RunwayWidth;
    field.RunwayHeading = station.RunwayHeading;
    field.MagVarGrid = station.MagVarGrid;
    return field;
}

/// The place so far before the second of two places.
Place Before(Place from, Place to, double miles) { return PlaceBeyond(to, CourseTo(to, from), miles); }

}  // namespace

AirportChart::AirportChart(const Station& station) : field_(FieldOf(station)), taxiways_(field_) {
    runwayTrue_ = MagneticToTrue(field_.RunwayHeading, Threshold());
}

double AirportChart::RunwayMiles() const { return field_.RunwayLength / FeetPerMile; }

double AirportChart::RunwayHalfMiles() const { return field_.RunwayWidth / FeetPerMile / 2; }

RunwayPlace AirportChart::SeenFromRunway(Place place) const {
    const double miles = MilesBetween(Threshold(), place);
    const double off = TurnFrom(runwayTrue_, CourseTo(Threshold(), place)) * (std::numbers::pi / 180);
    return {miles * std::cos(off), miles * std::sin(off)};
}

Place AirportChart::FromRunway(RunwayPlace place) const {
    const double off = std::atan2(place.Right, place.Along) * (180 / std::numbers::pi);
    return PlaceBeyond(Threshold(), runwayTrue_ + off, std::hypot(place.Along, place.Right));
}

bool AirportChart::IsOnRunway(Place place) const {
    const RunwayPlace seen = SeenFromRunway(place);
    const double slack = EdgeFeet / FeetPerMile;
    return std::abs(seen.Right) < field_.RunwayWidth / FeetPerMile / 2 + slack && seen.Along > -slack &&
           seen.Along < RunwayMiles() + slack;
}

bool AirportChart::IsWatched(Place place) const {
    const double slack = WatchedSlackFeet / FeetPerMile;
    const double miles = MilesBetween(Threshold(), place);
    if (miles > RunwayMiles() + slack) return false;
    const Place middle = PlaceBeyond(Threshold(), field_.RunwayHeading, miles);
    return MilesBetween(middle, place) < field_.RunwayWidth / FeetPerMile / 2 + slack;
}

double AirportChart::MagneticToTrue(double heading, Place place) const {
    return WholeCircle(heading - TrueToMagnetic(field_, 0, place.Latitude, place.Longitude));
}

// ---- Ways on the ground

AirportChart::WayOut AirportChart::WayToRunway(Place from, const std::vector<std::string>& taxiways) const {
    const double clear = (field_.RunwayWidth / 2.0 + ClearFeet) / FeetPerMile;
    WayOut out;
    std::vector<Place> way;
    std::vector<bool> holding;
    int entry = TaxiNetwork::None;
    for (int node = 0; node < taxiways_.PointCount() && !taxiways_.Empty(); ++node) {
        if (!IsOnRunway(taxiways_.At(node)) || !taxiways_.IsJoined(node)) continue;
        if (entry == TaxiNetwork::None ||
            MilesBetween(Threshold(), taxiways_.At(node)) < MilesBetween(Threshold(), taxiways_.At(entry))) {
            entry = node;
        }
    }
    if (entry != TaxiNetwork::None) {
        for (const int node : taxiways_.Way(taxiways_.Nearest(from), entry, taxiways)) {
            way.push_back(taxiways_.At(node));
            holding.push_back(taxiways_.IsHoldingPoint(node));
        }
    }
    if (way.empty()) {  // straight to the runway's side, where he comes from
        const double side = SeenFromRunway(from).Right < 0 ? -1 : 1;
        way = {FromRunway({0, side * 2 * clear}), Threshold()};
        holding = {false, false};
    }
    std::size_t onto = 0;
    while (onto + 1 < way.size() && !IsOnRunway(way[onto])) ++onto;
    const double least = (field_.RunwayWidth / 2.0 + EdgeFeet) / FeetPerMile +
                         HeadingSlack * std::max(SeenFromRunway(way[onto]).Along, 0.0);
    const auto standsClear = [&](std::size_t i) {
        return std::abs(SeenFromRunway(way[i]).Right) >= least && !IsWatched(way[i]);
    };
    std::size_t stop = onto;
    for (std::size_t i = onto; i-- > 0;) {
        if (MilesBetween(way[i], way[onto]) > HoldingFeet / FeetPerMile) break;
        if (holding[i] && standsClear(i)) {
            stop = i;
            break;
        }
    }
    const auto at = [&](std::size_t i) { return way.begin() + static_cast<std::ptrdiff_t>(i); };
    if (stop < onto) {
        out.ToHoldShort.assign(way.begin(), at(stop + 1));
    } else if (onto > 0) {
        std::size_t last = onto - 1;
        while (last > 0 && !standsClear(last)) --last;
        out.ToHoldShort.assign(way.begin(), at(last + 1));
        const double before = std::max(clear, least);
        if (MilesBetween(way[last], way[last + 1]) > before) {
            const Place clearOf = Before(way[last], way[last + 1], before);
            if (!IsWatched(clearOf)) out.ToHoldShort.push_back(clearOf);
        }
    }
    out.ToLineUp.assign(at(onto), way.end());
    const double reached = SeenFromRunway(way.back()).Along;
    if (reached > LineUpFeet / FeetPerMile) out.ToLineUp.push_back(FromRunway({0, 0}));
    out.ToLineUp.push_back(FromRunway({LineUpFeet / FeetPerMile, 0}));
    return out;
}

std::vector<Place> AirportChart::WayToSpot(Place from, std::string_view spot,
                                           const std::vector<std::string>& taxiways) const {
    const int end = taxiways_.Empty() ? TaxiNetwork::None : taxiways_.Spot(spot);
    std::vector<Place> way;
    if (end != TaxiNetwork::None) {
        for (const int node : taxiways_.Way(taxiways_.Nearest(from), end, taxiways)) {
            way.push_back(taxiways_.At(node));
        }
    }
    if (way.empty()) {
        for (const ParkingSpot& known : Spots()) {
            if (known.Name == spot && known.Radius > 0) way = {{known.Latitude, known.Longitude}};
        }
    }
    return way;
}

std::vector<Place> AirportChart::WayOffRunway(Place from, double brakingMiles) const {
    const double clear = (field_.RunwayWidth / 2.0 + ClearFeet) / FeetPerMile;
    const double braked = SeenFromRunway(from).Along + brakingMiles;
    std::vector<Place> best;
    double bestCost = 0;
    for (int node = 0; node < taxiways_.PointCount() && !taxiways_.Empty(); ++node) {
        if (IsOnRunway(taxiways_.At(node)) || !taxiways_.HasTaxiway(node)) continue;
        const RunwayPlace seen = SeenFromRunway(taxiways_.At(node));
        if (std::abs(seen.Right) < clear || seen.Along < -0.1 || seen.Along > RunwayMiles() + 0.1) continue;
        if (std::abs(seen.Right) > 4 * clear || IsWatched(taxiways_.At(node))) continue;
        // Taxiways that meet the runway: the way there from the nearest point of the runway is short.
        for (int start = 0; start < taxiways_.PointCount(); ++start) {
            if (!IsOnRunway(taxiways_.At(start)) || !taxiways_.HasTaxiway(start)) continue;
            if (MilesBetween(taxiways_.At(start), taxiways_.At(node)) > 8 * clear) continue;
            const double along = SeenFromRunway(taxiways_.At(start)).Along;
            const double cost = (along >= braked ? along - braked : 10 + (braked - along)) +
                                MilesBetween(taxiways_.At(start), taxiways_.At(node));
            if (!best.empty() && cost >= bestCost) continue;
            const auto way = taxiways_.Way(start, node, {});
            if (way.empty() || way.size() > 8) continue;
            best.clear();
            for (const int step : way) best.push_back(taxiways_.At(step));
            bestCost = cost;
        }
    }
    if (!best.empty()) return best;
    const double right = SeenFromRunway(from).Right < 0 ? -1 : 1;
    const double along = std::min(braked, RunwayMiles());
    return {FromRunway({along, 0}), FromRunway({along + clear, right * clear}),
            FromRunway({along + 1.5 * clear, right * 2 * clear})};
}

}  // namespace corvenna
