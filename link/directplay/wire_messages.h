#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "link/directplay/wire_structures.h"

/// The system messages of DirectPlay, each as a record, and their form in bytes. Pure, any thread.
namespace corvenna::directplay {

enum class Command : std::uint16_t {
    EnumSessionsReply = 0x01,
    EnumSessions = 0x02,
    EnumPlayersReply = 0x03,
    EnumPlayer = 0x04,
    RequestPlayerId = 0x05,
    RequestGroupId = 0x06,
    RequestPlayerReply = 0x07,
    CreatePlayer = 0x08,
    CreateGroup = 0x09,
    DeletePlayer = 0x0B,
    DeleteGroup = 0x0C,
    AddPlayerToGroup = 0x0D,
    DeletePlayerFromGroup = 0x0E,
    PlayerDataChanged = 0x0F,
    PlayerNameChanged = 0x10,
    GroupDataChanged = 0x11,
    GroupNameChanged = 0x12,
    AddForwardRequest = 0x13,
    Packet = 0x15,
    Ping = 0x16,
    PingReply = 0x17,
    YouAreDead = 0x18,
    PlayerWrapper = 0x19,
    SessionDescChanged = 0x1A,
    AddForwardReply = 0x24,
    Ask4Multicast = 0x25,
    Ask4MulticastGuaranteed = 0x26,
    AddShortcutToGroup = 0x27,
    DeleteGroupFromGroup = 0x28,
    SuperEnumPlayersReply = 0x29,
    Chat = 0x2D,
    AddForward = 0x2E,
    AddForwardAck = 0x2F,
    Packet2Data = 0x30,
    Packet2Ack = 0x31,
    IAmNameServer = 0x35,
    MulticastDelivery = 0x37,
    CreatePlayerVerify = 0x38,
};

using OptionalText = std::optional<std::u16string>;

/// Asks which sessions there are. An application of zeros means any.
struct EnumSessions {
    Guid Application;
    OptionalText Password;
    std::uint32_t Flags = 0;  ///< bits of EnumFlag

    bool operator==(const EnumSessions&) const = default;
};

namespace EnumFlag {
inline constexpr std::uint32_t Available = 0x01;
inline constexpr std::uint32_t All = 0x02;
inline constexpr std::uint32_t PasswordRequired = 0x40;
}  // namespace EnumFlag

struct EnumSessionsReply {
    SessionDescription Description;
    OptionalText Name;

    bool operator==(const EnumSessionsReply&) const = default;
};

/// The host gave the session another name, other flags or other user fields.
struct SessionDescChanged {
    SessionDescription Description;
    OptionalText Name;
    OptionalText Password;

    bool operator==(const SessionDescChanged&) const = default;
};

/// RequestPlayerId or RequestGroupId.
struct RequestId {
    Command What = Command::RequestPlayerId;
    std::uint32_t Flags = 0;  ///< of a player: MemberFlag::System or not

    bool operator==(const RequestId&) const = default;
};

struct RequestPlayerReply {
    std::uint32_t Id = 0;
    bool Secure = false;  ///< the session wants a logon
    std::uint32_t Result = Result::Ok;

    bool operator==(const RequestPlayerReply&) const = default;
};

/// A machine asks to be made known to everybody.
struct AddForwardRequest {
    PackedPlayer Player;
    std::u16string Password;
    std::uint32_t SessionKey = 0;  ///< the session's Reserved1

    bool operator==(const AddForwardRequest&) const = default;
};

/// The host will not have the machine.
struct AddForwardReply {
    std::uint32_t Error = 0;

    bool operator==(const AddForwardReply&) const = default;
};

/// The host tells of a machine that joins.
struct AddForward {
    PackedPlayer Player;

    bool operator==(const AddForward&) const = default;
};

struct AddForwardAck {
    std::uint32_t Id = 0;

    bool operator==(const AddForwardAck&) const = default;
};

/// Everybody in the session, told to who joins: SuperEnumPlayersReply or EnumPlayersReply.
struct NameTable {
    Command What = Command::SuperEnumPlayersReply;
    SessionDescription Description;
    OptionalText Name;
    OptionalText Password;
    std::vector<PackedPlayer> Players;
    std::vector<PackedPlayer> Groups;

