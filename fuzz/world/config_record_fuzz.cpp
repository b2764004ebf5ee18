#include "fuzz/fuzz_input.h"
#include "world/airport_database.h"
#include "world/errors.h"

/// Any bytes as Corvenna.cfg. What can be read is written back to the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    const std::string_view file = AsText(data, size);
    try {
        const std::string again = ConfigBytes(ConfigFromBytes(file));
        Require(file.starts_with(again), "the record is written as it was read");
    } catch (const DamagedData&) {
        Require(size < 6 || size < 6u + data[0] + 256u * data[1], "a whole record can be read");
    }
    return 0;
}
