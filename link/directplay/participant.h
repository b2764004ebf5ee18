#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "link/directplay/id_table.h"
#include "link/directplay/inbox.h"
#include "link/directplay/limits.h"
#include "link/directplay/members.h"
#include "link/directplay/network.h"
#include "link/directplay/reassembly.h"
#include "link/directplay/session_search.h"
#include "link/directplay/wire_frame.h"
#include "link/directplay/wire_messages.h"

namespace corvenna::directplay {

/// What was dropped, by reason. For tests and reports.
struct Dropped {
    std::size_t Malformed = 0;  ///< could not be read
    std::size_t Foreign = 0;    ///< spoke for somebody else, or did what only the host may
    std::size_t Unknown = 0;    ///< from or about somebody who is not in the session
    std::size_t Excess = 0;     ///< more than may wait
};

/// One machine's part in a session: what it does about each message, as a client and as a host. It knows
/// neither sockets nor clocks: messages come in by the functions of NetworkEvents, the time by Advance, and
/// what goes out goes to a Network. One thread at a time.
///
/// Its parts: participant.cpp sorts what arrives; _join.cpp finds and enters a session; _host.cpp has the
/// host's duties; _members.cpp players and groups; _messages.cpp what players say to each other;
/// _presence.cpp who has gone, and who is the next host.
class Participant final : public NetworkEvents {
  public:
    Participant(Network& network, const Limits& limits, const Timing& timing)
        : network_(network),
          limits_(limits),
          timing_(timing),
          search_(network, timing),
          inbox_(limits),
          reassembly_(limits) {}

    /// Tells the time, and does what is due by it. To be called before every other call.
    void Advance(TimePoint now);

    // ---- Finding and entering a session

    SessionSearch& Search() { return search_; }
    TimePoint Now() const { return now_; }

    /// Why a session cannot be entered by this system; empty when it can.
    static std::string Unservable(const SessionDescription& description);

    /// Opens a session of one's own. False when another program has the ports at which sessions are searched.
    bool Host(SessionDescription description, std::u16string name, std::u16string password);

    /// Asks to be let in. The answer comes as Outcome.
    void BeginJoin(const FoundSession& session, const std::u16string& password);

    /// What became of BeginJoin, BeginCreatePlayer or BeginCreateGroup.
    struct Outcome {
        bool Ready = false;
        std::string Trouble;   ///< why it failed; empty when it did not
        std::uint32_t Id = 0;  ///< of the new player or group
    };
    const Outcome& LastOutcome() const { return outcome_; }

    /// Stops waiting for the answer.
    void Abandon(std::string why) { Fail(std::move(why)); }

    /// Tells everybody, and forgets the session.
    void Leave();

    // ---- The session

    bool IsMember() const { return ownId_ != 0 && !joining_; }
    bool IsHost() const { return ownId_ != 0 && hostId_ == ownId_; }
    bool IsLost() const { return lost_; }
    const Members& Everybody() const { return members_; }
    const SessionDescription& Description() const { return description_; }
    const std::u16string& SessionName() const { return name_; }

    void BeginCreatePlayer(std::u16string shortName, std::u16string longName);
    void BeginCreateGroup(std::u16string name);
    void DestroyPlayer(std::uint32_t playerId);
    void AddPlayerToGroup(std::uint32_t groupId, std::uint32_t playerId);

    bool IsOwnPlayer(std::uint32_t playerId) const;

    // ---- Messages

    /// An addressee who is not there is no error.
    void Send(std::uint32_t from, std::uint32_t to, ByteSpan payload, bool guaranteed);
    Inbox& Mail() { return inbox_; }

    // ---- What happened

    /// Lines for the operator, oldest first, each told once.
    std::vector<std::string> TakeNotices();
    const Dropped& DroppedSoFar() const { return dropped_; }

    // ---- NetworkEvents

    void OnFrame(std::uint32_t sourceIp, ByteSpan frame) override;
    void OnDatagram(const Endpoint& source, ByteSpan datagram) override;
    void OnConnectionLost(const Endpoint& tcp) override;
    void OnDisconnected(const Endpoint& tcp) override;
    void OnUnreachable(const Endpoint& tcp, const std::string& why) override;
    void OnMisbehaved(const Endpoint& tcp, const std::string& why) override;
    void OnProbed(const Endpoint& tcp, bool reached) override;
    void OnTimer() override {}  // the time comes by Advance