    bool operator==(const NameTable&) const = default;
};

/// Asks for the name table without joining.
struct EnumPlayer {
    bool operator==(const EnumPlayer&) const = default;
};

/// CreatePlayer, CreatePlayerVerify or CreateGroup.
struct CreateMember {
    Command What = Command::CreatePlayer;
    PackedPlayer Member;

    bool operator==(const CreateMember&) const = default;
};

/// DeletePlayer, DeleteGroup, AddPlayerToGroup, DeletePlayerFromGroup, AddShortcutToGroup or
/// DeleteGroupFromGroup.
struct ChangeMember {
    Command What = Command::DeletePlayer;
    std::uint32_t PlayerId = 0;
    std::uint32_t GroupId = 0;

    bool operator==(const ChangeMember&) const = default;
};

/// PlayerDataChanged or GroupDataChanged.
struct DataChanged {
    Command What = Command::PlayerDataChanged;
    std::uint32_t Id = 0;
    Bytes Data;

    bool operator==(const DataChanged&) const = default;
};

/// PlayerNameChanged or GroupNameChanged.
struct NameChanged {
    Command What = Command::PlayerNameChanged;
    std::uint32_t Id = 0;
    OptionalText ShortName;
    OptionalText LongName;

    bool operator==(const NameChanged&) const = default;
};

/// A player message that would be taken for a system message if it stood alone.
struct PlayerWrapper {
    std::uint32_t From = 0;
    std::uint32_t To = 0;
    Bytes Payload;

    bool operator==(const PlayerWrapper&) const = default;
};

struct Chat {
    std::uint32_t From = 0;
    std::uint32_t To = 0;
    std::uint32_t Flags = 0;
    OptionalText Text;

    bool operator==(const Chat&) const = default;
};

/// A piece of a larger message, which stands without header: Packet or Packet2Data.
struct Packet {
    Command What = Command::Packet;
    Guid Message;
    std::uint32_t Index = 0;
    std::uint32_t Offset = 0;
    std::uint32_t Count = 0;
    std::uint32_t MessageSize = 0;
    Bytes Data;

    bool operator==(const Packet&) const = default;
};

struct Packet2Ack {
    Guid Message;
    std::uint32_t Index = 0;

    bool operator==(const Packet2Ack&) const = default;
};

/// Ping or PingReply. From is the machine that speaks, in both.
struct Ping {
    Command What = Command::Ping;
    std::uint32_t From = 0;
    std::uint32_t Tick = 0;

    bool operator==(const Ping&) const = default;
};

/// The host does not know the addressee.
struct YouAreDead {
    bool operator==(const YouAreDead&) const = default;
};

/// A machine has become the host.
struct IAmNameServer {
    std::uint32_t To = 0;
    std::uint32_t Host = 0;
    std::uint32_t Flags = 0;
    Bytes Provider;

    bool operator==(const IAmNameServer&) const = default;
};

/// A message for a group, on its way through the host: Ask4Multicast, Ask4MulticastGuaranteed or
/// MulticastDelivery. The message inside stands without header.
struct Multicast {
    Command What = Command::Ask4Multicast;
    std::uint32_t GroupTo = 0;
    std::uint32_t PlayerFrom = 0;
    Bytes Message;

    bool operator==(const Multicast&) const = default;
};

/// Whatever has no record here: logon, voice, what is newer than this system.
struct UnknownMessage {
    std::uint16_t Command = 0;

    bool operator==(const UnknownMessage&) const = default;
};

using SystemMessage =
    std::variant<EnumSessions, EnumSessionsReply, SessionDescChanged, RequestId, RequestPlayerReply,
                 AddForwardRequest, AddForwardReply, AddForward, AddForwardAck, NameTable, EnumPlayer,
                 CreateMember, ChangeMember, DataChanged, NameChanged, PlayerWrapper, Chat, Packet,
                 Packet2Ack, Ping, YouAreDead, IAmNameServer, Multicast, UnknownMessage>;

struct DecodedMessage {
    std::uint16_t Version = OwnVersion;
    SystemMessage Message;
};

/// Reads a message from its "play" on. Bytes behind what the message needs are ignored.
/// Throws WireError for a message that cannot be read.
DecodedMessage DecodeSystemMessage(ByteSpan message);

/// Writes a message from its "play" on; Frame puts the header in front. A message of unknown kind has no
/// form: throws WireError.
Bytes EncodeSystemMessage(const SystemMessage& message, std::uint16_t version = OwnVersion);

}  // namespace corvenna::directplay
