#pragma once

#include <string>
#include <variant>
#include <vector>

#include "link/directplay/participant.h"

namespace corvenna::directplay {

/// Sockets that only write down what they are told.
class Postbook final : public Network {
  public:
    struct Sent {
        Endpoint To;
        bool IsDatagram = false;
        SharedBytes Bytes;
    };

    std::uint16_t TcpPort() const override { return 2310; }
    std::uint16_t UdpPort() const override { return 2360; }
    void SendFrame(const Endpoint& tcp, SharedBytes frame) override { All.push_back({tcp, false, frame}); }
    void SendDatagram(const Endpoint& udp, SharedBytes datagram) override {
        All.push_back({udp, true, datagram});
    }
    void Disconnect(const Endpoint& tcp) override { Disconnected.push_back(tcp); }
    void CutOff(const Endpoint& tcp) override { WereCutOff.push_back(tcp); }
    void Probe(const Endpoint& tcp) override { Probed.push_back(tcp); }
    bool OpenNameServerPorts() override { return PortsAreFree; }

    /// All messages of a kind that went to a place, by frame or by datagram.
    template <class Message>
    std::vector<Message> To(const Endpoint& place) const {
        std::vector<Message> messages;
        for (const Sent& sent : All) {
            if (sent.To != place) continue;
            const Incoming incoming = sent.IsDatagram ? SortDatagram(*sent.Bytes) : SortFrame(*sent.Bytes);
            if (incoming.What != Incoming::Kind::System) continue;
            const DecodedMessage decoded = DecodeSystemMessage(incoming.Body);
            if (const auto* message = std::get_if<Message>(&decoded.Message)) messages.push_back(*message);
        }
        return messages;
    }

    std::vector<Sent> All;
    std::vector<Endpoint> Disconnected;
    std::vector<Endpoint> WereCutOff;
    std::vector<Endpoint> Probed;
    bool PortsAreFree = true;
};

/// A remote machine as it stands in messages.
struct Remote {
    Endpoint Tcp;
    Endpoint Udp;
    std::uint32_t Id = 0;
    std::uint32_t PlayerId = 0;

    PackedPlayer Record(std::uint32_t flags = MemberFlag::System | MemberFlag::OfSender) const {
        PackedPlayer record;
        record.Flags = flags;
        record.Id = record.SystemPlayerId = Id;
        record.Provider = EncodeServiceProviderData({{0, Tcp.Port}, {0, Udp.Port}});
        return record;
    }

    /// Its record as the host tells it to the others.
    PackedPlayer RecordWithPlace() const {
        PackedPlayer record = Record(MemberFlag::System | MemberFlag::InGroup);
        record.Provider = EncodeServiceProviderData({Tcp, Udp});
        return record;
    }

    CreateMember Announcement(std::u16string name = u"Pilot") const {
        CreateMember message;
        message.Member.Flags = MemberFlag::OfSender;
        message.Member.Id = PlayerId;
        message.Member.ShortName = std::move(name);
        message.Member.SystemPlayerId = Id;
        message.Member.Provider = EncodeServiceProviderData({{0, Tcp.Port}, {0, Udp.Port}});
        return message;
    }
};

/// One participant without sockets, and a clock that stands still until it is moved.
struct Stage {
    static constexpr std::uint32_t Key = 0x00A50000;

    /// The id of a slot at its first use.
    static constexpr std::uint32_t IdOfSlot(std::uint32_t slot) { return (0x00010000 | slot) ^ Key; }

    /// A machine in a network of its own, with the ids of two slots.
    static Remote MachineNumber(std::uint32_t number, std::uint32_t slot) {
        const std::uint32_t ip = 0x0A000000 + number;
        return {{ip, 2300}, {ip, 2350}, IdOfSlot(slot), IdOfSlot(slot + 1)};
    }

    explicit Stage(Limits bounds = {}) : Bounds(bounds) { Me.Advance(Now); }

    void Passes(milliseconds time) {
        Now += time;
        Me.Advance(Now);
    }

    void Gets(const Endpoint& from, const SystemMessage& message) {
        Me.Advance(Now);
        Me.OnFrame(from.Ip, Frame(from.Port, EncodeSystemMessage(message)));
    }

    void GetsDatagram(const Remote& from, const SystemMessage& message) {
        Me.Advance(Now);
        Me.OnDatagram(from.Udp, Frame(from.Tcp.Port, EncodeSystemMessage(message)));
    }

