#include "link/directplay/wire_frame.h"
#include "link/directplay/wire_messages.h"

/// Every function here writes a whole message from its "play" on, so the writer's size is the offset of what
/// comes next.
namespace corvenna::directplay {

namespace {

/// Offset of the record within messages that create somebody.
constexpr std::uint32_t CreateOffset = 28;

/// Bytes behind the record of a created player. Some peers take no message without them.
constexpr std::size_t CreateTrailer = 6;

/// Writes a text at the end and its offset into the word that was kept for it; an absent one stays 0.
void TextFor(ByteWriter& w, std::size_t word, const OptionalText& text) {
    if (!text) return;
    w.PutU32(word, static_cast<std::uint32_t>(w.Size()));
    w.Text(*text);
}

/// Keeps the place of a word that is known later.
std::size_t KeepWord(ByteWriter& w) {
    w.U32(0);
    return w.Size() - 4;
}

void Envelope(ByteWriter& w, Command command, std::uint16_t version) {
    w.U32(Signature);
    w.U16(static_cast<std::uint16_t>(command));
    w.U16(version);
}

void MemberHead(ByteWriter& w, std::uint32_t playerId, std::uint32_t groupId, std::uint32_t createOffset) {
    w.U32(EverybodyId);
    w.U32(playerId);
    w.U32(groupId);
    w.U32(createOffset);
}

struct Writer {
    std::uint16_t Version = 0;
    ByteWriter W{};

    void operator()(const EnumSessions& m) {
        Envelope(W, Command::EnumSessions, Version);
        WriteGuid(W, m.Application);
        const std::size_t password = KeepWord(W);
        W.U32(m.Flags);
        TextFor(W, password, m.Password);
    }

    void operator()(const EnumSessionsReply& m) {
        Envelope(W, Command::EnumSessionsReply, Version);
        WriteSessionDescription(W, m.Description);
        TextFor(W, KeepWord(W), m.Name);
    }

    void operator()(const SessionDescChanged& m) {
        Envelope(W, Command::SessionDescChanged, Version);
        W.U32(EverybodyId);
        const std::size_t name = KeepWord(W);
        const std::size_t password = KeepWord(W);
        WriteSessionDescription(W, m.Description);
        TextFor(W, name, m.Name);
        TextFor(W, password, m.Password);
    }

    void operator()(const RequestId& m) {
        Envelope(W, m.What, Version);
        W.U32(m.Flags);
    }

    void operator()(const RequestPlayerReply& m) {
        constexpr std::size_t securityDescription = 24;
        Envelope(W, Command::RequestPlayerReply, Version);
        W.U32(m.Id);
        W.Zeros(securityDescription);
        W.U32(m.Secure ? 1 : 0);
        W.U32(0);
        W.U32(m.Result);
    }

    /// The password is there even when it is empty.
    void operator()(const AddForwardRequest& m) {
        Envelope(W, Command::AddForwardRequest, Version);
        MemberHead(W, m.Player.Id, 0, CreateOffset);
        const std::size_t password = KeepWord(W);
        WritePackedPlayer(W, m.Player);
        TextFor(W, password, m.Password);
        W.U32(m.SessionKey);
    }

    void operator()(const AddForwardReply& m) {
        Envelope(W, Command::AddForwardReply, Version);
        W.U32(m.Error);
    }

    void operator()(const AddForward& m) {
        Envelope(W, Command::AddForward, Version);
        MemberHead(W, m.Player.Id, 0, CreateOffset);
        W.U32(0);  // no password
        WritePackedPlayer(W, m.Player);
    }

    void operator()(const AddForwardAck& m) {
        Envelope(W, Command::AddForwardAck, Version);
        W.U32(m.Id);
    }