  private:
    /// Where a message comes from.
    struct Source {
        Endpoint Tcp;       ///< where its sender listens; no port for a datagram without header
        Endpoint Datagram;  ///< where the datagram came from; no port for a frame
        bool IsDatagram() const { return Datagram.Port != 0; }
    };

    /// What is asked of the host, one thing at a time.
    enum class Request { None, SystemId, NameTable, PlayerId, GroupId };

    /// A message that arrived before what it speaks of.
    struct Early {
        TimePoint Arrived{};
        Source From;
        Bytes Body;
        Incoming::Kind What{};
        bool Acknowledged = false;  ///< the host has this machine's word for it already
    };

    /// A newcomer who has an id and has not asked to be made known yet.
    struct Pending {
        Endpoint Tcp;
        TimePoint Since{};
    };

    /// A newcomer whom not everybody has confirmed yet.
    struct Newcomer {
        std::uint32_t MachineId = 0;
        std::set<std::uint32_t> Unconfirmed;
        TimePoint Deadline{};
    };

    // participant.cpp
    void Handle(const Source& source, Incoming::Kind what, ByteSpan body);
    void HandleSystemMessage(const Source& source, ByteSpan body);
    static bool MayComeByDatagram(const SystemMessage& message);
    static bool ConcernsMembers(const SystemMessage& message);
    bool IsTooEarlyFrom(const Source& source);
    void KeepForLater(const Source& source, Incoming::Kind what, ByteSpan body, bool acknowledged = false);
    void ReplayEarly();
    void ExpireEarly();
    Machine* SenderOf(const Source& source);
    bool CountAgainstRate(Machine& machine);
    bool IsFromHost(const Source& source);
    void CountForeign(const Source& source, const char* what);
    std::string NameOf(const Machine& machine) const;
    void Notice(std::string line);
    void SendTo(const Endpoint& tcp, const SystemMessage& message);
    void SendToStranger(const Endpoint& tcp, const SystemMessage& message);
    void SendToAll(const SystemMessage& message);
    Bytes OwnPorts() const;
    void ForgetSession();

    // participant_join.cpp
    void On(const Source&, const EnumSessionsReply&);
    void On(const Source&, const RequestPlayerReply&);
    void On(const Source&, const NameTable&);
    void On(const Source&, const AddForwardReply&);
    void On(const Source&, const AddForward&);
    void Ask(Request request);
    void Fail(std::string why);
    void Succeed(std::uint32_t id);
    void ExpireRequest();
    void AskToBeForwarded(std::uint32_t id);
    void Acknowledge(const Source& source, const AddForward& forward);
    std::string HostText() const;

    // participant_host.cpp
    void On(const Source&, const EnumSessions&);
    void On(const Source&, const RequestId&);
    void On(const Source&, const AddForwardRequest&);
    void On(const Source&, const AddForwardAck&);
    void On(const Source&, const EnumPlayer&);
    bool Answers(const EnumSessions& question) const;
    bool IsFull() const;
    bool MayAnswer(const Endpoint& tcp);
    bool MayEnter(const Endpoint& tcp) const;
    bool MayHaveAnotherPlayer(std::uint32_t machineId) const;
    SessionDescription CurrentDescription() const;
    std::uint32_t IdFor(const Source& source);
    void AdmitConfirmed();
    void Admit(std::uint32_t machineId);
    std::size_t TableBytesOf(std::uint32_t machineId) const;
    void CheckTableBytes(std::uint32_t machineId);
    NameTable MakeNameTable(const Endpoint& reader, const Machine* newcomer) const;
    PackedPlayer RecordOf(const Machine& machine, const Endpoint& reader) const;
    PackedPlayer RecordOf(const Player& player, const Endpoint& reader) const;
    PackedPlayer RecordOf(const Group& group, const Endpoint& reader) const;
    Bytes PortsOf(std::uint32_t machineId, const Endpoint& reader) const;
    void ExpireNewcomers();
    void FreeId(std::uint32_t id);

