#include "fuzz/fuzz_input.h"
#include "link/fs_messages.h"

namespace {

using namespace corvenna;

void Read(DirectPlayMessage& message) {
    const MessageHeader header = ReadHeader(message);
    switch (header.Id) {
        case MessageId::Position:
        case MessageId::PositionLong: {
            const PositionReport report = ReadPosition(message, header.Id);
            DirectPlayMessage written = WritePosition(report, header.Id);
            ReadHeader(written);
            Require(ReadPosition(written, header.Id) == report, "a position is the same after writing");
            Require(report.LatitudeDegrees() == report.LatitudeDegrees(), "a latitude is a number");
            report.AltitudeFeet();
            break;
        }
        case MessageId::Aircraft:
            Require(ReadAircraft(message, header.PayloadSize).find('\0') == std::string::npos,
                    "no zero bytes");
            break;
        case MessageId::Chat:
            if (header.PayloadSize <= 1) return;
            Require(ReadChat(message, header.PayloadSize).find('\0') == std::string::npos, "no zero bytes");
            break;
        default:
            break;
    }
}

}  // namespace

/// Any bytes as a message of the simulator.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DirectPlayMessage message(std::as_bytes(std::span(data, size)));
    try {
        Read(message);
    } catch (const MessageError&) {
    } catch (const std::overflow_error&) {
    }
    return 0;
}
