#include "link/directplay/participant.h"

#include <fmt/format.h>

#include <algorithm>

namespace corvenna::directplay {

namespace {

/// How often timers are looked at; messages may come far more often.
constexpr milliseconds ChoreInterval(50);

constexpr std::size_t MaxNotices = 100;

SharedBytes Share(Bytes bytes) { return std::make_shared<const Bytes>(std::move(bytes)); }

}  // namespace

void Participant::Advance(TimePoint now) {
    now_ = now;
    if (now_ < nextChores_) return;
    nextChores_ = now_ + ChoreInterval;
    search_.Advance(now_);
    ExpireRequest();
    ExpireNewcomers();
    ExpireEarly();
    PingTheSilent();
    RecheckClaim();
    OpenNameServerPorts();
}

// ---- What arrives

void Participant::OnFrame(std::uint32_t sourceIp, ByteSpan frame) {
    try {
        const Incoming incoming = SortFrame(frame);
        Handle({{sourceIp, incoming.Port}, {}}, incoming.What, incoming.Body);
    } catch (const WireError&) {
        ++dropped_.Malformed;
    }
}

void Participant::OnDatagram(const Endpoint& source, ByteSpan datagram) {
    try {
        const Incoming incoming = SortDatagram(datagram);
        Handle({{source.Ip, incoming.Port}, source}, incoming.What, incoming.Body);
    } catch (const WireError&) {
        ++dropped_.Malformed;
    }
}

void Participant::Handle(const Source& source, Incoming::Kind what, ByteSpan body) {
    if (Machine* sender = SenderOf(source)) {
        sender->LastHeard = now_;
        sender->PingsUnanswered = 0;
        if (!replaying_ && !CountAgainstRate(*sender)) return;
    }
    if (what == Incoming::Kind::System) {
        HandleSystemMessage(source, body);
    } else {
        ByteReader reader(body);
        const std::uint32_t from = reader.U32();
        const std::uint32_t to = reader.U32();
        OnPlayerMessage(source, from, to, reader.Take(reader.Left()));
    }
}

void Participant::HandleSystemMessage(const Source& source, ByteSpan body) {
    const DecodedMessage decoded = DecodeSystemMessage(body);
    if (source.IsDatagram() && !MayComeByDatagram(decoded.Message)) return void(++dropped_.Foreign);
    if (ConcernsMembers(decoded.Message)) {
        if (ownId_ == 0) return;
        if (IsTooEarlyFrom(source)) {
            const auto* forward = std::get_if<AddForward>(&decoded.Message);
            const bool acknowledge = joining_ && forward != nullptr && !replaying_;
            if (acknowledge) Acknowledge(source, *forward);
            return KeepForLater(source, Incoming::Kind::System, body, acknowledge);
        }
    }
    std::visit([&](const auto& message) { On(source, message); }, decoded.Message);
}

/// Before the name table nothing about members makes sense; later on nothing from a machine that nobody has
/// told of yet, nor from one whose word that it is the host is being looked into.
bool Participant::IsTooEarlyFrom(const Source& source) {
    if (joining_) return true;
    if (IsHost()) return false;
    const Machine* sender = SenderOf(source);
    return sender == nullptr || sender->Id == claimant_;
}

/// Anybody can put another's address on a datagram, so what is decided about members goes by stream alone.
bool Participant::MayComeByDatagram(const SystemMessage& message) {
    return std::holds_alternative<EnumSessions>(message) || std::holds_alternative<Ping>(message) ||
           std::holds_alternative<YouAreDead>(message) || std::holds_alternative<PlayerWrapper>(message) ||
           std::holds_alternative<Chat>(message) || std::holds_alternative<Packet>(message) ||
           std::holds_alternative<Packet2Ack>(message) || std::holds_alternative<Multicast>(message) ||
           std::holds_alternative<UnknownMessage>(message);
}

/// Messages about who is in the session.
bool Participant::ConcernsMembers(const SystemMessage& message) {
    return std::holds_alternative<AddForward>(message) || std::holds_alternative<CreateMember>(message) ||
           std::holds_alternative<ChangeMember>(message) || std::holds_alternative<DataChanged>(message) ||
           std::holds_alternative<NameChanged>(message) ||
           std::holds_alternative<SessionDescChanged>(message);
}

// ---- Messages that are too early

void Participant::KeepForLater(const Source& source, Incoming::Kind what, ByteSpan body, bool acknowledged) {
    const auto ofAddress = std::count_if(
        early_.begin(), early_.end(), [&](const Early& early) { return early.From.Tcp.Ip == source.Tcp.Ip; });
    if (early_.size() >= limits_.EarlyMessages || earlyBytes_ + body.size() > limits_.EarlyBytes ||
        ofAddress >= static_cast<std::ptrdiff_t>(limits_.EarlyMessagesOfAddress)) {
        return void(++dropped_.Excess);
    }
    earlyBytes_ += body.size();
    const TimePoint arrived = replaying_ ? replayed_.Arrived : now_;
    early_.push_back(
        {arrived, source, {body.begin(), body.end()}, what, acknowledged || replayed_.Acknowledged});
}

/// Handles again, in their order, what came before its time. What is still too early is kept again.
void Participant::ReplayEarly() {
    if (replaying_ || early_.empty()) return;
    std::deque<Early> kept;
    kept.swap(early_);
    earlyBytes_ = 0;
    replaying_ = true;
    for (Early& early : kept) {
        replayed_ = std::move(early);
        try {
            Handle(replayed_.From, replayed_.What, replayed_.Body);
        } catch (const WireError&) {
            ++dropped_.Malformed;
        }
    }
    replaying_ = false;
    replayed_ = {};
}

void Participant::ExpireEarly() {
    if (joining_ || claimant_ != 0) return;
    while (!early_.empty() && now_ - early_.front().Arrived > limits_.EarlyAge) {
        earlyBytes_ -= early_.front().Body.size();
        early_.pop_front();
        ++dropped_.Unknown;
    }
}

// ---- Who sends

Machine* Participant::SenderOf(const Source& source) {
    if (source.Tcp.Port != 0) return members_.MachineAt(source.Tcp);
    if (!source.IsDatagram()) return nullptr;
    for (Machine& machine : members_.Machines) {
        if (machine.Udp == source.Datagram) return &machine;
    }
    return nullptr;
}

bool Participant::CountAgainstRate(Machine& machine) {
    if (now_ - machine.SecondStart >= seconds(1)) {
        machine.SecondStart = now_;
        machine.MessagesThisSecond = 0;
    }
    if (++machine.MessagesThisSecond <= limits_.MessagesPerSecond) return true;
    CutOff(machine.Id,
           fmt::format("it sent more than {} messages within a second", limits_.MessagesPerSecond));
    return false;
}

bool Participant::IsFromHost(const Source& source) {
    if (joining_) return source.Tcp == host_;
    const Machine* sender = SenderOf(source);
    return sender != nullptr && sender->Id == hostId_;
}

void Participant::CountForeign(const Source& source, const char* what) {
    ++dropped_.Foreign;
    Machine* sender = SenderOf(source);
    if (sender == nullptr || sender->Reported) return;
    sender->Reported = true;
    Notice(fmt::format("{} {}; that was ignored", NameOf(*sender), what));
}

/// The players of a machine, for a person who reads it.
std::string Participant::NameOf(const Machine& machine) const {
    std::string names;
    for (const Player& player : members_.Players) {
        if (player.MachineId != machine.Id || player.Name.empty()) continue;
        if (!names.empty()) names += ", ";
        names += player.Name;
    }
    if (names.empty()) names = "a participant";
    return fmt::format("{} ({})", names, EndpointText(machine.Tcp));
}

void Participant::Notice(std::string line) {
    if (notices_.size() >= MaxNotices) notices_.pop_front();
    notices_.push_back(std::move(line));
}

std::vector<std::string> Participant::TakeNotices() {
    std::vector<std::string> lines(notices_.begin(), notices_.end());
    notices_.clear();
    return lines;
}

// ---- What goes out

void Participant::SendTo(const Endpoint& tcp, const SystemMessage& message) {
    if (tcp.Port == 0) return;
    network_.SendFrame(tcp, Share(Frame(network_.TcpPort(), EncodeSystemMessage(message))));
}

/// The connection to somebody who is not in the session ends with the answer.
void Participant::SendToStranger(const Endpoint& tcp, const SystemMessage& message) {
    SendTo(tcp, message);
    if (members_.MachineAt(tcp) == nullptr) network_.Disconnect(tcp);
}

void Participant::SendToAll(const SystemMessage& message) {
    const SharedBytes frame = Share(Frame(network_.TcpPort(), EncodeSystemMessage(message)));
    for (const Machine& machine : members_.Machines) {
        if (machine.Tcp.Port != 0) network_.SendFrame(machine.Tcp, frame);
    }
}

/// The addresses are left out: each reader puts the one in that he sees.
Bytes Participant::OwnPorts() const {
    return EncodeServiceProviderData({{0, network_.TcpPort()}, {0, network_.UdpPort()}});
}

void Participant::Leave() {
    if (IsMember()) {
        for (const std::uint32_t id : members_.PlayersOf(ownId_)) {
            SendToAll(ChangeMember{Command::DeletePlayer, id, 0});
        }
        SendToAll(ChangeMember{Command::DeletePlayer, ownId_, 0});
    }
    for (const Machine& machine : members_.Machines) network_.Disconnect(machine.Tcp);
    ForgetSession();
}

void Participant::ForgetSession() {
    description_ = {};
    name_.clear();
    password_.clear();
    ownId_ = hostId_ = claimant_ = 0;
    tookOver_.reset();
    members_ = {};
    lost_ = joining_ = false;
    request_ = Request::None;
    pending_.clear();
    newcomers_.clear();
    inbox_.Clear();
    early_.clear();
    earlyBytes_ = 0;
}

}  // namespace corvenna::directplay
