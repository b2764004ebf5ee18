#include "fuzz/fuzz_input.h"
#include "link/directplay/wire_frame.h"

namespace {

using namespace corvenna;
using namespace corvenna::directplay;

/// The frames that a stream is cut into when it comes in parts of a size, and whether it broke off.
std::vector<Bytes> Cut(ByteSpan stream, std::size_t part, bool& brokeOff) {
    std::vector<Bytes> frames;
    FrameCutter cutter;
    try {
        while (!stream.empty()) {
            const std::size_t size = std::min(part, stream.size());
            cutter.Append(stream.first(size));
            stream = stream.subspan(size);
            while (const auto frame = cutter.Next()) {
                Require(frame->size() >= HeaderSize, "a frame has a header");
                Require(FrameSize(ByteReader(*frame).U32()) == frame->size(),
                        "a frame is as long as it says");
                frames.emplace_back(frame->begin(), frame->end());
            }
            cutter.Compact();
        }
    } catch (const WireError&) {
        brokeOff = true;
    }
    return frames;
}

}  // namespace

/// Any bytes as a stream and as a datagram. However a stream is parted on its way, it gives the same frames.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = AsText(data, size);
    const std::size_t part = TakeNumber(input, 1) + 1;
    const ByteSpan stream = std::as_bytes(std::span(input));
    bool brokeOffWhole = false;
    bool brokeOffInParts = false;
    const std::vector<Bytes> whole = Cut(stream, stream.size() + 1, brokeOffWhole);
    const std::vector<Bytes> inParts = Cut(stream, part, brokeOffInParts);
    Require(whole == inParts && brokeOffWhole == brokeOffInParts, "parts on the way change nothing");
    for (const Bytes& frame : whole) {
        try {
            const Incoming incoming = SortFrame(frame);
            Require(incoming.Body.size() == frame.size() - HeaderSize,
                    "behind the header stands the message");
        } catch (const WireError&) {
        }
    }
    try {
        const Incoming incoming = SortDatagram(stream);
        Require(incoming.Body.size() <= stream.size(), "a message is within its datagram");
    } catch (const WireError&) {
    }
    return 0;
}
