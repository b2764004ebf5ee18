#include <algorithm>

#include "link/directplay/wire_frame.h"
#include "link/directplay/wire_messages.h"

/// Every function here gets a reader that stands behind the envelope. Offsets count from "play", 0 means
/// absent.
namespace corvenna::directplay {

namespace {

OptionalText TextAt(const ByteReader& reader, std::uint32_t offset) {
    if (offset == 0) return std::nullopt;
    return reader.At(offset).Text();
}

Bytes Rest(ByteReader reader) {
    const ByteSpan rest = reader.Take(reader.Left());
    return {rest.begin(), rest.end()};
}

SystemMessage ReadEnumSessions(ByteReader& reader, Command) {
    EnumSessions m;
    m.Application = ReadGuid(reader);
    const std::uint32_t password = reader.U32();
    m.Flags = reader.U32();
    m.Password = TextAt(reader, password);
    return m;
}

SystemMessage ReadEnumSessionsReply(ByteReader& reader, Command) {
    EnumSessionsReply m;
    m.Description = ReadSessionDescription(reader);
    m.Name = TextAt(reader, reader.U32());
    return m;
}

SystemMessage ReadSessionDescChanged(ByteReader& reader, Command) {
    SessionDescChanged m;
    reader.Skip(4);  // to
    const std::uint32_t name = reader.U32();
    const std::uint32_t password = reader.U32();
    m.Description = ReadSessionDescription(reader);
    m.Name = TextAt(reader, name);
    m.Password = TextAt(reader, password);
    return m;
}

SystemMessage ReadRequestId(ByteReader& reader, Command what) { return RequestId{what, reader.U32()}; }

SystemMessage ReadRequestPlayerReply(ByteReader& reader, Command) {
    constexpr std::size_t securityDescription = 24;
    RequestPlayerReply m;
    m.Id = reader.U32();
    reader.Skip(securityDescription);
    m.Secure = reader.U32() != 0;
    reader.Skip(4);
    m.Result = reader.U32();
    return m;
}

/// The head that all messages about a player or group have.
struct MemberHead {
    std::uint32_t PlayerId;
    std::uint32_t GroupId;
    std::uint32_t CreateOffset;
    std::uint32_t PasswordOffset;
};

MemberHead ReadMemberHead(ByteReader& reader) {
    reader.Skip(4);  // to
    MemberHead head{};
    head.PlayerId = reader.U32();
    head.GroupId = reader.U32();
    head.CreateOffset = reader.U32();
    head.PasswordOffset = reader.U32();
    return head;
}

/// The id in the head is the one that counts.
PackedPlayer ReadPlayerAt(const ByteReader& reader, const MemberHead& head) {
    ByteReader place = reader.At(head.CreateOffset);
    PackedPlayer player = ReadPackedPlayer(place);
    player.Id = head.PlayerId;
    return player;
}

SystemMessage ReadAddForwardRequest(ByteReader& reader, Command) {
    AddForwardRequest m;
    const MemberHead head = ReadMemberHead(reader);
    m.Player = ReadPlayerAt(reader, head);
    if (head.PasswordOffset == 0) return m;
    ByteReader place = reader.At(head.PasswordOffset);
    m.Password = place.Text();
    if (place.Left() >= 4) m.SessionKey = place.U32();
    return m;
}

SystemMessage ReadAddForwardReply(ByteReader& reader, Command) { return AddForwardReply{reader.U32()}; }

SystemMessage ReadAddForward(ByteReader& reader, Command) {
    const MemberHead head = ReadMemberHead(reader);
    return AddForward{ReadPlayerAt(reader, head)};
}

SystemMessage ReadAddForwardAck(ByteReader& reader, Command) { return AddForwardAck{reader.U32()}; }

SystemMessage ReadNameTable(ByteReader& reader, Command what) {
    NameTable m;
    m.What = what;
    const std::uint32_t playerCount = reader.U32();
    const std::uint32_t groupCount = reader.U32();
    const std::uint32_t records = reader.U32();
    reader.Skip(4);  // the count of shortcuts, which some senders leave to chance
    const std::uint32_t description = reader.U32();
    const std::uint32_t name = reader.U32();
    const std::uint32_t password = reader.U32();
    ByteReader place = reader.At(description);
    m.Description = ReadSessionDescription(place);
    m.Name = TextAt(reader, name);
    m.Password = TextAt(reader, password);

    // Each record takes bytes, so the loops end with the message whatever the counts say.
    const auto read = what == Command::EnumPlayersReply ? &ReadPackedPlayer : &ReadSuperPackedPlayer;
    place = reader.At(records);
    for (std::uint32_t i = 0; i < playerCount; ++i) m.Players.push_back(read(place));
    for (std::uint32_t i = 0; i < groupCount; ++i) m.Groups.push_back(read(place));
    return m;
}

SystemMessage ReadEnumPlayer(ByteReader&, Command) { return EnumPlayer{}; }

SystemMessage ReadCreateMember(ByteReader& reader, Command what) {
    const MemberHead head = ReadMemberHead(reader);
    return CreateMember{what, ReadPlayerAt(reader, head)};
}

SystemMessage ReadChangeMember(ByteReader& reader, Command what) {
    reader.Skip(4);  // to
    ChangeMember m{what, 0, 0};
    m.PlayerId = reader.U32();
    m.GroupId = reader.U32();
    return m;
}

SystemMessage ReadDataChanged(ByteReader& reader, Command what) {
    reader.Skip(4);  // to
    DataChanged m{what, 0, {}};
    m.Id = reader.U32();
    const std::uint32_t size = reader.U32();
    const std::uint32_t offset = reader.U32();
    if (size == 0) return m;
    const ByteSpan data = reader.At(offset).Take(size);
    m.Data.assign(data.begin(), data.end());
    return m;
}

SystemMessage ReadNameChanged(ByteReader& reader, Command what) {
    reader.Skip(4);  // to
    NameChanged m{what, 0, {}, {}};
    m.Id = reader.U32();
    const std::uint32_t shortName = reader.U32();
    const std::uint32_t longName = reader.U32();
    m.ShortName = TextAt(reader, shortName);
    m.LongName = TextAt(reader, longName);
    return m;
}

SystemMessage ReadPlayerWrapper(ByteReader& reader, Command) {
    PlayerWrapper m;
    m.From = reader.U32();
    m.To = reader.U32();
    m.Payload = Rest(reader);
    return m;
}

SystemMessage ReadChat(ByteReader& reader, Command) {
    Chat m;
    m.From = reader.U32();
    m.To = reader.U32();
    m.Flags = reader.U32();
    m.Text = TextAt(reader, reader.U32());
    return m;
}

SystemMessage ReadPacket(ByteReader& reader, Command what) {
    Packet m;
    m.What = what;
    m.Message = ReadGuid(reader);
    m.Index = reader.U32();
    const std::uint32_t size = reader.U32();
    m.Offset = reader.U32();
    m.Count = reader.U32();
    m.MessageSize = reader.U32();
    const ByteSpan data = reader.At(reader.U32()).Take(size);
    m.Data.assign(data.begin(), data.end());
    return m;
}

SystemMessage ReadPacket2Ack(ByteReader& reader, Command) {
    Packet2Ack m;
    m.Message = ReadGuid(reader);
    m.Index = reader.U32();
    return m;
}

SystemMessage ReadPing(ByteReader& reader, Command what) {
    Ping m{what, 0, 0};
    m.From = reader.U32();
    m.Tick = reader.U32();
    return m;
}

SystemMessage ReadYouAreDead(ByteReader&, Command) { return YouAreDead{}; }

/// The provider's data follows its size directly: there is no offset.
SystemMessage ReadIAmNameServer(ByteReader& reader, Command) {
    IAmNameServer m;
    m.To = reader.U32();
    m.Host = reader.U32();
    m.Flags = reader.U32();
    const ByteSpan provider = reader.Take(reader.U32());
    m.Provider.assign(provider.begin(), provider.end());
    return m;
}

SystemMessage ReadMulticast(ByteReader& reader, Command what) {
    Multicast m;
    m.What = what;
    m.GroupTo = reader.U32();
    m.PlayerFrom = reader.U32();
    m.Message = Rest(reader.At(reader.U32()));
    return m;
}

struct ReaderRow {
    Command What;
    SystemMessage (*Read)(ByteReader&, Command);
};

constexpr ReaderRow Readers[] = {
    {Command::EnumSessionsReply, &ReadEnumSessionsReply},
    {Command::EnumSessions, &ReadEnumSessions},
    {Command::EnumPlayersReply, &ReadNameTable},
    {Command::EnumPlayer, &ReadEnumPlayer},
    {Command::RequestPlayerId, &ReadRequestId},
    {Command::RequestGroupId, &ReadRequestId},
    {Command::RequestPlayerReply, &ReadRequestPlayerReply},
    {Command::CreatePlayer, &ReadCreateMember},
    {Command::CreateGroup, &ReadCreateMember},
    {Command::DeletePlayer, &ReadChangeMember},
    {Command::DeleteGroup, &ReadChangeMember},
    {Command::AddPlayerToGroup, &ReadChangeMember},
    {Command::DeletePlayerFromGroup, &ReadChangeMember},
    {Command::PlayerDataChanged, &ReadDataChanged},
    {Command::PlayerNameChanged, &ReadNameChanged},
    {Command::GroupDataChanged, &ReadDataChanged},
    {Command::GroupNameChanged, &ReadNameChanged},
    {Command::AddForwardRequest, &ReadAddForwardRequest},
    {Command::Packet, &ReadPacket},
    {Command::Ping, &ReadPing},
    {Command::PingReply, &ReadPing},
    {Command::YouAreDead, &ReadYouAreDead},
    {Command::PlayerWrapper, &ReadPlayerWrapper},
    {Command::SessionDescChanged, &ReadSessionDescChanged},
    {Command::AddForwardReply, &ReadAddForwardReply},
    {Command::Ask4Multicast, &ReadMulticast},
    {Command::Ask4MulticastGuaranteed, &ReadMulticast},
    {Command::AddShortcutToGroup, &ReadChangeMember},
    {Command::DeleteGroupFromGroup, &ReadChangeMember},
    {Command::SuperEnumPlayersReply, &ReadNameTable},
    {Command::Chat, &ReadChat},
    {Command::AddForward, &ReadAddForward},
    {Command::AddForwardAck, &ReadAddForwardAck},
    {Command::Packet2Data, &ReadPacket},
    {Command::Packet2Ack, &ReadPacket2Ack},
    {Command::IAmNameServer, &ReadIAmNameServer},
    {Command::MulticastDelivery, &ReadMulticast},
    {Command::CreatePlayerVerify, &ReadCreateMember},
};

}  // namespace

DecodedMessage DecodeSystemMessage(ByteSpan message) {
    ByteReader reader(message);
    if (reader.U32() != Signature) throw WireError("a system message without its signature");
    const std::uint16_t command = reader.U16();
    DecodedMessage decoded{reader.U16(), UnknownMessage{command}};
    const auto* row = std::find_if(std::begin(Readers), std::end(Readers), [&](const ReaderRow& r) {
        return static_cast<std::uint16_t>(r.What) == command;
    });
    if (row != std::end(Readers)) decoded.Message = row->Read(reader, row->What);
    return decoded;
}

}  // namespace corvenna::directplay
