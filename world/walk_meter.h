#pragma once

#include <cstdint>

#include "world/errors.h"

namespace corvenna {

/// Counts the bytes that are walked in one file. Entries may point to the same data again and again, so a
/// small file could keep a walk busy for ever and fill the memory; a file that has been walked through many
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

}  // namespace corvenna
