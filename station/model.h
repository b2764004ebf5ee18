#pragma once

#include <any>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "station/spare_list.h"
#include "station/terrain_index.h"
#include "station/traffic_index.h"

/// The shared model of a running station. Everything in it belongs to one thread: every operation that
/// takes a Station is called from the handlers of that thread alone, one handler at a time.
namespace corvenna {

/// A named place: a fix, a taxi target, a mountain.
struct GeoPoint {
    std::string Name;
    std::string Kind;
    double Latitude = 0;        ///< degrees, north positive
    double Longitude = 0;       ///< degrees, east positive
    std::int32_t Altitude = 0;  ///< feet above sea level

    bool operator==(const GeoPoint&) const = default;
};

/// A node of the taxi network.
struct TaxiPoint {
    std::int32_t Kind = 0;
    double Latitude = 0;
    double Longitude = 0;

    bool operator==(const TaxiPoint&) const = default;
};

/// An edge of the taxi network. Both ends are places in AirportTaxiPoints, but for a tie, which leads from
/// a point to a place in AirportParkingSpots.
struct TaxiPath {
    static constexpr std::int32_t Taxiway = 0;
    static constexpr std::int32_t Runway = 1;
    static constexpr std::int32_t ParkingTie = 2;

    std::int32_t Kind = Taxiway;
    std::int32_t StartPoint = 0;
    std::int32_t EndPoint = 0;
    std::string Name;

    bool operator==(const TaxiPath&) const = default;
};

struct ParkingSpot {
    std::string Name;
    std::int32_t Radius = 0;  ///< feet
    double Latitude = 0;
    double Longitude = 0;
    std::uint8_t Spare = 0;  ///< 1 while Ground counts the spot as free

    bool operator==(const ParkingSpot&) const = default;
};

/// What a participant of the session is to the controller.
namespace Role {
inline constexpr std::string_view Player = "player";
inline constexpr std::string_view Observer = "observer";
inline constexpr std::string_view Unknown = "unknown";
}  // namespace Role

inline constexpr std::string_view UnknownAircraft = "Unknown";

/// Values of PlayerRecord::InService and PlayerRecord::FlightRules.
inline constexpr std::uint8_t OpeningDialogue = 0;
inline constexpr std::uint8_t UnderService = 1;
inline constexpr std::uint8_t Vfr = 0;
inline constexpr std::uint8_t Ifr = 1;

/// One participant of the session, with the whole state of his dialogue. State is kept as words: an
/// empty text means not set, and words are compared exactly.
struct PlayerRecord {
    std::string Name;              ///< callsign; with Id it identifies the record
    std::int32_t Id = 0;           ///< player id in the session
    std::string Role;              ///< a word of namespace Role; only a "player" is served
    double Latitude = 0;           ///< degrees, rounded to 5 decimals
    double Longitude = 0;          ///< degrees, rounded to 5 decimals
    std::int32_t Altitude = 0;     ///< feet above sea level
    std::int16_t Heading = 0;      ///< degrees magnetic
    std::string AircraftName;      ///< "Unknown" until the pilot's simulator tells
    std::uint8_t InService = 0;    ///< OpeningDialogue or UnderService
    std::string TunedFrequency;    ///< copy of one of the station's labels; empty: on none
    std::string MenuText;          ///< the text now addressed to the pilot; a change of it is sent
    std::uint8_t Choice = 0;       ///< the menu number typed; 0: nothing waits
    std::string AdvisedTraffic;    ///< callsigns already called to him, each followed by ", "
    std::string AssignedHeading;   ///< degrees, decimal text
    std::string AssignedAltitude;  ///< feet, decimal text
    GeoPoint Target;               ///< the fix he is sent to; empty Name: none
    std::uint8_t FlightRules = 0;  ///< Vfr or Ifr
    std::string Quadrant;  ///< "north", "northeast", ...: the side of the runway he is on; see geometry.h
    std::string Phase;     ///< his state word within the service that has him

    bool operator==(const PlayerRecord&) const = default;
};

/// The route of a pilot over the taxi network. Links stand in travel order with one blank spare element
/// behind them; a link that has been passed has -1 in StartPoint and EndPoint.
struct TaxiRouteRecord {
    std::string PilotName;
    std::int16_t PilotIndex = 0;  ///< place in Players when the route was stored; may have gone stale since
    std::vector<TaxiPath> Links = std::vector<TaxiPath>(1);
    GeoPoint Target;

