#pragma once

#include "station/model.h"

/// The fields of the model by their names, each list in its order, for whoever shows or sets them one by
/// one. visit is called as visit("Name", field) with a reference to each field.
namespace corvenna {

template <class Point, class Visit>
void VisitGeoPointFields(Point& point, Visit visit) {
    visit("Name", point.Name);
    visit("Kind", point.Kind);
    visit("Latitude", point.Latitude);
    visit("Longitude", point.Longitude);
    visit("Altitude", point.Altitude);
}

template <class Record, class Visit>
void VisitPlayerFields(Record& player, Visit visit) {
    visit("Name", player.Name);
    visit("Id", player.Id);
    visit("Role", player.Role);
    visit("Latitude", player.Latitude);
    visit("Longitude", player.Longitude);
    visit("Altitude", player.Altitude);
    visit("Heading", player.Heading);
    visit("AircraftName", player.AircraftName);
    visit("InService", player.InService);
    visit("TunedFrequency", player.TunedFrequency);
    visit("MenuText", player.MenuText);
    visit("Choice", player.Choice);
    visit("AdvisedTraffic", player.AdvisedTraffic);
    visit("AssignedHeading", player.AssignedHeading);
    visit("AssignedAltitude", player.AssignedAltitude);
    visit("Target", player.Target);
    visit("FlightRules", player.FlightRules);
    visit("Quadrant", player.Quadrant);
    visit("Phase", player.Phase);
}

/// The airport's fields, without the mountains and the variation table.
template <class Station, class Visit>
void VisitStationFields(Station& station, Visit visit) {
    visit("AirportName", station.AirportName);
    visit("AirportLatitude", station.AirportLatitude);
    visit("AirportLongitude", station.AirportLongitude);
    visit("AirportCode", station.AirportCode);
    visit("GroundFrequency", station.GroundFrequency);
    visit("TowerFrequency", station.TowerFrequency);
    visit("ApproachFrequency", station.ApproachFrequency);
    visit("ArtccFrequency", station.ArtccFrequency);
    visit("CtafFrequency", station.CtafFrequency);
    visit("ActiveRunway", station.ActiveRunway);
    visit("RunwayLatitude", station.RunwayLatitude);
    visit("RunwayLongitude", station.RunwayLongitude);
    visit("RunwayElevation", station.RunwayElevation);
    visit("RunwayLength", station.RunwayLength);
    visit("RunwayWidth", station.RunwayWidth);
    visit("RunwayHeading", station.RunwayHeading);
    visit("RunwayHasIls", station.RunwayHasIls);
    visit("HighestTerrain", station.HighestTerrain);
    visit("AirportTaxiPoints", station.AirportTaxiPoints);
    visit("AirportParkingSpots", station.AirportParkingSpots);
    visit("AirportTaxiPaths", station.AirportTaxiPaths);
}

}  // namespace corvenna
