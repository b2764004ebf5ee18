#pragma once

#include "link/player_directory.h"
#include "link/session.h"
#include "station/model.h"

namespace corvenna {

/// The body of Refresh_Players: drops records whose participants have left the session, asks participants
/// without a record who they are, and asks each player for his aircraft. Throws what the session layer
/// throws. Station's thread.
void RefreshPlayers(Station& station, Session& dp, PlayerDirectory& directory);

/// Drops records whose participants have left the session. The walk has a fixed end, and goes on to the
/// next place after a removal: a record that moves up is looked at only in the next purge, and for each
/// removal the last record may fall behind the count.
void PurgeLeftPlayers(Station& station, Session& dp);

}  // namespace corvenna