    bool operator==(const TaxiRouteRecord&) const = default;
};

/// Magnetic variation by whole degrees: entry longitude (0 to 359) times 181, plus latitude plus 90.
/// A value is a fraction of a circle in units of 360 / 65536 degrees.
inline constexpr std::size_t MagVarGridSize = 65160;

/// The whole state of one station: the airport that was selected, the session it is in, and its traffic.
struct Station {
    // The airport. Filled by the selection, emptied when the station closes.
    std::string AirportName;
    double AirportLatitude = 0;
    double AirportLongitude = 0;
    std::string AirportCode;
    std::string GroundFrequency;  ///< the four labels differ from each other unless empty
    std::string TowerFrequency;
    std::string ApproachFrequency;
    std::string ArtccFrequency;
    std::string CtafFrequency;
    std::vector<TaxiPoint> AirportTaxiPoints = std::vector<TaxiPoint>(1);
    std::vector<ParkingSpot> AirportParkingSpots = std::vector<ParkingSpot>(1);
    std::vector<TaxiPath> AirportTaxiPaths = std::vector<TaxiPath>(1);
    std::string ActiveRunway;
    double RunwayLatitude = 0;  ///< threshold of ActiveRunway
    double RunwayLongitude = 0;
    std::int32_t RunwayElevation = 0;  ///< feet; ground level of all altitude tests
    std::int32_t RunwayLength = 0;     ///< feet
    std::int32_t RunwayWidth = 0;      ///< feet
    std::int16_t RunwayHeading = 0;    ///< degrees magnetic
    std::int16_t RunwayHasIls = 0;     ///< 0 or -1
    std::vector<GeoPoint> Mountains = std::vector<GeoPoint>(1);
    std::int32_t MountainCount = 0;
    std::int32_t HighestTerrain = 0;  ///< feet, the highest terrain found plus 2000
    std::vector<std::int16_t> MagVarGrid = std::vector<std::int16_t>(MagVarGridSize);

    // The session.
    std::string SessionGuid;
    std::int32_t SessionMaxPlayers = 0;
    std::int32_t ControllerId = 0;  ///< the controller's own player id
    bool SessionOpen = false;       ///< join announcements are ignored while false
    bool SessionHost = false;       ///< true once the controller took over as host

    // The traffic.
    SpareList<PlayerRecord> Players;
    SpareList<TaxiRouteRecord> TaxiRoutes;
    SpareList<std::string> LandingQueue;  ///< callsigns in landing order
    SpareList<std::string> TakeoffQueue;  ///< callsigns in takeoff order

    std::int16_t PlayerCount() const { return Players.Count(); }
    std::int16_t TaxiRouteCount() const { return TaxiRoutes.Count(); }
    std::int16_t LandingQueueCount() const { return LandingQueue.Count(); }
    std::int16_t TakeoffQueueCount() const { return TakeoffQueue.Count(); }

    // Centres of the eight sectors of PlayerRecord::Quadrant, degrees magnetic; see ComputeSectorCentres.
    std::int16_t SectorNorth = 0;
    std::int16_t SectorNortheast = 0;
    std::int16_t SectorNorthwest = 0;
    std::int16_t SectorEast = 0;
    std::int16_t SectorWest = 0;
    std::int16_t SectorSouth = 0;
    std::int16_t SectorSoutheast = 0;
    std::int16_t SectorSouthwest = 0;

    // The pilot in hand, valid only during his turn in the tick; see UpdatePilotGeometry.
    std::int16_t DistanceToAirport = 0;  ///< nautical miles
    std::int16_t DistanceToRunway = 0;   ///< nautical miles
    std::int16_t BearingFromRunway = 0;  ///< degrees magnetic

    // What is worked out from positions and from the airport stays true from one turn to the next while a
    // tick is in progress, for no service writes either. Between ticks anything may change.
    bool TickInProgress = false;
    std::uint64_t TicksBegun = 0;
    TrafficIndex Traffic;
    mutable TerrainIndex Terrain;
    std::any GroundNotes;  ///< what Ground has worked out so far; see ground/ground_notes.h

    // Scratch of the tick, kept so that a tick that sends nothing takes no memory.
    std::string TextBefore;
    std::vector<std::int32_t> Audience;

    // Scratch of the radar services, kept like that of the tick: a text being built or compared with, the
    // name of a leg, and a phrase looked for.
    std::string Line;
    std::string LegName;
    std::string Phrase;

    // Fixes around the runway, rewritten for each pilot who is steered. They are blank at the station
    // window's load and keep what the last pilot left: one chain reads a fix that it has not written.
    GeoPoint LeftDownwindFix;
    GeoPoint RightDownwindFix;
    GeoPoint LeftBaseFix;
    GeoPoint RightBaseFix;
    GeoPoint FinalFix;
};

/// Put a pilot last in a queue. Throws std::overflow_error when the 16-bit count is full.
void AddToTakeoffQueue(Station& station, const PlayerRecord& pilot);
void AddToLandingQueue(Station& station, const PlayerRecord& pilot);

/// Take a pilot out of a queue. The queue always gets shorter by one: a name that is not there costs the
/// first entry its place. On an empty queue: EmptyListError, with the queue left empty.
void RemoveFromTakeoffQueue(Station& station, const PlayerRecord& pilot);
void RemoveFromLandingQueue(Station& station, const PlayerRecord& pilot);

/// Take a pilot's route out of TaxiRoutes, by the same rule as the queues.
void RemoveTaxiRoute(Station& station, const PlayerRecord& pilot);

/// Calls RemoveTaxiRoute once for each route that bears the pilot's name; no route, no change.
void RemoveTaxiRoutesOf(Station& station, const PlayerRecord& pilot);

/// Takes a pilot out of all lists and services. Name, Id, Role, position and aircraft stay; the next tick
/// greets him as a new pilot.
void ResetPilot(Station& station, PlayerRecord& pilot);

/// All lists of the traffic back to one blank element and the fixes blank, as at the station window's load.
void ClearTraffic(Station& station);

}  // namespace corvenna
