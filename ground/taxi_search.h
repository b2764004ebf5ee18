#pragma once

#include <cstdint>
#include <vector>

#include "ground/taxi_network.h"
#include "station/model.h"

namespace corvenna {

/// A walk over the taxi network from one point to another, as links in travel order; empty when there is
/// none.
///
/// It is no shortest way. Each step goes to the neighbour that lies nearest to the target as the crow flies,
/// off a runway rather than along it, and the end point is taken at sight. Among equals the path that stands
/// earlier wins. A dead end bars the link that led into it, in this direction, for the rest of the search,
/// and the walk goes on from before it. The search ends when the very first step has nowhere to go.
///
/// toTarget measures to the target itself, which need not be a point. Station's thread.
std::vector<TaxiPath> FindTaxiRoute(const Station& station, std::int32_t start, std::int32_t end,
                                    PointDistances& toTarget);

}  // namespace corvenna
