#include "ground/taxi_requests.h"

#include <algorithm>

#include "ground/ground_notes.h"
#include "ground/ground_texts.h"
#include "ground/taxi_network.h"
#include "ground/taxi_routing.h"
#include "station/phases.h"
#include "station/say.h"
#include "station/text.h"

namespace corvenna {

namespace {

/// Which spots can't be given to anybody, whatever routes there are. Holds for the tick in progress.
void ScanSpots(const Station& station, std::vector<std::uint8_t>& taken) {
    const auto& spots = station.AirportParkingSpots;
    taken.assign(spots.size(), 1);
    for (const TaxiPath& path : station.AirportTaxiPaths) {
        if (path.Kind != TaxiPath::ParkingTie || path.EndPoint < 0) continue;
        const auto spot = static_cast<std::size_t>(path.EndPoint);
        if (spot < spots.size()) taken[spot] = 0;
    }
    for (std::size_t spot = 0; spot < spots.size(); ++spot) {
        const auto players = station.Players.Valid();
        const auto standsHere = [&](const PlayerRecord& player) { return StandsWithin(player, spots[spot]); };
        if (taken[spot] == 0 && std::any_of(players.begin(), players.end(), standsHere)) taken[spot] = 1;
    }
}

bool IsReserved(const Station& station, const ParkingSpot& spot) {
    const auto routes = station.TaxiRoutes.Valid();
    return std::any_of(routes.begin(), routes.end(), [&](const TaxiRouteRecord& route) {
        return EqualIgnoringCase(route.Target.Name, spot.Name);
    });
}

}  // namespace

ParkingOffer UpdateParkingAvailability(Station& station) {
    if (!HasParking(station)) return {};
    GroundNotes& notes = NotesOfTick(station);
    const RouteStamp now = StampOf(station.TaxiRoutes);
    if (notes.OfferStamp == now) return notes.Offer;  // the marks are still what they were made then

    if (!notes.SpotsScanned) ScanSpots(station, notes.SpotTaken);
    notes.SpotsScanned = true;
    notes.OfferStamp = now;
    notes.Offer = {};
    for (std::size_t i = 0; i < station.AirportParkingSpots.size(); ++i) {
        ParkingSpot& spot = station.AirportParkingSpots[i];
        spot.Spare = notes.SpotTaken[i] != 0 || IsReserved(station, spot) ? 1 : 0;
        if (spot.Spare == 0) (IsGate(spot) ? notes.Offer.Gate : notes.Offer.Parking) = true;
    }
    return notes.Offer;
}

void RequestRunwayTaxi(Station& station, PlayerRecord& pilot) {
    if (!HasTaxiNetwork(station)) {
        Answer(station, pilot, TaxiToRunwayText);
        pilot.Phase = Phase::AcknowledgeTaxiToRunway;
        return;
    }
    AssignTaxiRoute(station, pilot,
                    {.Name = station.ActiveRunway,
                     .Kind = std::string(TaxiTarget::Runway),
                     .Latitude = station.RunwayLatitude,
                     .Longitude = station.RunwayLongitude,
                     .Altitude = station.RunwayElevation});
}

void RequestParkingTaxi(Station& station, PlayerRecord& pilot, bool wantGate) {
    if (!HasParking(station)) return;
    const auto& spots = station.AirportParkingSpots;
    const auto spot = std::find_if(spots.begin(), spots.end(), [&](const ParkingSpot& s) {
        return s.Spare == 0 && IsGate(s) == wantGate;
    });
    if (spot == spots.end()) return;
    AssignTaxiRoute(station, pilot,
                    {.Name = spot->Name,
                     .Kind = std::string(TaxiTarget::Parking),
                     .Latitude = spot->Latitude,
                     .Longitude = spot->Longitude,
                     .Altitude = 0});
}

}  // namespace corvenna