    static Bytes PlayerMessage(std::uint32_t from, std::uint32_t to, std::size_t size = 8) {
        ByteWriter writer;
        writer.U32(from);
        writer.U32(to);
        writer.Zeros(size);
        return writer.Release();
    }

    void Hears(const Remote& by, std::uint32_t from, std::uint32_t to, std::size_t size = 8) {
        Me.Advance(Now);
        Me.OnFrame(by.Tcp.Ip, Frame(by.Tcp.Port, PlayerMessage(from, to, size)));
    }

    void HearsDatagram(const Remote& by, std::uint32_t from, std::uint32_t to) {
        Me.Advance(Now);
        Me.OnDatagram(by.Udp, PlayerMessage(from, to));
    }

    // ---- As a host

    /// Opens a session with a player of one's own.
    void Hosts(std::uint32_t flags = SessionFlag::MigrateHost | SessionFlag::KeepAlive) {
        SessionDescription description;
        description.Flags = flags;
        description.Reserved1 = Key;
        Me.Host(description, u"Test", {});
        Me.BeginCreatePlayer(u"Host", u"Player");
        OwnPlayer = Me.LastOutcome().Id;
    }

    /// A machine comes in by the door, with a player.
    Remote Admits(std::uint32_t number) {
        Remote remote = MachineNumber(number, 0);
        Gets(remote.Tcp, RequestId{Command::RequestPlayerId, MemberFlag::System | MemberFlag::OfSender});
        remote.Id = Net.To<RequestPlayerReply>(remote.Tcp).back().Id;
        Gets(remote.Tcp, AddForwardRequest{remote.Record(), {}, Key});
        for (const Remote& other : Guests) Gets(other.Tcp, AddForwardAck{remote.Id});
        Gets(remote.Tcp, RequestId{Command::RequestPlayerId, MemberFlag::OfSender});
        remote.PlayerId = Net.To<RequestPlayerReply>(remote.Tcp).back().Id;
        Gets(remote.Tcp, remote.Announcement());
        Guests.push_back(remote);
        return remote;
    }

    // ---- As a client

    /// Has asked to be let in and waits for the name table.
    void Knocks(std::uint32_t flags = SessionFlag::MigrateHost | SessionFlag::KeepAlive) {
        FoundSession session;
        session.Description.Flags = flags;
        session.Description.Reserved1 = Key;
        session.Host = Host.Tcp;
        Me.BeginJoin(session, {});
        RequestPlayerReply reply;
        reply.Id = OwnId;
        Gets(Host.Tcp, reply);
    }

    NameTable Table(std::uint32_t flags = SessionFlag::MigrateHost | SessionFlag::KeepAlive) const {
        NameTable table;
        table.Description.Flags = flags;
        table.Description.Reserved1 = Key;
        table.Name = u"Test";
        table.Players.push_back(Host.Record(MemberFlag::System | MemberFlag::NameServer));
        table.Players.push_back(Host.Announcement(u"Host").Member);
        for (const Remote& guest : Guests) {
            table.Players.push_back(guest.RecordWithPlace());
            table.Players.push_back(guest.Announcement(u"Guest").Member);
        }
        return table;
    }

    /// Is in the session of Host, among Guests, with a player of one's own.
    void Joins(std::uint32_t flags = SessionFlag::MigrateHost | SessionFlag::KeepAlive) {
        Knocks(flags);
        Gets(Host.Tcp, Table(flags));
        Me.BeginCreatePlayer(u"Tower", u"Player");
        RequestPlayerReply reply;
        reply.Id = OwnPlayer = OwnId + 1;
        Gets(Host.Tcp, reply);
    }

    std::vector<std::uint32_t> PlayerIds() const {
        std::vector<std::uint32_t> ids;
        for (const Player& player : Me.Everybody().Players) ids.push_back(player.Id);
        return ids;
    }

    Limits Bounds;
    Timing Times;
    TimePoint Now{std::chrono::hours(1)};
    Postbook Net;
    Participant Me{Net, Bounds, Times};
    Remote Host = MachineNumber(1, 0);
    std::vector<Remote> Guests;
    std::uint32_t OwnId = IdOfSlot(20);
    std::uint32_t OwnPlayer = 0;
};

}  // namespace corvenna::directplay