    void operator()(const NameTable& m) {
        Envelope(W, m.What, Version);
        W.U32(static_cast<std::uint32_t>(m.Players.size()));
        W.U32(static_cast<std::uint32_t>(m.Groups.size()));
        const std::size_t records = KeepWord(W);
        W.U32(0);  // no shortcuts
        const std::size_t description = KeepWord(W);
        const std::size_t name = KeepWord(W);
        const std::size_t password = KeepWord(W);
        W.PutU32(description, static_cast<std::uint32_t>(W.Size()));
        WriteSessionDescription(W, m.Description);
        TextFor(W, name, m.Name);
        TextFor(W, password, m.Password);
        W.PutU32(records, static_cast<std::uint32_t>(W.Size()));
        const auto write = m.What == Command::EnumPlayersReply ? &WritePackedPlayer : &WriteSuperPackedPlayer;
        for (const PackedPlayer& player : m.Players) write(W, player);
        for (const PackedPlayer& group : m.Groups) write(W, group);
    }

    void operator()(const EnumPlayer&) { Envelope(W, Command::EnumPlayer, Version); }

    void operator()(const CreateMember& m) {
        Envelope(W, m.What, Version);
        MemberHead(W, m.Member.Id, 0, CreateOffset);
        W.U32(0);  // no password
        WritePackedPlayer(W, m.Member);
        W.Zeros(CreateTrailer);
    }

    void operator()(const ChangeMember& m) {
        Envelope(W, m.What, Version);
        MemberHead(W, m.PlayerId, m.GroupId, 0);
        W.U32(0);  // no password
    }

    void operator()(const DataChanged& m) {
        Envelope(W, m.What, Version);
        W.U32(EverybodyId);
        W.U32(m.Id);
        W.U32(static_cast<std::uint32_t>(m.Data.size()));
        W.U32(static_cast<std::uint32_t>(W.Size() + 4));
        W.Append(m.Data);
    }

    void operator()(const NameChanged& m) {
        Envelope(W, m.What, Version);
        W.U32(EverybodyId);
        W.U32(m.Id);
        const std::size_t shortName = KeepWord(W);
        const std::size_t longName = KeepWord(W);
        TextFor(W, shortName, m.ShortName);
        TextFor(W, longName, m.LongName);
    }

    void operator()(const PlayerWrapper& m) {
        Envelope(W, Command::PlayerWrapper, Version);
        W.U32(m.From);
        W.U32(m.To);
        W.Append(m.Payload);
    }

    void operator()(const Chat& m) {
        Envelope(W, Command::Chat, Version);
        W.U32(m.From);
        W.U32(m.To);
        W.U32(m.Flags);
        TextFor(W, KeepWord(W), m.Text);
    }

    void operator()(const Packet& m) {
        Envelope(W, m.What, Version);
        WriteGuid(W, m.Message);
        W.U32(m.Index);
        W.U32(static_cast<std::uint32_t>(m.Data.size()));
        W.U32(m.Offset);
        W.U32(m.Count);
        W.U32(m.MessageSize);
        W.U32(static_cast<std::uint32_t>(W.Size() + 4));
        W.Append(m.Data);
    }

    void operator()(const Packet2Ack& m) {
        Envelope(W, Command::Packet2Ack, Version);
        WriteGuid(W, m.Message);
        W.U32(m.Index);
    }

    void operator()(const Ping& m) {
        Envelope(W, m.What, Version);
        W.U32(m.From);
        W.U32(m.Tick);
    }

    void operator()(const YouAreDead&) { Envelope(W, Command::YouAreDead, Version); }

    void operator()(const IAmNameServer& m) {
        Envelope(W, Command::IAmNameServer, Version);
        W.U32(m.To);
        W.U32(m.Host);
        W.U32(m.Flags);
        W.U32(static_cast<std::uint32_t>(m.Provider.size()));
        W.Append(m.Provider);
    }

    void operator()(const Multicast& m) {
        Envelope(W, m.What, Version);
        W.U32(m.GroupTo);
        W.U32(m.PlayerFrom);
        W.U32(static_cast<std::uint32_t>(W.Size() + 4));
        W.Append(m.Message);
    }

    void operator()(const UnknownMessage&) { throw WireError("a message of unknown kind has no form"); }
};

}  // namespace

Bytes EncodeSystemMessage(const SystemMessage& message, std::uint16_t version) {
    Writer writer{version};
    std::visit(writer, message);
    return writer.W.Release();
}

}  // namespace corvenna::directplay
