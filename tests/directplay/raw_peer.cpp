#include "directplay/raw_peer.h"

#include <stdexcept>

namespace corvenna::directplay {

namespace {

constexpr int PatienceMilliseconds = static_cast<int>(std::chrono::milliseconds(Patience).count());

/// So little room that a reader who does not read is soon noticed.
constexpr int ReceiveBufferBytes = 4096;

sockaddr_in ThisComputer(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void Check(int result, const char* what) {
    if (result < 0) throw std::runtime_error(what);
}

std::uint16_t BindAnywhere(SystemSocket socket) {
    sockaddr_in address = ThisComputer(0);
    Check(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), "bind");
    socklen_t size = sizeof(address);
    Check(getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
    return ntohs(address.sin_port);
}

bool HasSomethingSoon(SystemSocket socket) {
    PollEntry wanted{socket, POLLIN, 0};
    return Poll({&wanted, 1}, PatienceMilliseconds) > 0;
}

}  // namespace

RawStream::~RawStream() {
    if (socket_ != NoSocket) CloseSocket(socket_);
}

bool RawStream::Sends(ByteSpan bytes) const {
    while (!bytes.empty()) {
        const int sent = SendBytes(socket_, bytes);
        if (sent <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(sent));
    }
    return true;
}

void RawStream::Resets() {
    const linger atOnce{1, 0};
    SetSocketOption(socket_, SO_LINGER, atOnce);
    CloseSocket(socket_);
    socket_ = NoSocket;
}

bool RawStream::IsEndedByTheOther() const {
    std::byte byte{};
    for (;;) {
        if (!HasSomethingSoon(socket_)) return false;
        if (ReceiveBytes(socket_, {&byte, 1}) <= 0) return true;
    }
}

RawPeer::RawPeer() {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    datagrams_ = socket(AF_INET, SOCK_DGRAM, 0);
    SetSocketOption(listener_, SO_RCVBUF, ReceiveBufferBytes);
    tcpPort_ = BindAnywhere(listener_);
    udpPort_ = BindAnywhere(datagrams_);
    Check(listen(listener_, SOMAXCONN), "listen");
}

RawPeer::~RawPeer() {
    if (listener_ != NoSocket) CloseSocket(listener_);
    if (datagrams_ != NoSocket) CloseSocket(datagrams_);
}

std::unique_ptr<RawStream> RawPeer::Connects(std::uint16_t port) {
    auto stream = std::make_unique<RawStream>(socket(AF_INET, SOCK_STREAM, 0));
    const sockaddr_in address = ThisComputer(port);
    Check(connect(stream->Socket(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), "connect");
    return stream;
}

bool RawPeer::SendsTo(std::uint16_t port, ByteSpan bytes) {
    auto& stream = outbound_[port];
    if (!stream) stream = Connects(port);
    return stream->Sends(bytes);
}

bool RawPeer::Tells(std::uint16_t port, const SystemMessage& message) {
    return SendsTo(port, Frame(tcpPort_, EncodeSystemMessage(message)));
}

bool RawPeer::Says(std::uint16_t port, std::uint32_t from, std::uint32_t to, const std::string& text) {
    ByteWriter writer;
    writer.U32(from);
    writer.U32(to);
    for (const char c : text) writer.U8(static_cast<std::uint8_t>(c));
    return SendsTo(port, Frame(tcpPort_, writer.Release()));
}

void RawPeer::SendsDatagram(std::uint16_t port, ByteSpan bytes) const {
    SendDatagram(datagrams_, bytes, ThisComputer(port));
}

bool RawPeer::IsCutOffBy(std::uint16_t port) {
    auto& stream = outbound_[port];
    if (!stream) stream = Connects(port);
    return stream->IsEndedByTheOther();
}

Bytes RawPeer::NextFrame() {
    while (frames_.empty()) {
        if (!TakeWhatCame()) throw std::runtime_error("nothing comes");
    }
    Bytes frame = std::move(frames_.front());
    frames_.pop_front();
    return frame;
}

/// Waits for whatever comes first: a connection, bytes, or the end of a connection.
bool RawPeer::TakeWhatCame() {
    std::vector<PollEntry> sockets{{listener_, POLLIN, 0}};
    for (const Inbound& inbound : inbound_) sockets.push_back({inbound.Stream->Socket(), POLLIN, 0});
    if (Poll(sockets, PatienceMilliseconds) <= 0) return false;
    auto inbound = inbound_.begin();
    for (std::size_t i = 1; i < sockets.size(); ++i) {
        const auto current = inbound++;
        if (sockets[i].revents == 0) continue;
        std::array<std::byte, 4096> buffer{};
        const int size = ReceiveBytes(sockets[i].fd, buffer);
        if (size <= 0) {
            inbound_.erase(current);
            continue;
        }
        current->Cutter.Append(ByteSpan(buffer).first(static_cast<std::size_t>(size)));
        while (const auto frame = current->Cutter.Next()) frames_.emplace_back(frame->begin(), frame->end());
    }
    if (sockets[0].revents != 0) {
        inbound_.push_back({std::make_unique<RawStream>(accept(listener_, nullptr, nullptr)), {}});
    }
    return true;
}

void RawPeer::AnswersSearch(const SessionDescription& description, const std::u16string& name) {
    std::array<std::byte, 2048> buffer{};
    if (!HasSomethingSoon(datagrams_)) throw std::runtime_error("nobody searches");
    const int size = ReceiveBytes(datagrams_, buffer);
    Check(size, "recv");
    const Incoming incoming = SortDatagram(ByteSpan(buffer).first(static_cast<std::size_t>(size)));
    EnumSessionsReply reply{description, std::nullopt};
    reply.Name = name;
    Tells(incoming.Port, reply);
}

PackedPlayer RawPeer::Record(std::uint32_t flags) const {
    PackedPlayer record;
    record.Flags = flags;
    record.Id = record.SystemPlayerId = id_;
    record.Provider = EncodeServiceProviderData({{0, tcpPort_}, {0, udpPort_}});
    return record;
}

CreateMember RawPeer::Announcement(const std::u16string& name) const {
    CreateMember message;
    message.Member = Record(MemberFlag::OfSender);
    message.Member.Id = playerId_;
    message.Member.ShortName = name;
    return message;
}

void RawPeer::Joins(const Peer& host, const std::u16string& name, const std::vector<std::uint16_t>& others) {
    const std::uint16_t port = host.Dp.TcpPort();
    constexpr std::uint32_t own = MemberFlag::OfSender;
    Tells(port, RequestId{Command::RequestPlayerId, MemberFlag::System | own});
    id_ = Gets<RequestPlayerReply>().Id;
    Tells(port, AddForwardRequest{Record(MemberFlag::System | own), {}, 0});
    Gets<NameTable>();
    Tells(port, RequestId{Command::RequestPlayerId, own});
    playerId_ = Gets<RequestPlayerReply>().Id;
    Tells(port, Announcement(name));
    for (const std::uint16_t other : others) Tells(other, Announcement(name));
}

void RawPeer::IsKilled() {
    CloseSocket(listener_);  // first, so that whoever looks after it finds nobody
    CloseSocket(datagrams_);
    listener_ = datagrams_ = NoSocket;
    for (auto& [port, stream] : outbound_) stream->Resets();
    for (Inbound& inbound : inbound_) inbound.Stream->Resets();
    outbound_.clear();
    inbound_.clear();
}

}  // namespace corvenna::directplay
