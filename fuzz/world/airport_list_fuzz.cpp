#include "fuzz/fuzz_input.h"
#include "world/airport_list.h"
#include "world/errors.h"

/// Any count and any bytes as world_airports.dat. What can be read is written back to the same bytes, and it
/// takes no more memory than a few times those bytes, whatever lengths they declare.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    std::string_view file = AsText(data, size);
    const auto count = static_cast<std::int32_t>(TakeNumber(file, 4));
    try {
        const AirportList airports = AirportList::FromBytes(std::string(file), count);
        Require(airports.Count() == count, "there are as many airports as asked for");
        Require(airports.MemoryInUse() <= 2 * size + 256, "memory follows the bytes that are there");
        AirportList copy;
        for (std::int32_t i = 0; i < airports.Count(); ++i) {
            const Airport airport = airports.Record(i);
            Require(AirportLabel(airport) == AirportLabel(airports.Fields(i)), "both ways give one label");
            Require(airports.FindLast(AirportLabel(airport)) >= i, "an airport is found by its label");
            copy.Add(airport);
        }
        Require(file.starts_with(Joined(copy.Pieces())), "records are written as they were read");
    } catch (const DamagedData&) {
    }
    return 0;
}
