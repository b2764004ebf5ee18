#pragma once

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "directplay/peers.h"
#include "directplay/system_sockets.h"
#include "link/directplay/wire_frame.h"
#include "link/directplay/wire_messages.h"

namespace corvenna::directplay {

/// One end of a stream of bytes. Closed with its last owner.
class RawStream {
  public:
    explicit RawStream(SystemSocket socket) : socket_(socket) {}
    ~RawStream();
    RawStream(const RawStream&) = delete;
    RawStream& operator=(const RawStream&) = delete;

    SystemSocket Socket() const { return socket_; }

    /// False when the other side has ended the stream.
    bool Sends(ByteSpan bytes) const;

    /// Ends the stream as a program does that is killed.
    void Resets();

    /// Waits until the other side has ended the stream; false when it never does.
    bool IsEndedByTheOther() const;

  private:
    SystemSocket socket_;
};

/// A participant of bare sockets on this computer, who sends what no other would. It waits for everything
/// that it reads, and throws when that does not come.
class RawPeer {
  public:
    RawPeer();
    ~RawPeer();
    RawPeer(const RawPeer&) = delete;
    RawPeer& operator=(const RawPeer&) = delete;

    Endpoint Tcp() const { return {0x7F000001, tcpPort_}; }
    Endpoint Udp() const { return {0x7F000001, udpPort_}; }

    /// A connection of one's own to a port.
    static std::unique_ptr<RawStream> Connects(std::uint16_t port);

    /// Sends bytes over the one connection to a port.
    bool SendsTo(std::uint16_t port, ByteSpan bytes);
    bool Tells(std::uint16_t port, const SystemMessage& message);
    bool Says(std::uint16_t port, std::uint32_t from, std::uint32_t to, const std::string& text);
    void SendsDatagram(std::uint16_t port, ByteSpan bytes) const;
    bool IsCutOffBy(std::uint16_t port);

    /// Waits for a message of a kind over the connections that others made; all before it are forgotten.
    template <class Message>
    Message Gets() {
        for (;;) {
            const Bytes frame = NextFrame();
            const Incoming incoming = SortFrame(frame);
            if (incoming.What != Incoming::Kind::System) continue;
            const DecodedMessage decoded = DecodeSystemMessage(incoming.Body);
            if (const auto* message = std::get_if<Message>(&decoded.Message)) return *message;
        }
    }

    /// Waits for a search by datagram, and answers it as the host of a session.
    void AnswersSearch(const SessionDescription& description, const std::u16string& name);

    /// Comes into a session in the proper way, with a player that the host and others are told of.
    void Joins(const Peer& host, const std::u16string& name, const std::vector<std::uint16_t>& others = {});

    std::uint32_t Id() const { return id_; }
    std::uint32_t PlayerId() const { return playerId_; }
    PackedPlayer Record(std::uint32_t flags) const;
    CreateMember Announcement(const std::u16string& name) const;

    /// Ends everything at once, as a program does that is killed.
    void IsKilled();

  private:
    struct Inbound {
        std::unique_ptr<RawStream> Stream;
        FrameCutter Cutter;
    };

    Bytes NextFrame();
    bool TakeWhatCame();

    SystemSocket listener_ = NoSocket;
    SystemSocket datagrams_ = NoSocket;
    std::uint16_t tcpPort_ = 0;
    std::uint16_t udpPort_ = 0;
    std::map<std::uint16_t, std::unique_ptr<RawStream>> outbound_;
    std::list<Inbound> inbound_;
    std::list<Bytes> frames_;
    std::uint32_t id_ = 0;
    std::uint32_t playerId_ = 0;
};

}  // namespace corvenna::directplay