    // participant_members.cpp
    void On(const Source&, const SessionDescChanged&);
    void On(const Source&, const CreateMember&);
    void On(const Source&, const ChangeMember&);
    void On(const Source&, const DataChanged&);
    void On(const Source&, const NameChanged&);
    void OnDelete(const Source&, std::uint32_t playerId);
    void OnDeleteGroup(const Source&, std::uint32_t groupId);
    void OnGroupMembership(const Source&, const ChangeMember&);
    void VerifyOwnPlayers(const PackedPlayer& newPlayer);
    void AddMachine(const PackedPlayer& record, const Source& source, bool isSender);
    bool AddRemotePlayer(const PackedPlayer& record);
    bool AddRemoteGroup(const PackedPlayer& record);
    void AddOwnPlayer(std::uint32_t id);
    void AddOwnGroup(std::uint32_t id);
    bool MayChange(const Source& source, std::uint32_t ownerId);
    bool MayUseId(const Source& source, std::uint32_t id);
    CreateMember AnnouncementOf(const Player& player, Command what) const;

    // participant_messages.cpp
    void On(const Source&, const PlayerWrapper&);
    void On(const Source&, const Packet&);
    void OnPlayerMessage(const Source& source, std::uint32_t from, std::uint32_t to, ByteSpan payload);
    bool MaySpeakFor(const Source& source, const Player& player);
    void Deliver(std::uint32_t from, std::uint32_t to, std::uint32_t machineId, ByteSpan payload,
                 bool guaranteed);
    std::vector<std::uint32_t> LocalAddressees(std::uint32_t from, std::uint32_t to) const;
    std::vector<std::uint32_t> MachinesFor(std::uint32_t to) const;

    // participant_presence.cpp
    void On(const Source&, const Ping&);
    void On(const Source&, const YouAreDead&);
    void On(const Source&, const IAmNameServer&);
    void PingTheSilent();
    void SendDatagramTo(const Machine& machine, const SystemMessage& message);
    void Doubt(Machine& machine);
    void Gone(std::uint32_t machineId, const std::string& why);
    void CutOff(std::uint32_t machineId, const std::string& why);
    void OnHostFoundAlive();
    void RecheckClaim();
    void TellOthersGone(std::uint32_t machineId);
    void RemoveMachine(std::uint32_t machineId);
    void OnHostGone();
    void ChooseHost();
    void BecomeHost();
    void AdoptHost(std::uint32_t machineId);
    void HandGroupsToHost();
    void OpenNameServerPorts();
    void Lose(std::string why);

    // Messages that concern nobody here.
    void On(const Source&, const Chat&) {}
    void On(const Source&, const Packet2Ack&) {}
    void On(const Source&, const Multicast&) {}
    void On(const Source&, const UnknownMessage&) {}

    Network& network_;
    const Limits& limits_;
    const Timing& timing_;
    SessionSearch search_;
    TimePoint now_{};
    TimePoint nextChores_{};

    // The session.
    SessionDescription description_;
    std::u16string name_;
    std::u16string password_;
    std::uint32_t ownId_ = 0;   ///< the system player of this machine; 0: in no session
    std::uint32_t hostId_ = 0;  ///< the host's; 0: there is none
    Members members_;
    bool lost_ = false;
    std::uint32_t claimant_ = 0;  ///< says that it is the host, while the old one has not been given up
    std::optional<TimePoint> claimRecheck_;  ///< the old one has answered once, and is asked again then

    // Asking the host.
    Endpoint host_;  ///< while joining
    bool joining_ = false;
    Request request_ = Request::None;
    milliseconds requestLimit_{};
    TimePoint requestDeadline_{};
    Outcome outcome_;
    std::u16string wantedShortName_;
    std::u16string wantedLongName_;

    // Being the host. The ids are noted by everybody, for the day on which he becomes the host.
    IdTable ids_;
    std::optional<TimePoint> tookOver_;  ///< when another host left the session to this one
    std::map<std::uint32_t, Pending> pending_;
    std::vector<Newcomer> newcomers_;
    bool nameServerOpen_ = false;
    TimePoint nextNameServerTry_{};
    std::map<Endpoint, std::size_t> answers_;  ///< given to strangers in this second
    TimePoint answersSecond_{};

    // Messages.
    Inbox inbox_;
    Reassembly reassembly_;
    bool reassembling_ = false;
    std::deque<Early> early_;
    std::size_t earlyBytes_ = 0;
    bool replaying_ = false;
    Early replayed_;  ///< the one in hand

    std::deque<std::string> notices_;
    Dropped dropped_;
};

}  // namespace corvenna::directplay
