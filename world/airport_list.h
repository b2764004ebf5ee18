#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "world/airport.h"

namespace corvenna {

/// The airports of the world, tens of thousands of them. They are kept as the bytes they have on disk, which
/// takes a fraction of the memory of the unpacked records; a record is unpacked when somebody asks for it.
/// record_stream.h tells how values stand there. Not for use by several threads at a time.
class AirportList {
  public:
    /// The list out of the bytes of a database of `count` airports and the spare record behind them.
    /// Throws DamagedData when they do not hold that many whole records; bytes that follow do not matter.
    static AirportList FromBytes(std::string bytes, std::int32_t count);

    std::int32_t Count() const { return static_cast<std::int32_t>(starts_.size()); }

    /// Puts an airport last. Throws std::length_error when one of its texts is longer than 65535 bytes; the
    /// list is as before then.
    void Add(const Airport& airport);

    /// Takes back the airports from number `count` on.
    void Truncate(std::int32_t count);

    /// The fields of airport number 0 to Count() - 1, arrays aside.
    AirportView Fields(std::int32_t number) const;

    /// The whole record of airport number 0 to Count() - 1.
    Airport Record(std::int32_t number) const;

    /// The last airport of a label (AirportLabel), or -1.
    std::int32_t FindLast(std::string_view label) const;

    /// All records as on disk, one piece behind the other, without the spare one. Valid until the list
    /// changes.
    std::vector<std::string_view> Pieces() const;

    /// The spare record, as on disk.
    static std::string SpareRecord();

    /// Bytes of memory in use.
    std::size_t MemoryInUse() const;

  private:
    struct Place {
        std::size_t Piece;
        std::size_t Offset;
    };

    /// Whole records each. A list of many pieces grows without moving what it has, so that no step of a scan
    /// takes long.
    std::vector<std::string> pieces_;
    std::vector<Place> starts_;  // of each record
};

}  // namespace corvenna
