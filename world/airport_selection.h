#pragma once

#include <optional>
#include <string_view>

#include "station/model.h"
#include "world/airport_list.h"

namespace corvenna {

/// The limits of the search around the selected airport, degrees: what lies 200 nautical miles to each
/// side. A place is inside when it is strictly between them. There is no wrap: a box across the 180th
/// meridian holds nothing on the far side.
struct SearchBox {
    double NorthLimit = 0;
    double SouthLimit = 0;
    double WestLimit = 0;
    double EastLimit = 0;

    bool Holds(double latitude, double longitude) const {
        return latitude < NorthLimit && latitude > SouthLimit && longitude < EastLimit &&
               longitude > WestLimit;
    }
};

/// Copies the airport of a label into the station's fields, of several the last one, and completes its
/// frequencies. Nothing, and no change, when no airport has the label. Station's thread.
std::optional<SearchBox> SelectAirport(Station& station, const AirportList& airports, std::string_view label);

/// Everything between the choice of an airport and the search for a session: reads the database, selects the
/// airport and loads the terrain, all from one folder. Nothing when no airport has the label. Throws
/// FileError when a file is missing or damaged.
std::optional<SearchBox> PrepareStation(Station& station, std::string_view appFolder, std::string_view label);

}  // namespace corvenna
