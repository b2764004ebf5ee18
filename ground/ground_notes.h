#pragma once

#include <cstdint>
#include <vector>

#include "ground/taxi_requests.h"
#include "ground/traffic_picture.h"
#include "station/model.h"

/// What Ground works out in one pilot's turn and need not work out again in the next. Ground looks at all
/// the traffic in the turn of every pilot on its frequency, but between two turns of one tick only the routes
/// and the pilots' phases change.
namespace corvenna {

/// Which routes there are, told by what removing and adding does to the list. Good within one tick.
struct RouteStamp {
    std::uint64_t Revision = 0;
    std::int16_t Count = -1;  ///< -1: of no list

    bool operator==(const RouteStamp&) const = default;
};

RouteStamp StampOf(const SpareList<TaxiRouteRecord>& routes);

struct GroundNotes {
    std::uint64_t Tick = 0;  ///< Station::TicksBegun of the tick in which all of this holds

    bool RunwayScanned = false;
    std::vector<std::int32_t> OnRunway;  ///< places in Players of those on the runway in use

    bool SpotsScanned = false;
    std::vector<std::uint8_t> SpotTaken;  ///< for each spot: 1 whatever routes there are
    RouteStamp OfferStamp;
    ParkingOffer Offer;

    RouteStamp PictureStamp;
    bool LinksPassed = false;  ///< since the picture was made
    TrafficPicture Picture;
    RouteSet OnHold;

    RouteStamp AdvanceStamp;  ///< of the routes that have been advanced

    /// All of it, but for the memory it has taken.
    void Forget();
};

/// Ground's notes, empty unless they are of the tick in progress. A station between ticks has none, so an
/// operation that is called there works everything out from the fields as they stand. Station's thread.
GroundNotes& NotesOfTick(Station& station);

}  // namespace corvenna
