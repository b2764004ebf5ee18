#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "practice/motion.h"
#include "practice/taxi_network.h"
#include "station/model.h"

namespace corvenna {

/// A place as seen along the active runway from its threshold; nautical miles.
struct RunwayPlace {
    double Along = 0;  ///< positive in the direction of landing
    double Right = 0;
};

/// What a pilot has on his charts of an airport. Made once, read by all pilots; any thread.
class AirportChart {
  public:
    /// From the fields of the airport; session and traffic are not looked at.
    explicit AirportChart(const Station& station);

    const std::string& Code() const { return field_.AirportCode; }
    const std::string& Name() const { return field_.AirportName; }
    bool Controlled() const { return !field_.TowerFrequency.empty() && !field_.GroundFrequency.empty(); }
    Place Middle() const { return {field_.AirportLatitude, field_.AirportLongitude}; }
    const std::vector<ParkingSpot>& Spots() const { return field_.AirportParkingSpots; }
    const TaxiNetwork& Taxiways() const { return taxiways_; }

    // ---- The active runway
    Place Threshold() const { return {field_.RunwayLatitude, field_.RunwayLongitude}; }
    double ElevationFeet() const { return field_.RunwayElevation; }
    double RunwayTrue() const { return runwayTrue_; }
    double RunwayMiles() const;
    double RunwayHalfMiles() const;  ///< half its width
    RunwayPlace SeenFromRunway(Place place) const;
    Place FromRunway(RunwayPlace place) const;
    bool IsOnRunway(Place place) const;

    /// Whether the controller takes somebody there for one on the runway, besides those who are: he looks
    /// along a strip that leads from the threshold in the direction of the runway's number, which is
    /// magnetic, as if it were true. Where the needle is far off that is over the taxiways, and whoever stops
    /// there closes the runway for everybody.
    bool IsWatched(Place place) const;

    bool IsNoPlaceToStop(Place place) const { return IsOnRunway(place) || IsWatched(place); }

    /// A magnetic heading, by the variation at a place, as a true one.
    double MagneticToTrue(double heading, Place place) const;

    // ---- Ways on the ground. What the network lacks is made up by straight lines.
    struct WayOut {
        std::vector<Place> ToHoldShort;
        std::vector<Place> ToLineUp;  ///< from there onto the runway, ahead along it
    };
    WayOut WayToRunway(Place from, const std::vector<std::string>& taxiways) const;

    std::vector<Place> WayToSpot(Place from, std::string_view spot,
                                 const std::vector<std::string>& taxiways) const;

    /// From a place on the runway, on by the first taxiway that is at least so far ahead, else back; ends
    /// clear of the runway.
    std::vector<Place> WayOffRunway(Place from, double brakingMiles) const;

  private:
    Station field_;
    TaxiNetwork taxiways_;
    double runwayTrue_ = 0;
};

}  // namespace corvenna
