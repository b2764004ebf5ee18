#include <fmt/format.h>

#include <algorithm>

#include "link/directplay/participant.h"

/// Who is still there, and who is the host when the host is not.
namespace corvenna::directplay {

// ---- Pings

void Participant::On(const Source& source, const Ping& ping) {
    Machine* machine = members_.Machines.Find(ping.From);
    if (machine == nullptr) {
        if (IsHost() && MayAnswer(source.Tcp)) SendToStranger(source.Tcp, YouAreDead{});
        return;
    }
    if (machine->Tcp.Ip != source.Tcp.Ip) return CountForeign(source, "pinged as somebody else");
    machine->LastHeard = now_;
    machine->PingsUnanswered = 0;
    if (ping.What == Command::Ping) SendDatagramTo(*machine, Ping{Command::PingReply, ownId_, ping.Tick});
}

/// In sessions that want it, whoever is silent is pinged: the host by everybody, everybody by the host. While
/// there is no host everybody is, so that the next one is found.
void Participant::PingTheSilent() {
    if (!IsMember() || lost_) return;
    const bool keepAlive = (description_.Flags & SessionFlag::KeepAlive) != 0;
    for (Machine& machine : members_.Machines) {
        const bool mine = hostId_ == 0 || (keepAlive && (IsHost() || machine.Id == hostId_));
        if (!mine || now_ - machine.LastHeard < timing_.Ping || now_ < machine.NextPing) continue;
        machine.NextPing = now_ + timing_.Ping;
        if (machine.PingsUnanswered >= timing_.PingsUntilDoubt) {
            machine.PingsUnanswered = 0;
            Doubt(machine);
        } else {
            ++machine.PingsUnanswered;
            const auto tick = std::chrono::duration_cast<milliseconds>(now_.time_since_epoch()).count();
            SendDatagramTo(machine, Ping{Command::Ping, ownId_, static_cast<std::uint32_t>(tick)});
        }
    }
}

void Participant::SendDatagramTo(const Machine& machine, const SystemMessage& message) {
    if (machine.Udp.Port == 0) return;
    const auto datagram =
        std::make_shared<const Bytes>(Frame(network_.TcpPort(), EncodeSystemMessage(message)));
    network_.SendDatagram(machine.Udp, datagram);
}

// ---- Doubt and certainty

void Participant::OnConnectionLost(const Endpoint& tcp) {
    if (Machine* machine = members_.MachineAt(tcp)) Doubt(*machine);
    if (joining_ && tcp == host_) network_.Probe(tcp);
}

void Participant::OnDisconnected(const Endpoint& tcp) { OnConnectionLost(tcp); }

/// A connection that ends proves nothing: its machine may be in the best of health.
void Participant::Doubt(Machine& machine) {
    if (machine.DoubtedSince) return;
    machine.DoubtedSince = now_;
    network_.Probe(machine.Tcp);
    SendDatagramTo(machine, Ping{Command::Ping, ownId_, 0});
}

void Participant::OnProbed(const Endpoint& tcp, bool reached) {
    if (joining_ && tcp == host_ && !reached) return Fail(fmt::format("{} has broken off", HostText()));
    Machine* machine = members_.MachineAt(tcp);
    if (machine == nullptr || !machine->DoubtedSince) return;
    const bool heard = machine->LastHeard > *machine->DoubtedSince;
    machine->DoubtedSince.reset();
    if (!reached && !heard) return Gone(machine->Id, "it does not answer any more");
    if (machine->Id == hostId_ && claimant_ != 0) OnHostFoundAlive();
}

/// A host that is just leaving still answers, so it is asked once more before the claim is put aside.
void Participant::OnHostFoundAlive() {
    if (!claimRecheck_) {
        claimRecheck_ = now_ + timing_.ClaimRecheck;
        return;
    }
    if (const Machine* claimant = members_.Machines.Find(claimant_)) {
        CountForeign({claimant->Tcp, {}}, "claims to be the host, which is still there");
    }
    claimant_ = 0;
    claimRecheck_.reset();
    ReplayEarly();
}

void Participant::RecheckClaim() {
    Machine* host = members_.Machines.Find(hostId_);
    if (claimant_ != 0 && claimRecheck_ && now_ >= *claimRecheck_ && host != nullptr) Doubt(*host);
}

void Participant::OnUnreachable(const Endpoint& tcp, const std::string& why) {
    search_.OnUnreachable(tcp, why);
    if (joining_ && tcp == host_) return Fail(fmt::format("{}: {}", HostText(), why));
    if (const Machine* machine = members_.MachineAt(tcp)) Gone(machine->Id, why);
}

void Participant::OnMisbehaved(const Endpoint& tcp, const std::string& why) {
    ++dropped_.Excess;
    if (const Machine* machine = members_.MachineAt(tcp)) CutOff(machine->Id, why);
}

/// Whoever breaks off tells nobody, so the host tells for him.
void Participant::Gone(std::uint32_t machineId, const std::string& why) {
    Notice(fmt::format("{} has left the session: {}", NameOf(*members_.Machines.Find(machineId)), why));
    if (IsHost()) TellOthersGone(machineId);
    RemoveMachine(machineId);
}

/// For a machine that is there but cannot be served. When that is the host, it stays everybody else's, and
/// this station must never take its place.
void Participant::CutOff(std::uint32_t machineId, const std::string& why) {
    const Machine& machine = *members_.Machines.Find(machineId);
    Notice(fmt::format("{} was cut off: {}", NameOf(machine), why));
    network_.CutOff(machine.Tcp);
    if (IsHost()) TellOthersGone(machineId);
    if (machineId == hostId_) description_.Flags &= ~SessionFlag::MigrateHost;
    RemoveMachine(machineId);
}

void Participant::TellOthersGone(std::uint32_t machineId) {
    std::vector<std::uint32_t> ids = members_.PlayersOf(machineId);
    ids.push_back(machineId);
    for (const std::uint32_t id : ids) {
        for (const Machine& other : members_.Machines) {
            if (other.Id != machineId) SendTo(other.Tcp, ChangeMember{Command::DeletePlayer, id, 0});
        }
    }
}

/// Groups stay: the host looks after those whose owner has left.
void Participant::RemoveMachine(std::uint32_t machineId) {
    const Endpoint tcp = members_.Machines.Find(machineId)->Tcp;
    for (const std::uint32_t id : members_.PlayersOf(machineId)) {
        members_.RemovePlayer(id);
        FreeId(id);
    }
    members_.Machines.Remove(machineId);
    FreeId(machineId);
    network_.Disconnect(tcp);
    std::erase_if(newcomers_, [&](const Newcomer& newcomer) { return newcomer.MachineId == machineId; });
    for (Newcomer& newcomer : newcomers_) newcomer.Unconfirmed.erase(machineId);
    if (IsHost()) AdmitConfirmed();
    if (claimant_ == machineId) claimant_ = 0;
    if (hostId_ == machineId) {
        hostId_ = 0;
        OnHostGone();
    } else if (hostId_ == 0) {
        ChooseHost();  // it may have been the one that everybody waited for
    }
    HandGroupsToHost();
}

/// Groups whose owner has left are the host's; nobody's while there is no host.
void Participant::HandGroupsToHost() {
    for (Group& group : members_.Groups) {
        const bool owned = group.MachineId == ownId_ || members_.Machines.Find(group.MachineId) != nullptr;
        if (!owned) group.MachineId = hostId_;
    }
}

// ---- The next host

void Participant::OnHostGone() {
    if (request_ != Request::None) Fail("the host has left the session");
    if (members_.Machines.Find(claimant_) != nullptr) return AdoptHost(claimant_);
    if ((description_.Flags & SessionFlag::MigrateHost) == 0) {
        return Notice("the session has no host any more; it goes on among those who are still in it");
    }
    ChooseHost();
}

/// The lowest id of those who are left. If it is another's, his word is waited for.
void Participant::ChooseHost() {
    if (lost_ || joining_ || (description_.Flags & SessionFlag::MigrateHost) == 0) return;
    const bool first = std::all_of(members_.Machines.begin(), members_.Machines.end(),
                                   [&](const Machine& machine) { return ownId_ < machine.Id; });
    if (first) BecomeHost();
}

void Participant::BecomeHost() {
    hostId_ = ownId_;
    claimant_ = 0;
    tookOver_ = now_;
    constexpr std::uint32_t flags = MemberFlag::System | MemberFlag::NameServer | MemberFlag::InGroup;
    for (const Machine& machine : members_.Machines) {
        SendTo(machine.Tcp, IAmNameServer{machine.Id, ownId_, flags, OwnPorts()});
    }
    Notice("the host has left the session; this station is the session's host now");
    nameServerOpen_ = false;
    nextNameServerTry_ = now_;
    OpenNameServerPorts();
}

/// The old host may hold the ports a little longer when it runs on this computer.
void Participant::OpenNameServerPorts() {
    if (!IsHost() || nameServerOpen_ || now_ < nextNameServerTry_) return;
    nameServerOpen_ = network_.OpenNameServerPorts();
    nextNameServerTry_ = now_ + timing_.NameServerRetry;
}

void Participant::AdoptHost(std::uint32_t machineId) {
    hostId_ = machineId;
    claimant_ = 0;
    HandGroupsToHost();
    Notice(fmt::format("{} is the session's host now", NameOf(*members_.Machines.Find(machineId))));
    ReplayEarly();
}

/// A machine that says so is the host when the old one has gone. While the old one is listed it is asked
/// first: the new one may merely have noticed earlier, or may be wrong.
void Participant::On(const Source& source, const IAmNameServer& message) {
    Machine* sender = SenderOf(source);
    if (sender == nullptr || sender->Id != message.Host)
        return CountForeign(source, "made somebody else the host");
    if (hostId_ == sender->Id) return;
    if (IsHost()) {
        CountForeign(source, "claims to be the host as well");
        return SendTo(source.Tcp, YouAreDead{});
    }
    if ((description_.Flags & SessionFlag::MigrateHost) == 0) {
        return CountForeign(source, "claims to be the host of a session that does not change its host");
    }
    Machine* host = members_.Machines.Find(hostId_);
    if (host == nullptr) return AdoptHost(sender->Id);
    claimant_ = sender->Id;
    claimRecheck_.reset();
    Doubt(*host);
}

void Participant::On(const Source& source, const YouAreDead&) {
    if (ownId_ == 0 || !IsFromHost(source)) return void(++dropped_.Foreign);
    if (joining_) return Fail(fmt::format("{} does not know this station", HostText()));
    Lose("the host does not know this station any more");
}

/// Out of the session, without the session layer ceasing to work: the station is alone with its own players,
/// and what it sends reaches nobody.
void Participant::Lose(std::string why) {
    Notice(std::move(why));
    lost_ = true;
    hostId_ = claimant_ = 0;
    if (request_ != Request::None) Fail("the session is lost");
    while (members_.Machines.Size() > 0) {
        const std::uint32_t id = members_.Machines.begin()->Id;
        RemoveMachine(id);
    }
}

}  // namespace corvenna::directplay
