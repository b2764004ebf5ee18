#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "link/directplay/endpoint.h"
#include "link/directplay/guid.h"
#include "link/directplay/wire_bytes.h"

/// The records that several messages share. Pure, any thread. Readers throw WireError.
namespace corvenna::directplay {

/// The version word of all that this system sends: the newest of the protocol. Reading never depends on it.
inline constexpr std::uint16_t OwnVersion = 14;
/// From this version on a machine understands CREATEPLAYERVERIFY.
inline constexpr std::uint16_t VerifyingVersion = 13;

/// Bits of PackedPlayer::Flags.
namespace MemberFlag {
inline constexpr std::uint32_t System = 0x01;
inline constexpr std::uint32_t NameServer = 0x02;
inline constexpr std::uint32_t InGroup = 0x04;
inline constexpr std::uint32_t OfSender = 0x08;  ///< lives on the machine that sends the record
}  // namespace MemberFlag

/// Bits of SessionDescription::Flags, as far as they matter to a participant.
namespace SessionFlag {
inline constexpr std::uint32_t NewPlayersDisabled = 0x00001;
inline constexpr std::uint32_t MigrateHost = 0x00004;
inline constexpr std::uint32_t NoMessageId = 0x00008;
inline constexpr std::uint32_t JoinDisabled = 0x00020;
inline constexpr std::uint32_t KeepAlive = 0x00040;
inline constexpr std::uint32_t SecureServer = 0x00100;
inline constexpr std::uint32_t Private = 0x00200;
inline constexpr std::uint32_t PasswordRequired = 0x00400;
inline constexpr std::uint32_t MulticastServer = 0x00800;
inline constexpr std::uint32_t ClientServer = 0x01000;
inline constexpr std::uint32_t DirectPlayProtocol = 0x02000;
}  // namespace SessionFlag

/// Results as they travel in replies.
namespace Result {
inline constexpr std::uint32_t Ok = 0;
inline constexpr std::uint32_t CantCreatePlayer = 0x8877003C;
inline constexpr std::uint32_t NoNewPlayers = 0x8877014A;
inline constexpr std::uint32_t InvalidPassword = 0x88770154;
}  // namespace Result

/// What a result means, in words for the operator; the number for one that is not known.
std::string ResultText(std::uint32_t result);

/// Ids that no host gives out.
inline constexpr std::uint32_t EverybodyId = 0;
inline constexpr std::uint32_t ServerPlayerId = 1;
inline constexpr std::uint32_t UnknownId = 0xFFFFFFFF;

constexpr bool IsGivenOut(std::uint32_t id) { return id != EverybodyId && id != UnknownId; }

/// The ports of a machine. An address of 0.0.0.0 means the one that the record came from.
struct ServiceProviderData {
    static constexpr std::size_t Size = 32;

    Endpoint Tcp;
    Endpoint Udp;

    bool operator==(const ServiceProviderData&) const = default;
};

/// Nothing for data of another length than Size.
std::optional<ServiceProviderData> ParseServiceProviderData(ByteSpan bytes);
Bytes EncodeServiceProviderData(const ServiceProviderData& data);

struct SessionDescription {
    static constexpr std::uint32_t Size = 80;

    std::uint32_t Flags = 0;
    Guid Instance;
    Guid Application;
    std::uint32_t MaxPlayers = 0;      ///< 0: no limit
    std::uint32_t CurrentPlayers = 0;  ///< without system players
    std::uint32_t Reserved1 = 0;       ///< the key of the session's ids
    std::array<std::uint32_t, 4> User{};

    bool operator==(const SessionDescription&) const = default;
};

/// A player or a group as it stands in messages.
struct PackedPlayer {
    std::uint32_t Flags = 0;
    std::uint32_t Id = 0;
    std::optional<std::u16string> ShortName;
    std::optional<std::u16string> LongName;
    Bytes Provider;
    Bytes Data;
    std::vector<std::uint32_t> Members;  ///< of a group
    std::uint32_t SystemPlayerId = 0;    ///< the machine it lives on; its own id for a system player
    std::uint32_t Version = OwnVersion;
    std::uint32_t ParentId = 0;

    bool operator==(const PackedPlayer&) const = default;
    bool IsSystem() const { return (Flags & MemberFlag::System) != 0; }
};

Guid ReadGuid(ByteReader& reader);
void WriteGuid(ByteWriter& writer, const Guid& guid);

/// Pointers in the record are never looked at: they are the sender's memory.
SessionDescription ReadSessionDescription(ByteReader& reader);
void WriteSessionDescription(ByteWriter& writer, const SessionDescription& description);

/// The form with all lengths in front.
PackedPlayer ReadPackedPlayer(ByteReader& reader);
void WritePackedPlayer(ByteWriter& writer, const PackedPlayer& player);

/// The form of the name table, in which a mask says what is there. It does not tell the version of an
/// ordinary player.
PackedPlayer ReadSuperPackedPlayer(ByteReader& reader);
void WriteSuperPackedPlayer(ByteWriter& writer, const PackedPlayer& player);

}  // namespace corvenna::directplay
