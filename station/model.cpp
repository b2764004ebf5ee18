#include "station/model.h"

namespace corvenna {

namespace {

/// Runs remove() for each element that isHit accepts. The walk's end is fixed when it begins, so after a
/// removal it runs on over the spare element, and a place beyond the array reads as a blank one.
template <class Element, class IsHit, class Remove>
void RemoveAtEachHit(SpareList<Element>& list, IsHit isHit, Remove remove) {
    const Element blank{};
    const std::int16_t end = list.Count();
    for (std::int32_t place = 0; place < end; ++place) {
        if (isHit(list.Holds(place) ? list[place] : blank)) remove();
    }
}

}  // namespace

void AddToTakeoffQueue(Station& station, const PlayerRecord& pilot) { station.TakeoffQueue.Add(pilot.Name); }

void AddToLandingQueue(Station& station, const PlayerRecord& pilot) { station.LandingQueue.Add(pilot.Name); }

void RemoveFromTakeoffQueue(Station& station, const PlayerRecord& pilot) {
    station.TakeoffQueue.RemoveLastHit([&](const std::string& name) { return name == pilot.Name; },
                                       "a pilot was to leave the takeoff queue, but it is empty");
}

void RemoveFromLandingQueue(Station& station, const PlayerRecord& pilot) {
    station.LandingQueue.RemoveLastHit([&](const std::string& name) { return name == pilot.Name; },
                                       "a pilot was to leave the landing queue, but it is empty");
}

void RemoveTaxiRoute(Station& station, const PlayerRecord& pilot) {
    station.TaxiRoutes.RemoveLastHit(
        [&](const TaxiRouteRecord& route) { return route.PilotName == pilot.Name; },
        "a taxi route was to be removed, but there is none");
}

void RemoveTaxiRoutesOf(Station& station, const PlayerRecord& pilot) {
    RemoveAtEachHit(
        station.TaxiRoutes, [&](const TaxiRouteRecord& route) { return route.PilotName == pilot.Name; },
        [&] { RemoveTaxiRoute(station, pilot); });
}

void ResetPilot(Station& station, PlayerRecord& pilot) {
    const auto isHis = [&](const std::string& name) { return name == pilot.Name; };
    RemoveAtEachHit(station.TakeoffQueue, isHis, [&] { RemoveFromTakeoffQueue(station, pilot); });
    RemoveAtEachHit(station.LandingQueue, isHis, [&] { RemoveFromLandingQueue(station, pilot); });
    RemoveTaxiRoutesOf(station, pilot);

    pilot.InService = OpeningDialogue;
    pilot.TunedFrequency.clear();
    pilot.MenuText.clear();
    pilot.Choice = 0;
    pilot.AdvisedTraffic.clear();
    pilot.AssignedHeading.clear();
    pilot.AssignedAltitude.clear();
    pilot.Target = GeoPoint{};
    pilot.FlightRules = Vfr;
    pilot.Quadrant.clear();
    pilot.Phase.clear();
}

void ClearTraffic(Station& station) {
    station.Players.Clear();
    station.TaxiRoutes.Clear();
    station.TakeoffQueue.Clear();
    station.LandingQueue.Clear();
    for (GeoPoint* fix : {&station.LeftDownwindFix, &station.RightDownwindFix, &station.LeftBaseFix,
                          &station.RightBaseFix, &station.FinalFix}) {
        *fix = GeoPoint{};
    }
}

}  // namespace corvenna
