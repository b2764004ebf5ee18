#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "world/airport.h"
#include "world/byte_reader.h"
#include "world/taxi_projection.h"
#include "world/walk_meter.h"

namespace corvenna {

/// What the taxi network hangs on, as the records of an airport so far have told it.
struct TaxiContext {
    TaxiProjection Projection;             ///< from the airport's reference position
    std::vector<std::string> RunwayNames;  ///< "Runway 16L", ..., in the order of the runway records
    std::string SpotText;                  ///< upper-case text of the parking spot read last
};

/// Reads the lists of the taxi block at `block` into the airport. They follow each other without regard to
/// the block's own size, up to the name table or a list of unknown element size. Throws DamagedData, also
/// when a list has more than 32767 elements.
void DecodeTaxiBlock(const ByteReader& reader, std::int64_t block, WalkMeter& meter, TaxiContext& context,
                     Airport& airport);

}  // namespace corvenna
