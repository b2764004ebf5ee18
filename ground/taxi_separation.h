#pragma once

#include "station/model.h"

/// The three looks that Ground takes at the traffic in the turn of every pilot on its frequency. They go by
/// positions and stored routes alone, and one pilot's turn can write a hold or a release into the record of
/// any other. What it writes for another is not sent: his own turn begins with that text already standing.
/// Station's thread.
namespace corvenna {

/// ComputeRunwayOccupied, from Ground's notes.
bool FindRunwayOccupied(Station& station, const PlayerRecord& pilot);

/// Tells the pilots on routes to hold or to go on, in the order of the routes, so that a hold just written
/// counts for the routes behind it. A pilot holds for a nearer one, who isn't holding himself, on a link
/// that conflicts with one of his; and when a link of his is of the runway in use and there is somebody on it
/// or in a queue. Choice stays, to be read against the new text.
void SeparateTaxiRoutes(Station& station, bool runwayOccupied);

/// Marks the links that pilots have passed. A pilot is taken to be on the first live link whose start he is
/// no farther from than it is long, within 30 degrees of its course; all links before it count as passed.
void AdvanceTaxiRoutes(Station& station);

}  // namespace corvenna
