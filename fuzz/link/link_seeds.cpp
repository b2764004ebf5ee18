// Writes seeds for the fuzz targets of link/: every message that was seen between others, and some of our
// own.

#include <fmt/format.h>

#include <exception>
#include <filesystem>
#include <fstream>

#include "directplay/hex.h"
#include "directplay/wire_vectors.h"
#include "link/directplay/wire_frame.h"
#include "link/fs_messages.h"

namespace {

using namespace corvenna;
using namespace corvenna::directplay;

/// Numbers the seeds of one target.
class SeedFolder {
  public:
    SeedFolder(const std::filesystem::path& seeds, std::string_view target) : folder_(seeds / target) {
        std::filesystem::create_directories(folder_);
    }

    void Add(ByteSpan seed) {
        std::ofstream file(folder_ / fmt::format("seed{:02}", ++written_), std::ios::binary);
        file.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!file.flush()) throw std::runtime_error("a seed cannot be written");
    }

  private:
    std::filesystem::path folder_;
    int written_ = 0;
};

constexpr std::string_view Seen[] = {
    vectors::V1,  vectors::V2,  vectors::V3,  vectors::V4,  vectors::V5,  vectors::V6,  vectors::V7,
    vectors::V8,  vectors::V9,  vectors::V10, vectors::V11, vectors::V12, vectors::V14, vectors::V15,
    vectors::V16, vectors::V17, vectors::V18, vectors::V19, vectors::V22, vectors::V23, vectors::V24,
    vectors::V25, vectors::V26, vectors::V27, vectors::V28, vectors::V29, vectors::V30, vectors::V31,
    vectors::V32, vectors::V33, vectors::V34, vectors::V35, vectors::V36, vectors::V37, vectors::V38,
    vectors::V39, vectors::V40, vectors::L1,  vectors::L2,  vectors::L3,  vectors::L4,  vectors::L7};

/// Each message alone, as a stream behind the size of its parts, and as a step of a conversation.
void WriteMessages(const std::filesystem::path& seeds) {
    constexpr std::uint8_t frameStep = 1;
    SeedFolder streams(seeds, "frame_reader_fuzz");
    SeedFolder messages(seeds, "system_message_fuzz");
    SeedFolder conversations(seeds, "participant_fuzz");
    ByteWriter everything;
    everything.U8(0);
    for (const std::string_view hex : Seen) {
        const Bytes frame = FromHex(hex);
        const ByteSpan message = ByteSpan(frame).subspan(HeaderSize);
        ByteWriter stream;
        stream.U8(7);
        stream.Append(frame);
        stream.Append(frame);
        streams.Add(stream.Release());
        messages.Add(message);
        for (std::uint8_t source = 0; source < 5; source += 3) {
            everything.U8(frameStep);
            everything.U8(source);
            everything.U16(static_cast<std::uint16_t>(message.size()));
            everything.Append(message);
        }
    }
    Bytes conversation = everything.Release();
    for (const int kind : {0, 1, 2, 3, 4, 8}) {
        conversation[0] = static_cast<std::byte>(kind);
        conversations.Add(conversation);
    }
}

void WriteSimulatorMessages(const std::filesystem::path& seeds) {
    SeedFolder folder(seeds, "fs_messages_fuzz");
    folder.Add(WriteEmpty(MessageId::RequestJoinAsPlayer).Bytes());
    folder.Add(WriteAdmission(MessageId::AdmitPlayer, 1234).Bytes());
    folder.Add(WriteChat("N1 KSEA,1").Bytes());
    folder.Add(WriteAircraft("Cessna Skylane 182S").Bytes());
    for (const std::int32_t id : {MessageId::Position, MessageId::PositionLong}) {
        folder.Add(WritePosition(PackPosition(47.1, -122.3, 3000, 90), id).Bytes());
    }
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) throw std::invalid_argument("usage: link_seeds FOLDER");
    WriteMessages(argv[1]);
    WriteSimulatorMessages(argv[1]);
    return 0;
} catch (const std::exception& failure) {
    fmt::print(stderr, "{}\n", failure.what());
    return 1;
}
