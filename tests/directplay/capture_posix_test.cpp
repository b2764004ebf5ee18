#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>

#include "directplay/stage.h"

/// What other people's protocol analyser makes of our messages.
namespace corvenna::directplay {
namespace {

constexpr std::uint8_t TcpProtocol = 6;
constexpr std::uint8_t UdpProtocol = 17;
constexpr Endpoint OwnPlace{0x0A0000FE, 2310};

/// A file of captured packets, as if they had been seen on a network of the Internet protocol.
class Capture {
  public:
    void Add(const Postbook::Sent& sent) { sent.IsDatagram ? AddDatagram(sent) : AddSegments(sent); }

    void Save(const std::string& path) {
        ByteWriter file;
        file.U32(0xA1B2C3D4);  // times in microseconds
        file.U16(2);
        file.U16(4);
        file.Zeros(8);
        file.U32(65535);  // longest packet
        file.U32(101);    // packets begin with their Internet header
        file.Append(packets_.Release());
        const Bytes bytes = file.Release();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

  private:
    void AddDatagram(const Postbook::Sent& sent) {
        ByteWriter packet;
        packet.BigEndianU16(2360);
        packet.BigEndianU16(sent.To.Port);
        packet.BigEndianU16(static_cast<std::uint16_t>(8 + sent.Bytes->size()));
        packet.Zeros(2);  // no checksum
        packet.Append(*sent.Bytes);
        AddPacket(UdpProtocol, sent.To.Ip, packet.Release());
    }

    void AddSegments(const Postbook::Sent& sent) {
        std::uint32_t& sequence = sequences_.try_emplace(sent.To, 1).first->second;
        ByteWriter packet;
        packet.BigEndianU16(static_cast<std::uint16_t>(50000 + sent.To.Ip % 1000));
        packet.BigEndianU16(sent.To.Port);
        packet.BigEndianU32(sequence);
        packet.BigEndianU32(1);
        packet.BigEndianU16(0x5018);  // 20 bytes of header; push and acknowledge
        packet.BigEndianU16(0xFFFF);  // window
        packet.Zeros(4);
        packet.Append(*sent.Bytes);
        sequence += static_cast<std::uint32_t>(sent.Bytes->size());
        AddPacket(TcpProtocol, sent.To.Ip, packet.Release());
    }

    void AddPacket(std::uint8_t protocol, std::uint32_t to, const Bytes& content) {
        const auto size = static_cast<std::uint16_t>(20 + content.size());
        packets_.U32(++time_);
        packets_.U32(0);
        packets_.U32(size);
        packets_.U32(size);
        packets_.BigEndianU16(0x4500);
        packets_.BigEndianU16(size);
        packets_.Zeros(4);
        packets_.U8(64);
        packets_.U8(protocol);
        packets_.Zeros(2);
        packets_.BigEndianU32(OwnPlace.Ip);
        packets_.BigEndianU32(to);
        packets_.Append(content);
    }

    ByteWriter packets_;
    std::uint32_t time_ = 0;
    std::map<Endpoint, std::uint32_t> sequences_;
};

/// The lines that a command prints.
std::vector<std::string> LinesOf(const std::string& command) {
    std::vector<std::string> lines;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return lines;
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr) lines.emplace_back(buffer.data());
    pclose(pipe);
    return lines;
}

/// A host's part of a session: searched, joined by two, a group, a large name, somebody who leaves.
std::vector<Postbook::Sent> SentByAHost() {
    Stage stage;
    stage.Hosts();
    stage.Gets({0x0A000009, 2300}, EnumSessions{});
    const Remote one = stage.Admits(2);
    const Remote two = stage.Admits(3);
    stage.Me.BeginCreateGroup(u"FS61_REFUSE_PARAMS");
    stage.Me.AddPlayerToGroup(stage.Me.LastOutcome().Id, one.PlayerId);
    stage.Me.Send(stage.OwnPlayer, 0, Bytes(40), true);
    stage.Me.Send(stage.OwnPlayer, two.PlayerId, Bytes(40), false);
    stage.GetsDatagram(one, Ping{Command::Ping, one.Id, 99});
    stage.GetsDatagram(Stage::MachineNumber(66, 60), Ping{Command::Ping, 4711, 99});
    Packet packet;
    packet.What = Command::Packet2Data;
    packet.MessageSize = 100;
    packet.Data = Bytes(10);
    stage.Gets(one.Tcp, packet);
    stage.Passes(seconds(60));
    stage.Me.OnUnreachable(one.Tcp, "gone");
    stage.Me.Leave();
    return stage.Net.All;
}

/// A client's part: it searches, joins, meets a newcomer, becomes the host and leaves.
std::vector<Postbook::Sent> SentByAClient() {
    Stage stage;
    stage.Me.Search().Begin({{{0x0A000001, 47624}}, Endpoint{0x0A000001, 47624}, {}, u"Sesam"}, stage.Now);
    stage.Passes(seconds(3));
    stage.Host = Stage::MachineNumber(1, 8);
    stage.OwnId = Stage::IdOfSlot(1);
    stage.Joins();
    const Remote newcomer = Stage::MachineNumber(4, 40);
    stage.Gets(stage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    stage.Gets(newcomer.Tcp, newcomer.Announcement());
    stage.Passes(seconds(40));
    Bytes mistaken(12);
    for (const char c : std::string("play")) mistaken.push_back(static_cast<std::byte>(c));
    stage.Me.Send(stage.OwnPlayer, 0, mistaken, false);
    stage.Gets(stage.Host.Tcp, ChangeMember{Command::DeletePlayer, stage.Host.Id, 0});
    stage.Me.Leave();
    return stage.Net.All;
}

TEST(AnAnalyser, FindsNothingMalformedInWhatWeSend) {
    if (LinesOf("tshark --version 2>/dev/null").empty()) GTEST_SKIP() << "there is no tshark on this system";
    std::vector<Postbook::Sent> all = SentByAHost();
    const std::vector<Postbook::Sent> more = SentByAClient();
    all.insert(all.end(), more.begin(), more.end());
    Capture capture;
    std::size_t systemMessages = 0;
    for (const Postbook::Sent& sent : all) {
        capture.Add(sent);
        const Incoming incoming = sent.IsDatagram ? SortDatagram(*sent.Bytes) : SortFrame(*sent.Bytes);
        if (incoming.What == Incoming::Kind::System) ++systemMessages;
    }
    const std::string path = testing::TempDir() + "corvenna_capture.pcap";
    capture.Save(path);
    const std::string read = "tshark -n -r '" + path + "' -Y ";
    EXPECT_GT(systemMessages, 30u);
    EXPECT_EQ(LinesOf(read + "dplay.dialect.version==14 2>/dev/null").size(), systemMessages);
    // The analyser looks for a body behind YOUAREDEAD, which has none.
    EXPECT_THAT(LinesOf(read + "'_ws.malformed && !(dplay.command == 0x18)' 2>/dev/null"),
                testing::IsEmpty());
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace corvenna::directplay
