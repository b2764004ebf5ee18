#include "ground/taxi_separation.h"

#include <algorithm>

#include "ground/ground_notes.h"
#include "ground/ground_texts.h"
#include "ground/taxi_network.h"
#include "station/geometry.h"
#include "station/phases.h"
#include "station/runway_scan.h"
#include "station/say.h"

namespace corvenna {

namespace {

constexpr std::string_view ContinueToRunwayText =
    "{callsign}, Continue taxi. "
    "Choose one of the following options for the Ground frequency: "
    "1-Tune {airport} Tower Frequency 2-Close ATC Services";
constexpr std::string_view ContinueToGateText =
    "{callsign}, Continue taxi. Report us when you are parked in the gate or parking. "
    "Choose one of the following options for the Ground frequency: 1-Report Parking 2-Close ATC Services";

struct Release {
    std::string_view TargetKind;
    std::string_view Text;
    std::string_view NextPhase;
};

constexpr Release Releases[] = {
    {TaxiTarget::Runway, ContinueToRunwayText, Phase::TaxiingToRunway},
    {TaxiTarget::Parking, ContinueToGateText, Phase::TaxiingToGate},
};

bool IsOnHold(const PlayerRecord& pilot) {
    return pilot.Phase == Phase::AcknowledgeHoldPosition || pilot.Phase == Phase::HoldPosition;
}

/// nullptr for a PilotIndex beyond the spare record: what would be written there is lost.
PlayerRecord* PilotOf(Station& station, const TaxiRouteRecord& route) {
    return station.Players.Holds(route.PilotIndex) ? &station.Players[route.PilotIndex] : nullptr;
}

// ---- Holding

void RefreshPicture(const Station& station, GroundNotes& notes) {
    const RouteStamp now = StampOf(station.TaxiRoutes);
    if (notes.PictureStamp != now) {
        notes.Picture.Make(station);
    } else if (notes.LinksPassed) {
        notes.Picture.DropPassedLinks(station);
    }
    notes.PictureStamp = now;
    notes.LinksPassed = false;
}

void FindThoseOnHold(Station& station, RouteSet& onHold) {
    const auto routes = station.TaxiRoutes.Valid();
    onHold.Resize(routes.size());
    for (std::size_t i = 0; i < routes.size(); ++i) {
        const PlayerRecord* const pilot = PilotOf(station, routes[i]);
        if (pilot != nullptr && IsOnHold(*pilot)) onHold.Set(i, true);
    }
}

/// Several routes can have come to share a record.
void NoteHold(const Station& station, RouteSet& onHold, std::int16_t pilotIndex, bool holds) {
    const auto routes = station.TaxiRoutes.Valid();
    for (std::size_t i = 0; i < routes.size(); ++i) {
        if (routes[i].PilotIndex == pilotIndex) onHold.Set(i, holds);
    }
}

/// Whether the pilot was released. A target of no known kind keeps him where he is.
bool ReleasePilot(const Station& station, PlayerRecord& pilot, std::string_view targetKind) {
    const auto* const release = std::find_if(std::begin(Releases), std::end(Releases),
                                             [&](const Release& r) { return r.TargetKind == targetKind; });
    if (release == std::end(Releases)) return false;
    Say(station, pilot, release->Text);
    pilot.Phase = release->NextPhase;
    return true;
}

// ---- Advancing

bool IsOnLink(const Station& station, const TaxiPosition& pilot, const TaxiPath& link) {
    const TaxiPoint* const start = FindTaxiPoint(station, link.StartPoint);
    const TaxiPoint* const end = FindTaxiPoint(station, link.EndPoint);
    if (start == nullptr || end == nullptr) return false;
    const double latitude = start->Latitude;
    const double longitude = start->Longitude;
    if (DistanceFeet(latitude, longitude, pilot.Latitude, pilot.Longitude) >
        DistanceFeet(latitude, longitude, end->Latitude, end->Longitude)) {
        return false;
    }
    const std::int16_t course = BearingTo(station, latitude, longitude, end->Latitude, end->Longitude);
    std::int16_t bearing = BearingTo(station, latitude, longitude, pilot.Latitude, pilot.Longitude);
    return HeadingWithin(bearing, course, 30);
}

/// Whether links have newly been passed.
bool AdvanceRoute(const Station& station, TaxiRouteRecord& route) {
    const std::span<TaxiPath> links = LinksOf(route);
    const TaxiPosition pilot = PositionOf(station, route);
    const auto on = std::find_if(links.begin(), links.end(), [&](const TaxiPath& link) {
        return link.StartPoint > -1 && link.EndPoint > -1 && IsOnLink(station, pilot, link);
    });
    if (on == links.end()) return false;
    bool passed = false;
    for (auto link = links.begin(); link != on; ++link) {
        passed = passed || IsLive(*link);
        link->StartPoint = link->EndPoint = -1;
    }
    return passed;
}

}  // namespace

bool FindRunwayOccupied(Station& station, const PlayerRecord& pilot) {
    GroundNotes& notes = NotesOfTick(station);
    if (!notes.RunwayScanned) {
        notes.OnRunway.clear();
        for (std::int32_t i = 0; i < station.PlayerCount(); ++i) {
            if (IsOnRunway(station, station.Players[i])) notes.OnRunway.push_back(i);
        }
        notes.RunwayScanned = true;
    }
    return std::any_of(notes.OnRunway.begin(), notes.OnRunway.end(),
                       [&](std::int32_t i) { return station.Players[i].Name != pilot.Name; });
}

void SeparateTaxiRoutes(Station& station, bool runwayOccupied) {
    GroundNotes& notes = NotesOfTick(station);
    RefreshPicture(station, notes);
    FindThoseOnHold(station, notes.OnHold);
    const bool runwayBusy =
        !station.TakeoffQueue[0].empty() || !station.LandingQueue[0].empty() || runwayOccupied;

    const auto routes = station.TaxiRoutes.Valid();
    for (std::size_t i = 0; i < routes.size(); ++i) {
        PlayerRecord* const pilot = PilotOf(station, routes[i]);
        if (pilot == nullptr) continue;
        const bool mustHold = (runwayBusy && notes.Picture.IsOverRunway(i)) ||
                              notes.Picture.YieldsTo(i).HoldsAnyOutside(notes.OnHold);
        if (mustHold == IsOnHold(*pilot)) continue;
        if (mustHold) {
            Say(station, *pilot, HoldPositionText);
            pilot->Phase = Phase::AcknowledgeHoldPosition;
        } else if (!ReleasePilot(station, *pilot, routes[i].Target.Kind)) {
            continue;
        }
        NoteHold(station, notes.OnHold, routes[i].PilotIndex, mustHold);
    }
}

// Advancing a route twice from one position changes nothing more, so routes done in this tick are left alone.
void AdvanceTaxiRoutes(Station& station) {
    GroundNotes& notes = NotesOfTick(station);
    const RouteStamp now = StampOf(station.TaxiRoutes);
    const bool onlyAdded = notes.AdvanceStamp.Count >= 0 && notes.AdvanceStamp.Revision == now.Revision;
    for (std::int16_t i = onlyAdded ? notes.AdvanceStamp.Count : std::int16_t{0}; i < now.Count; ++i) {
        if (AdvanceRoute(station, station.TaxiRoutes[i])) notes.LinksPassed = true;
    }
    notes.AdvanceStamp = now;
}

}  // namespace corvenna
