#include "directplay/stage.h"
#include "fuzz/fuzz_input.h"
#include "link/session.h"

/// A conversation: what comes from four machines and a stranger, what the sockets tell, how time passes, and
/// what the station does meanwhile. Whatever it is, the participant's picture of the session stays sound.
namespace {

using namespace corvenna;
using namespace corvenna::directplay;

/// First bytes of the steps of a conversation.
enum class StepKind : std::uint8_t { Time, Frame, Datagram, Shaped, Sockets, Station, Count };

constexpr std::size_t MaxSteps = 300;

class Conversation {
  public:
    explicit Conversation(std::string_view input) : input_(input) {
        const std::uint32_t kind = TakeNumber(input_, 1);
        const std::uint32_t flags =
            (kind & 2) != 0 ? SessionFlag::KeepAlive : SessionFlag::KeepAlive | SessionFlag::MigrateHost;
        if ((kind & 1) != 0) {
            stage_.Hosts(flags);
            for (std::uint32_t number = 2; number < 5; ++number) stage_.Admits(number);
        } else {
            for (std::uint32_t number = 2; number < 5; ++number) {
                stage_.Guests.push_back(Stage::MachineNumber(number, 2 * number));
            }
            if ((kind & 4) != 0) stage_.OwnId = Stage::IdOfSlot(2);
            (kind & 8) != 0 ? stage_.Knocks(flags) : stage_.Joins(flags);
        }
        sources_ = stage_.Guests;
        sources_.push_back(stage_.Host);
        sources_.push_back(Stage::MachineNumber(66, 60));
    }

    void Runs() {
        for (std::size_t step = 0; step < MaxSteps && !input_.empty(); ++step) {
            Takes(static_cast<StepKind>(TakeNumber(input_, 1) % static_cast<std::uint32_t>(StepKind::Count)));
            IsSound();
        }
    }

  private:
    std::uint32_t Number(std::size_t bytes) { return TakeNumber(input_, bytes); }
    const Remote& Source() { return sources_[Number(1) % sources_.size()]; }

    ByteSpan Rest() {
        const std::size_t size = std::min<std::size_t>(Number(2), input_.size());
        const std::string_view bytes = input_.substr(0, size);
        input_.remove_prefix(size);
        return std::as_bytes(std::span(bytes));
    }

    /// An id that means something more often than not.
    std::uint32_t Id() {
        const std::uint32_t choice = Number(1);
        if (choice < 32) return Stage::IdOfSlot(choice);
        if (choice < 40) return sources_[choice % sources_.size()].Id;
        if (choice < 48) return sources_[choice % sources_.size()].PlayerId;
        switch (choice) {
            case 48:
                return stage_.OwnId;
            case 49:
                return stage_.OwnPlayer;
            case 50:
                return EverybodyId;
            case 51:
                return UnknownId;
            default:
                return Number(4);
        }
    }

    void Takes(StepKind kind) {
        stage_.Me.Advance(stage_.Now);
        switch (kind) {
            case StepKind::Time:
                return stage_.Passes(milliseconds(Number(2)));
            case StepKind::Frame: {
                const Remote& source = Source();
                return stage_.Me.OnFrame(source.Tcp.Ip, Frame(source.Tcp.Port, Rest()));
            }
            case StepKind::Datagram: {
                const Remote& source = Source();
                return stage_.Me.OnDatagram(source.Udp, Rest());
            }
            case StepKind::Shaped: {
                const Remote& source = Source();
                return stage_.Gets(source.Tcp, Shaped(source));
            }
            case StepKind::Sockets:
                return Sockets();
            case StepKind::Station:
                return StationActs();
            case StepKind::Count:
                return;
        }
    }

    SystemMessage Shaped(const Remote& source) {
        switch (Number(1) % 12) {
            case 0:
                return RequestId{Command::RequestPlayerId, Number(1)};
            case 1:
                return RequestId{Command::RequestGroupId, 8};
            case 2: {
                AddForwardRequest request{source.Record(), {}, 0};
                request.Player.Id = request.Player.SystemPlayerId = Id();
                return request;
            }
            case 3: {
                CreateMember create = source.Announcement(u"Pilot");
                create.What = Number(1) % 2 == 0 ? Command::CreatePlayer : Command::CreateGroup;
                create.Member.Id = Id();
                create.Member.SystemPlayerId = Id();
                return create;
            }
            case 4:
                return ChangeMember{static_cast<Command>(0x0B + Number(1) % 4), Id(), Id()};
            case 5: {
                const Remote told = sources_[Number(1) % sources_.size()];
                AddForward forward{told.RecordWithPlace()};
                forward.Player.Id = forward.Player.SystemPlayerId = Id();
                return forward;
            }
            case 6:
                return AddForwardAck{Id()};
            case 7: {
                RequestPlayerReply reply;
                reply.Id = Id();
                return reply;
            }
            case 8: {
                IAmNameServer claim;
                claim.Host = Id();
                return claim;
            }
            case 9:
                return stage_.Table();
            case 10:
                return Ping{Command::Ping, Id(), 1};
            default:
                return YouAreDead{};
        }
    }

    void Sockets() {
        const std::uint32_t what = Number(1);
        const Endpoint place = Source().Tcp;
        switch (what % 6) {
            case 0:
                return stage_.Me.OnConnectionLost(place);
            case 1:
                return stage_.Me.OnDisconnected(place);
            case 2:
                return stage_.Me.OnUnreachable(place, "gone");
            case 3:
                return stage_.Me.OnMisbehaved(place, "too much");
            default:
                return stage_.Me.OnProbed(place, what % 6 == 4);
        }
    }

    void StationActs() {
        Participant& me = stage_.Me;
        const std::uint32_t what = Number(1);
        if (!me.IsMember()) return;
        try {
            switch (what % 6) {
                case 0:
                    return me.Send(Id(), Id(), Rest(), what >= 128);
                case 1:
                    return me.BeginCreatePlayer(u"Second", u"");
                case 2:
                    return me.BeginCreateGroup(u"Group");
                case 3:
                    return me.DestroyPlayer(Id());
                case 4:
                    return me.AddPlayerToGroup(Id(), Id());
                default:
                    while (me.Mail().Take()) {
                    }
            }
        } catch (const SessionError&) {
        }
    }

    void IsSound() {
        const Members& members = stage_.Me.Everybody();
        Require(members.Machines.Find(stage_.OwnId) == nullptr || stage_.Me.IsHost(),
                "one is not one's own peer");
        Require(members.Machines.Size() <= stage_.Bounds.Machines, "there are not too many machines");
        for (const Player& player : members.Players) {
            Require(IsGivenOut(player.Id), "a player has an id");
            const bool own = stage_.Me.IsOwnPlayer(player.Id);
            Require(own || members.Machines.Find(player.MachineId) != nullptr, "a player lives on a machine");
            Require(members.Machines.Find(player.Id) == nullptr, "an id means one thing");
        }
        for (const Group& group : members.Groups) {
            Require(members.Players.Find(group.Id) == nullptr, "an id means one thing");
            for (const std::uint32_t id : group.Members) {
                Require(members.Players.Find(id) != nullptr, "members of groups are players");
            }
        }
        Require(stage_.Me.TakeNotices().size() <= 100, "the operator is not flooded");
        stage_.Net.All.clear();
        stage_.Net.Disconnected.clear();
        stage_.Net.Probed.clear();
        stage_.Net.WereCutOff.clear();
    }

    std::string_view input_;
    Stage stage_;
    std::vector<Remote> sources_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Conversation(AsText(data, size)).Runs();
    return 0;
}
