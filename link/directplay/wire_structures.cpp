#include "link/directplay/wire_structures.h"

#include <fmt/format.h>

#include <algorithm>

namespace corvenna::directplay {

namespace {

constexpr std::uint16_t InternetFamily = 2;
constexpr std::size_t SocketAddressPadding = 8;

constexpr std::uint32_t PackedFixedSize = 48;

/// The size that a record of the name table claims: its fifth word is not counted.
constexpr std::uint32_t SuperPackedSize = 16;

/// Places in the mask of the name table's records.
constexpr std::uint32_t ShortNameBit = 1;
constexpr std::uint32_t LongNameBit = 2;
constexpr int ProviderShift = 2;
constexpr int DataShift = 4;
constexpr int MembersShift = 6;
constexpr std::uint32_t ParentBit = 0x100;
constexpr int ShortcutsShift = 9;

Endpoint ReadSocketAddress(ByteReader& reader) {
    reader.Skip(2);  // the family
    Endpoint endpoint;
    endpoint.Port = reader.BigEndianU16();
    endpoint.Ip = reader.BigEndianU32();
    reader.Skip(SocketAddressPadding);
    return endpoint;
}

void WriteSocketAddress(ByteWriter& writer, const Endpoint& endpoint) {
    writer.U16(InternetFamily);
    writer.BigEndianU16(endpoint.Port);
    writer.BigEndianU32(endpoint.Ip);
    writer.Zeros(SocketAddressPadding);
}

Bytes Copy(ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

/// A text in a field of its own length; what stands behind its NUL is ignored.
std::optional<std::u16string> ReadTextField(ByteReader& reader, std::size_t length) {
    const ByteSpan field = reader.Take(length);
    if (length == 0) return std::nullopt;
    return ByteReader(field).Text();
}

std::uint32_t TextLength(const std::optional<std::u16string>& text) {
    return text ? static_cast<std::uint32_t>((text->size() + 1) * 2) : 0;
}

void WriteText(ByteWriter& writer, const std::optional<std::u16string>& text) {
    if (text) writer.Text(*text);
}

std::vector<std::uint32_t> ReadIds(ByteReader& reader, std::size_t count) {
    if (reader.Left() / 4 < count) throw WireError("a message has fewer ids than it says");
    std::vector<std::uint32_t> ids(count);
    for (std::uint32_t& id : ids) id = reader.U32();
    return ids;
}

// ---- Numbers of the name table, whose width is told by two bits of the mask

std::uint32_t WidthCode(std::size_t value) {
    if (value == 0) return 0;
    if (value <= 0xFF) return 1;
    return value <= 0xFFFF ? 2 : 3;
}

std::uint32_t ReadWide(ByteReader& reader, std::uint32_t mask, int shift) {
    switch (mask >> shift & 3) {
        case 1:
            return reader.U8();
        case 2:
            return reader.U16();
        case 3:
            return reader.U32();
        default:
            return 0;
    }
}

void WriteWide(ByteWriter& writer, std::size_t value) {
    switch (WidthCode(value)) {
        case 1:
            writer.U8(static_cast<std::uint8_t>(value));
            break;
        case 2:
            writer.U16(static_cast<std::uint16_t>(value));
            break;
        case 3:
            writer.U32(static_cast<std::uint32_t>(value));
            break;
        default:
            break;
    }
}

std::uint32_t Mask(const PackedPlayer& player) {
    return (player.ShortName ? ShortNameBit : 0) | (player.LongName ? LongNameBit : 0) |
           WidthCode(player.Provider.size()) << ProviderShift | WidthCode(player.Data.size()) << DataShift |
           WidthCode(player.Members.size()) << MembersShift | (player.ParentId != 0 ? ParentBit : 0);
}

struct ResultWords {
    std::uint32_t Value;
    std::string_view Words;
};

constexpr ResultWords KnownResults[] = {
    {Result::Ok, "success"},
    {0x8877000A, "access denied"},
    {Result::CantCreatePlayer, "the host makes no new player"},
    {0x887700F0, "the host timed out"},
    {Result::NoNewPlayers, "the session is full or closed to newcomers"},
    {Result::InvalidPassword, "the session wants another password"},
    {0x887707D0, "the session wants an account"},
    {0x88770820, "the session wants an account"},
};

}  // namespace

std::string ResultText(std::uint32_t result) {
    const auto* known = std::find_if(std::begin(KnownResults), std::end(KnownResults),
                                     [&](const ResultWords& r) { return r.Value == result; });
    if (known == std::end(KnownResults)) return fmt::format("error 0x{:08X}", result);
    return fmt::format("{} (0x{:08X})", known->Words, result);
}

std::optional<ServiceProviderData> ParseServiceProviderData(ByteSpan bytes) {
    if (bytes.size() != ServiceProviderData::Size) return std::nullopt;
    ByteReader reader(bytes);
    ServiceProviderData data;
    data.Tcp = ReadSocketAddress(reader);
    data.Udp = ReadSocketAddress(reader);
    return data;
}

Bytes EncodeServiceProviderData(const ServiceProviderData& data) {
    ByteWriter writer;
    WriteSocketAddress(writer, data.Tcp);
    WriteSocketAddress(writer, data.Udp);
    return writer.Release();
}

Guid ReadGuid(ByteReader& reader) {
    Guid guid;
    guid.Data1 = reader.U32();
    guid.Data2 = reader.U16();
    guid.Data3 = reader.U16();
    for (std::uint8_t& byte : guid.Data4) byte = reader.U8();
    return guid;
}

void WriteGuid(ByteWriter& writer, const Guid& guid) {
    writer.U32(guid.Data1);
    writer.U16(guid.Data2);
    writer.U16(guid.Data3);
    for (const std::uint8_t byte : guid.Data4) writer.U8(byte);
}

SessionDescription ReadSessionDescription(ByteReader& reader) {
    if (reader.U32() < SessionDescription::Size) throw WireError("a session description is too short");
    SessionDescription description;
    description.Flags = reader.U32();
    description.Instance = ReadGuid(reader);
    description.Application = ReadGuid(reader);
    description.MaxPlayers = reader.U32();
    description.CurrentPlayers = reader.U32();
    reader.Skip(8);  // pointers to name and password
    description.Reserved1 = reader.U32();
    reader.Skip(4);
    for (std::uint32_t& user : description.User) user = reader.U32();
    return description;
}

void WriteSessionDescription(ByteWriter& writer, const SessionDescription& description) {
    writer.U32(SessionDescription::Size);
    writer.U32(description.Flags);
    WriteGuid(writer, description.Instance);
    WriteGuid(writer, description.Application);
    writer.U32(description.MaxPlayers);
    writer.U32(description.CurrentPlayers);
    writer.Zeros(8);
    writer.U32(description.Reserved1);
    writer.Zeros(4);
    for (const std::uint32_t user : description.User) writer.U32(user);
}

PackedPlayer ReadPackedPlayer(ByteReader& reader) {
    PackedPlayer player;
    reader.Skip(4);  // the size, which follows from the lengths
    player.Flags = reader.U32();
    player.Id = reader.U32();
    const std::uint32_t shortLength = reader.U32();
    const std::uint32_t longLength = reader.U32();
    const std::uint32_t providerLength = reader.U32();
    const std::uint32_t dataLength = reader.U32();
    const std::uint32_t memberCount = reader.U32();
    player.SystemPlayerId = reader.U32();
    const std::uint32_t fixedSize = reader.U32();
    player.Version = reader.U32();
    player.ParentId = reader.U32();
    if (fixedSize < PackedFixedSize) throw WireError("a player record is too short");
    reader.Skip(fixedSize - PackedFixedSize);
    player.ShortName = ReadTextField(reader, shortLength);
    player.LongName = ReadTextField(reader, longLength);
    player.Provider = Copy(reader.Take(providerLength));
    player.Data = Copy(reader.Take(dataLength));
    player.Members = ReadIds(reader, memberCount);
    return player;
}

void WritePackedPlayer(ByteWriter& writer, const PackedPlayer& player) {
    const std::uint32_t shortLength = TextLength(player.ShortName);
    const std::uint32_t longLength = TextLength(player.LongName);
    const auto providerLength = static_cast<std::uint32_t>(player.Provider.size());
    const auto dataLength = static_cast<std::uint32_t>(player.Data.size());
    writer.U32(PackedFixedSize + shortLength + longLength + providerLength + dataLength);
    writer.U32(player.Flags);
    writer.U32(player.Id);
    writer.U32(shortLength);
    writer.U32(longLength);
    writer.U32(providerLength);
    writer.U32(dataLength);
    writer.U32(static_cast<std::uint32_t>(player.Members.size()));
    writer.U32(player.SystemPlayerId);
    writer.U32(PackedFixedSize);
    writer.U32(player.Version);
    writer.U32(player.ParentId);
    WriteText(writer, player.ShortName);
    WriteText(writer, player.LongName);
    writer.Append(player.Provider);
    writer.Append(player.Data);
    for (const std::uint32_t member : player.Members) writer.U32(member);
}

/// Data stands before the provider's data here, the other way round than in the packed form.
PackedPlayer ReadSuperPackedPlayer(ByteReader& reader) {
    PackedPlayer player;
    reader.Skip(4);
    player.Flags = reader.U32();
    player.Id = reader.U32();
    const std::uint32_t mask = reader.U32();
    const std::uint32_t versionOrOwner = reader.U32();
    player.SystemPlayerId = player.IsSystem() ? player.Id : versionOrOwner;
    if (player.IsSystem()) player.Version = versionOrOwner;
    if (mask & ShortNameBit) player.ShortName = reader.Text();
    if (mask & LongNameBit) player.LongName = reader.Text();
    player.Data = Copy(reader.Take(ReadWide(reader, mask, DataShift)));
    player.Provider = Copy(reader.Take(ReadWide(reader, mask, ProviderShift)));
    player.Members = ReadIds(reader, ReadWide(reader, mask, MembersShift));
    if (mask & ParentBit) player.ParentId = reader.U32();
    ReadIds(reader, ReadWide(reader, mask, ShortcutsShift));
    return player;
}

void WriteSuperPackedPlayer(ByteWriter& writer, const PackedPlayer& player) {
    writer.U32(SuperPackedSize);
    writer.U32(player.Flags);
    writer.U32(player.Id);
    writer.U32(Mask(player));
    writer.U32(player.IsSystem() ? player.Version : player.SystemPlayerId);
    WriteText(writer, player.ShortName);
    WriteText(writer, player.LongName);
    WriteWide(writer, player.Data.size());
    writer.Append(player.Data);
    WriteWide(writer, player.Provider.size());
    writer.Append(player.Provider);
    WriteWide(writer, player.Members.size());
    for (const std::uint32_t member : player.Members) writer.U32(member);
    if (player.ParentId != 0) writer.U32(player.ParentId);
}

}  // namespace corvenna::directplay
