#include <fmt/format.h>

#include "link/directplay/participant.h"

/// Finding and entering a session: an id for this machine, its ports made known, the name table in return.
/// Later an id for each player and group.
namespace corvenna::directplay {

namespace {

struct FlagWords {
    std::uint32_t Flag;
    std::string_view Words;
};

/// Sessions of these kinds speak differently on the wire, or want a logon.
constexpr FlagWords UnservableFlags[] = {
    {SessionFlag::NoMessageId, "its messages carry no ids"},
    {SessionFlag::SecureServer, "it wants a logon"},
    {SessionFlag::MulticastServer, "it relays messages through its host"},
    {SessionFlag::ClientServer, "it is of the client/server kind"},
    {SessionFlag::DirectPlayProtocol, "it uses the DirectPlay protocol's own transport"},
};

}  // namespace

std::string Participant::Unservable(const SessionDescription& description) {
    for (const FlagWords& row : UnservableFlags) {
        if ((description.Flags & row.Flag) == 0) continue;
        return fmt::format("this session cannot be joined: {} (flags 0x{:X}, session {}, application {})",
                           row.Words, description.Flags, GuidText(description.Instance),
                           GuidText(description.Application));
    }
    return {};
}

void Participant::BeginJoin(const FoundSession& session, const std::u16string& password) {
    ForgetSession();
    outcome_ = {};
    if (std::string why = Unservable(session.Description); !why.empty()) return Fail(std::move(why));
    joining_ = true;
    host_ = session.Host;
    description_ = session.Description;
    name_ = session.Name;
    password_ = password;
    Ask(Request::SystemId);
}

void Participant::BeginCreatePlayer(std::u16string shortName, std::u16string longName) {
    wantedShortName_ = std::move(shortName);
    wantedLongName_ = std::move(longName);
    if (!IsHost()) return Ask(Request::PlayerId);
    const bool closed = (description_.Flags & SessionFlag::NewPlayersDisabled) != 0 || IsFull();
    const auto id = closed ? std::nullopt : ids_.Allocate();
    if (!id) return Fail(ResultText(Result::CantCreatePlayer));
    AddOwnPlayer(*id);
    Succeed(*id);
}

void Participant::BeginCreateGroup(std::u16string name) {
    wantedShortName_ = std::move(name);
    if (!IsHost()) return Ask(Request::GroupId);
    const auto id = ids_.Allocate();
    if (!id) return Fail("no id is left");
    AddOwnGroup(*id);
    Succeed(*id);
}

/// There is no number on a request: the answer belongs to the one that was made last.
void Participant::Ask(Request request) {
    outcome_ = {};
    const Machine* host = members_.Machines.Find(hostId_);
    if (!joining_ && host == nullptr) return Fail("the session has no host that could give out an id");
    request_ = request;
    requestLimit_ = request == Request::NameTable ? timing_.Table : timing_.Request;
    requestDeadline_ = now_ + requestLimit_;
    const Endpoint place = joining_ ? host_ : host->Tcp;
    switch (request) {
        case Request::SystemId:
            return SendTo(place,
                          RequestId{Command::RequestPlayerId, MemberFlag::System | MemberFlag::OfSender});
        case Request::PlayerId:
            return SendTo(place, RequestId{Command::RequestPlayerId, MemberFlag::OfSender});
        case Request::GroupId:
            return SendTo(place, RequestId{Command::RequestGroupId, MemberFlag::OfSender});
        case Request::NameTable:
        case Request::None:
            return;
    }
}

void Participant::Succeed(std::uint32_t id) {
    request_ = Request::None;
    outcome_ = {true, {}, id};
}

/// A join that fails leaves nothing behind, neither here nor with the host.
void Participant::Fail(std::string why) {
    request_ = Request::None;
    outcome_ = {true, std::move(why), 0};
    if (!joining_) return;
    if (ownId_ != 0) SendTo(host_, ChangeMember{Command::DeletePlayer, ownId_, 0});
    network_.Disconnect(host_);
    ForgetSession();
}

void Participant::ExpireRequest() {
    if (request_ == Request::None || now_ < requestDeadline_) return;
    Fail(fmt::format("no answer from {} within {} seconds", HostText(), requestLimit_ / seconds(1)));
}

std::string Participant::HostText() const {
    if (joining_) return fmt::format("the host at {}", EndpointText(host_));
    const Machine* host = members_.Machines.Find(hostId_);
    return host == nullptr ? "the host" : fmt::format("the host at {}", EndpointText(host->Tcp));
}

void Participant::On(const Source& source, const EnumSessionsReply& reply) {
    search_.OnReply(source.Tcp, reply, now_);
}

void Participant::On(const Source& source, const RequestPlayerReply& reply) {
    if (request_ == Request::None || request_ == Request::NameTable) return;
    if (!IsFromHost(source)) return CountForeign(source, "gave out an id without being the host");
    if (reply.Result != Result::Ok) return Fail(fmt::format("{}: {}", HostText(), ResultText(reply.Result)));
    if (reply.Secure) {
        description_.Flags |= SessionFlag::SecureServer;
        return Fail(Unservable(description_));
    }
    if (!IsGivenOut(reply.Id) || reply.Id == ownId_ || members_.Knows(reply.Id)) {
        return Fail(fmt::format("{} gave out the id 0x{:08X}, which is in use", HostText(), reply.Id));
    }
    switch (request_) {
        case Request::SystemId:
            return AskToBeForwarded(reply.Id);
        case Request::PlayerId:
            AddOwnPlayer(reply.Id);
            break;
        case Request::GroupId:
            AddOwnGroup(reply.Id);
            break;
        case Request::NameTable:
        case Request::None:
            return;
    }
    Succeed(reply.Id);
}

void Participant::AskToBeForwarded(std::uint32_t id) {
    ownId_ = id;
    Ask(Request::NameTable);
    AddForwardRequest request;
    request.Player.Flags = MemberFlag::System | MemberFlag::OfSender;
    request.Player.Id = request.Player.SystemPlayerId = id;
    request.Player.Provider = OwnPorts();
    request.Password = password_;
    request.SessionKey = description_.Reserved1;
    SendTo(host_, request);
}

void Participant::On(const Source& source, const AddForwardReply& refusal) {
    if (!joining_ || request_ != Request::NameTable || !IsFromHost(source)) return;
    Fail(fmt::format("{}: {}", HostText(), ResultText(refusal.Error)));
}

void Participant::On(const Source& source, const NameTable& table) {
    if (!joining_ || request_ != Request::NameTable || !IsFromHost(source)) return;
    if (std::string why = Unservable(table.Description); !why.empty()) return Fail(std::move(why));
    description_ = table.Description;
    ids_ = IdTable(description_.Reserved1);
    ids_.TakeOver(ownId_);
    for (const PackedPlayer& record : table.Players) {
        if (!record.IsSystem() || record.Id == ownId_) continue;
        const bool isHost = (record.Flags & MemberFlag::NameServer) != 0;
        if (isHost) hostId_ = record.Id;
        AddMachine(record, source, isHost);
    }
    if (hostId_ == 0) return Fail(fmt::format("{} told of no host", HostText()));
    if (table.Name) name_ = *table.Name;
    joining_ = false;
    for (const PackedPlayer& record : table.Players) {
        if (!record.IsSystem()) AddRemotePlayer(record);
    }
    for (const PackedPlayer& record : table.Groups) AddRemoteGroup(record);
    Succeed(ownId_);
    ReplayEarly();
}

void Participant::On(const Source& source, const AddForward& forward) {
    if (!IsFromHost(source)) return CountForeign(source, "told of a newcomer without being the host");
    if (forward.Player.Id == ownId_ || !IsGivenOut(forward.Player.Id)) return;
    AddMachine(forward.Player, source, false);
    if (!replayed_.Acknowledged) Acknowledge(source, forward);
    ReplayEarly();
}

/// Also while this machine is still joining: the host waits for the word of everybody it knows.
void Participant::Acknowledge(const Source& source, const AddForward& forward) {
    if (IsFromHost(source)) SendTo(source.Tcp, AddForwardAck{forward.Player.Id});
}

}  // namespace corvenna::directplay
