#include "practice/simulator_peer.h"

#include <fmt/format.h>

#include "link/fs_messages.h"
#include "practice/callsign.h"

namespace corvenna {

namespace {

constexpr std::int32_t Everybody = 0;
constexpr std::string_view FormalName = "Player";
constexpr int LongFormEvery = 4;

}  // namespace

SimulatorPeer::SimulatorPeer(std::unique_ptr<Session> session, SimulatorPilot pilot, SimulatorEvents events)
    : session_(std::move(session)), pilot_(std::move(pilot)), events_(std::move(events)) {}

void SimulatorPeer::Host(const std::string& sessionName, std::int32_t maxPlayers) {
    SessionRecord record;
    record.SessionName = sessionName;
    record.MaxPlayers = maxPlayers;
    session_->Open(record, OpenMode::Create);
    session_->CreateGroup(std::string(RefuseParamsGroup));
    id_ = session_->CreatePlayer(pilot_.Name, std::string(FormalName));
    host_ = true;
    stage_ = Stage::Flying;
}

void SimulatorPeer::Join(const SessionRecord& session) {
    session_->Open(session, OpenMode::Join);
    RefuseTakenName(*session_, pilot_.Name);
    id_ = session_->CreatePlayer(pilot_.Name, std::string(FormalName));
    stage_ = Stage::Joining;
}

void SimulatorPeer::Step(std::chrono::milliseconds now) {
    if (stage_ == Stage::Joining) RequestAdmission(now);
    DirectPlayMessage message;
    while ((stage_ == Stage::Joining || stage_ == Stage::Flying) && session_->GetMessageCount(id_) > 0) {
        const Envelope envelope = session_->Receive(message);
        try {
            Handle(envelope.From, message);
        } catch (const MessageError&) {
            continue;  // somebody sent less than he should have
        }
    }
    if (stage_ == Stage::Flying && !pilot_.Observer) TellPosition(now);
}

void SimulatorPeer::RequestAdmission(std::chrono::milliseconds now) {
    if (asked_ && now < requestDue_) return;
    if (asked_) session_->Send(id_, Everybody, WriteEmpty(MessageId::JoinRequestRepeated));
    const auto request = pilot_.Observer ? MessageId::RequestJoinAsObserver : MessageId::RequestJoinAsPlayer;
    session_->Send(id_, Everybody, WriteEmpty(request));
    asked_ = true;
    requestDue_ = now + RequestInterval;
}

void SimulatorPeer::Handle(std::int32_t sender, DirectPlayMessage& message) {
    const MessageHeader header = ReadHeader(message);
    switch (header.Id) {
        case MessageId::RequestJoinAsPlayer:
            return DecideAdmission(sender, MessageId::AdmitPlayer, MessageId::RefusePlayer);
        case MessageId::RequestJoinAsObserver:
            return DecideAdmission(sender, MessageId::AdmitObserver, MessageId::RefuseObserver);
        case MessageId::AdmitPlayer:
        case MessageId::AdmitObserver:
            return OnAdmission(message.ReadLong());
        case MessageId::RefusePlayer:
        case MessageId::RefuseObserver:
            Note("the host refuses admission");
            return Leave();
        case MessageId::Removed:
            Note("the host has put you out of the session");
            return Leave();
        case MessageId::HostGone:
            return Note("the host has left the session");
        case MessageId::WhoAreYou:
            return Introduce(sender);
        case MessageId::AskAircraft:
            return session_->Send(id_, sender, WriteAircraft(pilot_.Aircraft));
        case MessageId::Chat:
            if (header.PayloadSize > 1 && events_.Heard) {
                events_.Heard(NameOf(sender), ReadChat(message, header.PayloadSize));
            }
            return;
        default:
            return;
    }
}

/// Only the host answers; everybody hears the request.
void SimulatorPeer::DecideAdmission(std::int32_t sender, std::int32_t admit, std::int32_t refuse) {
    if (!host_) return;
    const std::string& name = NameOf(sender);
    const bool admitted = !events_.Admits || events_.Admits(name);
    Note(fmt::format("{} asks to join and is {}", name, admitted ? "admitted" : "refused"));
    session_->Send(id_, sender, admitted ? WriteAdmission(admit, sender) : WriteEmpty(refuse));
}

/// Who is admitted enters the group and introduces himself to all. Introductions of others are for those
/// who keep a list.
void SimulatorPeer::OnAdmission(std::int32_t admitted) {
    if (stage_ != Stage::Joining || admitted != id_) return;
    for (const SessionMember& group : session_->GetDPEnumGroups()) {
        if (group.ShortName == RefuseParamsGroup) session_->AddPlayerToGroup(group.Id, id_);
    }
    stage_ = Stage::Flying;
    Introduce(Everybody);
}

void SimulatorPeer::Introduce(std::int32_t to) {
    session_->Send(id_, to,
                   WriteAdmission(pilot_.Observer ? MessageId::AdmitObserver : MessageId::AdmitPlayer, id_));
}

void SimulatorPeer::TellPosition(std::chrono::milliseconds now) {
    if (now < positionDue_) return;
    positionDue_ = now + PositionInterval;
    const AircraftState& where = pilot_.Where;
    const auto report = PackPosition(where.Latitude, where.Longitude, where.AltitudeFeet, where.HeadingTrue);
    const bool longForm = ++positionsTold_ % LongFormEvery == 0;
    session_->SendUnguaranteed(
        id_, Everybody, WritePosition(report, longForm ? MessageId::PositionLong : MessageId::Position));
}

void SimulatorPeer::Say(std::string_view text) {
    if (stage_ == Stage::Flying) session_->Send(id_, Everybody, WriteChat(text));
}

bool SimulatorPeer::Remove(std::string_view name) {
    bool found = false;
    for (const SessionMember& member : session_->GetDPEnumPlayers()) {
        if (member.ShortName != name || member.Id == id_) continue;
        session_->Send(id_, member.Id, WriteEmpty(MessageId::Removed));
        found = true;
    }
    return found;
}

void SimulatorPeer::Leave() {
    if (stage_ == Stage::Joining || stage_ == Stage::Flying) {
        if (host_) session_->Send(id_, Everybody, WriteEmpty(MessageId::HostGone));
        session_->DestroyPlayer(id_);
        session_->Close();
    }
    stage_ = Stage::Gone;
}

void SimulatorPeer::Note(const std::string& line) {
    if (events_.Noted) events_.Noted(line);
}

/// Who says something and leaves has gone when his text is read: then he is called as he was called before.
/// Empty for somebody who was never heard of.
const std::string& SimulatorPeer::NameOf(std::int32_t id) {
    std::string& name = names_[id];
    try {
        name = session_->GetPlayerFriendlyName(id);
    } catch (const SessionError&) {  // gone: the name stays
    }
    return name;
}

}  // namespace corvenna
