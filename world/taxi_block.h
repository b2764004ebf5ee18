#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "world/airport.h"
#include "world/byte_reader.h"
#include "world/taxi_projection.h"

namespace corvenna {

/// Counts the bytes that are walked in one file. Entries may point to the same data again and again, so a
/// small file could keep the scan busy for ever and fill the memory; a file that has been walked through many
/// times over is taken as damaged.
class WalkMeter {
  public:
    explicit WalkMeter(std::int64_t fileSize) : left_(FreeBytes + WalksOfFile * fileSize) {}

    /// Throws DamagedData when the walk has gone too far.
    void Walked(std::int64_t offset, std::int64_t bytes) {
        left_ -= bytes;
        if (left_ < 0) throw DamagedData(offset, "the entries lead over the same data again and again");
    }

  private:
    static constexpr std::int64_t FreeBytes = 1 << 20;
    static constexpr std::int64_t WalksOfFile = 8;

    std::int64_t left_;
};

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
