#include "fuzz/fuzz_input.h"
#include "link/directplay/wire_messages.h"

/// Any bytes as a system message. One that can be read means the same after it has been written and read
/// again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    using namespace corvenna::directplay;
    try {
        const DecodedMessage read = DecodeSystemMessage(std::as_bytes(std::span(data, size)));
        if (std::holds_alternative<UnknownMessage>(read.Message)) return 0;
        const Bytes written = EncodeSystemMessage(read.Message, read.Version);
        const DecodedMessage again = DecodeSystemMessage(written);
        Require(again.Version == read.Version, "the version word stays");
        Require(EncodeSystemMessage(again.Message, again.Version) == written,
                "the second writing is the first");
        if (!std::holds_alternative<NameTable>(read.Message)) {
            Require(again.Message == read.Message, "a message means the same after writing and reading");
        }
    } catch (const WireError&) {
    }
    return 0;
}
