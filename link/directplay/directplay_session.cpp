#include "link/directplay/directplay_session.h"

#include <fmt/format.h>

#include <charconv>
#include <condition_variable>
#include <mutex>
#include <random>

#include "link/directplay/interfaces.h"
#include "link/directplay/socket_network.h"
#include "link/directplay/wire_frame.h"
#include "station/code_page.h"
#include "station/numbers.h"

namespace corvenna {

using namespace directplay;

namespace {

constexpr std::string_view IpxName = "IPX Connection For DirectPlay";
constexpr std::string_view TcpIpName = "Internet TCP/IP Connection For DirectPlay";
constexpr std::string_view ThisComputerName = "Practice Session On This Computer";

constexpr std::uint32_t ThisComputer = 0x7F000001;

/// How often a waiting operation asks whether it may go on.
constexpr milliseconds WaitStep(50);

/// How long Close waits for what is still to be sent.
constexpr milliseconds FlushLimit(1000);

/// How long a name may take to be looked up.
constexpr milliseconds ResolveLimit(5000);

/// Beyond the limit of each request, which the participant watches itself.
constexpr milliseconds RequestGrace(1000);

/// Ids of players are 32-bit numbers that the station wants above 0, so the key has no highest bit. Its
/// upper half is not 0 either, so that ids look like those of other makes.
std::uint32_t NewIdKey() {
    std::random_device random;
    return (random() & 0x7FFFFFFF) | 0x00010000;
}

std::int32_t ToId(std::uint32_t id) { return static_cast<std::int32_t>(id); }
std::uint32_t FromId(std::int32_t id) { return static_cast<std::uint32_t>(id); }

std::int32_t ToCount(std::uint32_t count) {
    return static_cast<std::int32_t>(std::min<std::uint32_t>(count, 0x7FFFFFFF));
}

SessionRecord ToRecord(const FoundSession& found) {
    SessionRecord record;
    record.GuidApplication = GuidText(found.Description.Application);
    record.GuidInstance = GuidText(found.Description.Instance);
    record.SessionName = Utf16ToCodePage(found.Name);
    record.MaxPlayers = ToCount(found.Description.MaxPlayers);
    record.CurrentPlayers = ToCount(found.Description.CurrentPlayers);
    record.Flags = found.Description.Flags;
    record.Host = EndpointText(found.Host);
    return record;
}

/// "host", "host:port"
std::pair<std::string, std::uint16_t> SplitHost(const std::string& text, std::uint16_t usualPort) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) return {text, usualPort};
    std::uint16_t port = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data() + colon + 1, end, port);
    if (error != std::errc{} || behind != end || port == 0) {
        throw SessionError(fmt::format("\"{}\" has no port behind its colon", text));
    }
    return {text.substr(0, colon), port};
}

}  // namespace

/// The sockets and the participant behind them. The mutex guards the participant; the events come from the
/// sockets' thread, everything else from the station's.
struct DirectPlaySession::Live final : NetworkEvents {
    explicit Live(const DirectPlayOptions& options)
        : Options(options),
          Net(options.Sockets, *this),
          Everyone(Net, options.Sockets.Bounds, options.Sockets.Times) {
        Everyone.Advance(Clock::now());
        Net.Start();
    }
    ~Live() override { Net.Stop(); }

    template <class Operation>
    auto With(Operation operation) {
        const std::lock_guard lock(Mutex);
        Everyone.Advance(Clock::now());
        return operation(Everyone);
    }

    template <class Event>
    void Tell(Event event) {
        With(event);
        Changed.notify_all();
    }

    void OnFrame(std::uint32_t ip, ByteSpan frame) override {
        if (Options.WatchArrivals) Options.WatchArrivals({ip, SenderPort(frame)}, false, frame);
        Tell([&](Participant& p) { p.OnFrame(ip, frame); });
    }
    void OnDatagram(const Endpoint& source, ByteSpan datagram) override {
        if (Options.WatchArrivals) Options.WatchArrivals(source, true, datagram);
        Tell([&](Participant& p) { p.OnDatagram(source, datagram); });
    }
    void OnConnectionLost(const Endpoint& tcp) override {
        Tell([&](Participant& p) { p.OnConnectionLost(tcp); });
    }
    void OnDisconnected(const Endpoint& tcp) override {
        Tell([&](Participant& p) { p.OnDisconnected(tcp); });
    }
    void OnUnreachable(const Endpoint& tcp, const std::string& why) override {
        Tell([&](Participant& p) { p.OnUnreachable(tcp, why); });
    }
    void OnMisbehaved(const Endpoint& tcp, const std::string& why) override {
        Tell([&](Participant& p) { p.OnMisbehaved(tcp, why); });
    }
    void OnProbed(const Endpoint& tcp, bool reached) override {
        Tell([&](Participant& p) { p.OnProbed(tcp, reached); });
    }
    void OnTimer() override {
        Tell([](Participant&) {});
    }

    const DirectPlayOptions& Options;
    std::mutex Mutex;
    std::condition_variable Changed;
    SocketNetwork Net;
    Participant Everyone;
};

DirectPlaySession::DirectPlaySession(const DirectPlayOptions& options) : options_(options) {}

DirectPlaySession::~DirectPlaySession() {
    if (open_) Close();
}

DirectPlaySession::Live& DirectPlaySession::Sockets() {
    if (!live_) live_ = std::make_unique<Live>(options_);
    return *live_;
}

DirectPlaySession::Live& DirectPlaySession::Opened() const {
    if (!open_) throw SessionError("the session is not open");
    return *live_;
}

/// Returns when done says so, or at the deadline. Throws when the operator gives up.
void DirectPlaySession::WaitFor(const std::function<bool(Participant&)>& done, TimePoint deadline) {
    Live& live = Sockets();
    std::unique_lock lock(live.Mutex);
    while (!done(live.Everyone) && Clock::now() < deadline) {
        live.Changed.wait_until(lock, std::min(deadline, Clock::now() + WaitStep));
        if (!options_.KeepWaiting) continue;
        lock.unlock();
        if (!options_.KeepWaiting()) throw SessionError("the operator gave up");
        lock.lock();
    }
}

// ---- Finding a session

std::vector<Connection> DirectPlaySession::GetDPEnumConnections() {
    return {{std::string(IpxName), std::string(ConnectionAddress::Ipx)},
            {std::string(TcpIpName), std::string(ConnectionAddress::TcpIp)},
            {std::string(ThisComputerName), std::string(ConnectionAddress::ThisComputer)}};
}

void DirectPlaySession::InitializeConnection(const std::string& address) {
    connection_ = address;
    host_ = "";
    if (address == ConnectionAddress::TcpIp && options_.AskHost) host_ = options_.AskHost();
}

std::vector<SessionRecord> DirectPlaySession::GetDPEnumSessions(const SessionRecord& wanted) {
    if (connection_ == ConnectionAddress::Ipx) throw SessionError("there is no IPX network here");
    if (!host_) throw SessionError("the operator gave up");
    Live& live = Sockets();
    const SessionSearch::Wanted where = WhereToAsk(wanted);
    if (where.Datagrams.empty()) return {};

    live.With([&](Participant& p) { p.Search().Begin(where, p.Now()); });
    const auto complete = [&](Participant& p) {
        const bool found = !p.Search().Found().empty();
        return where.Stream && found && Clock::now() - p.Search().LastFound() >= options_.EnumerationSettle;
    };
    const auto end = [&] {
        return live.With([&](Participant& p) {
            found_ = p.Search().Found();
            p.Search().End();
            return p.Search().StreamTrouble();
        });
    };
    try {
        WaitFor(complete, Clock::now() + options_.EnumerationTime);
    } catch (const SessionError&) {
        end();
        throw;
    }
    const std::string streamTrouble = end();
    if (found_.empty()) ExplainSilence(where, streamTrouble);

    std::vector<SessionRecord> records;
    for (const FoundSession& found : found_) records.push_back(ToRecord(found));
    return records;
}

/// One host that was named, or everybody on the local network. No place at all when the name is nobody's.
SessionSearch::Wanted DirectPlaySession::WhereToAsk(const SessionRecord& wanted) {
    SessionSearch::Wanted where;
    where.Application = ParseGuid(wanted.GuidApplication).value_or(Guid{});
    where.Password = CodePageToUtf16(wanted.SessionPassword);
    where.Flags = options_.EnumerationFlags;
    if (connection_ == ConnectionAddress::ThisComputer) {
        where.Stream = Endpoint{ThisComputer, options_.Sockets.NameServer};
    } else if (!host_->empty()) {
        where.Stream = Resolve(*host_);
        if (!where.Stream) return where;
    } else {
        for (const std::uint32_t ip : BroadcastAddresses())
            where.Datagrams.push_back({ip, options_.Sockets.NameServer});
        return where;
    }
    where.Datagrams = {*where.Stream};
    return where;
}

std::optional<Endpoint> DirectPlaySession::Resolve(const std::string& host) {
    const auto [name, port] = SplitHost(host, options_.Sockets.NameServer);
    if (const auto ip = ParseIp(name)) return Endpoint{*ip, port};

    struct Answer {
        bool Come = false;
        std::optional<std::uint32_t> Ip;
    };
    Live& live = Sockets();
    const auto answer = std::make_shared<Answer>();  // it may come when nobody waits for it any more
    live.Net.Resolve(name, [&live, answer](std::optional<std::uint32_t> ip) {
        live.Tell([&](Participant&) { *answer = {true, ip}; });
    });
    WaitFor([&](Participant&) { return answer->Come; }, Clock::now() + ResolveLimit);
    const auto ip = live.With([&](Participant&) { return answer->Ip; });
    if (ip) return Endpoint{*ip, port};
    notices_.push_back(fmt::format("\"{}\" is no computer's name or address; check how it is written", name));
    return std::nullopt;
}

void DirectPlaySession::ExplainSilence(const SessionSearch::Wanted& wanted,
                                       const std::string& streamTrouble) {
    const std::string where = wanted.Stream ? "at " + EndpointText(*wanted.Stream) : "on the local network";
    std::string line = fmt::format("no session answered {}", where);
    if (!streamTrouble.empty()) line += fmt::format(" (UDP: silence; TCP: {})", streamTrouble);
    line += fmt::format(
        ". Is a session open there, with room for one more? The host answers by a connection to this "
        "computer: a firewall here must let TCP {} and UDP {} in, one there port {}",
        live_->Net.TcpPort(), live_->Net.UdpPort(),
        wanted.Stream ? wanted.Stream->Port : options_.Sockets.NameServer);
    notices_.push_back(std::move(line));
}

// ---- Entering and leaving it

void DirectPlaySession::Open(const SessionRecord& session, OpenMode mode) {
    if (open_) throw SessionError("the session is open already");
    if (mode == OpenMode::Create) {
        Create(session);
    } else {
        Join(session);
    }
    open_ = true;
}

void DirectPlaySession::Create(const SessionRecord& session) {
    SessionDescription description;
    description.Flags = SessionFlag::MigrateHost | SessionFlag::KeepAlive;
    description.Instance = RandomGuid();
    description.Application = ParseGuid(session.GuidApplication).value_or(SessionSearch::OlderSimulator);
    description.MaxPlayers = static_cast<std::uint32_t>(std::max(session.MaxPlayers, 0));
    description.Reserved1 = NewIdKey();
    const bool hosting = Sockets().With([&](Participant& p) {
        return p.Host(description, CodePageToUtf16(session.SessionName),
                      CodePageToUtf16(session.SessionPassword));
    });
    if (hosting) return;
    live_.reset();
    throw SessionError(
        fmt::format("port {} (TCP or UDP) at {} is taken by another program. If a session is hosted on this "
                    "computer already, end it first; if none is, a helper of Windows may have outlived its "
                    "game: end dplaysvr.exe in the Task Manager",
                    options_.Sockets.NameServer, IpText(options_.Sockets.BindIp)));
}

void DirectPlaySession::Join(const SessionRecord& session) {
    const auto found = std::find_if(found_.begin(), found_.end(), [&](const FoundSession& f) {
        return GuidText(f.Description.Instance) == session.GuidInstance;
    });
    if (found == found_.end()) {
        throw SessionError(fmt::format("there is no session \"{}\" any more", session.SessionName));
    }
    Sockets().With([&](Participant& p) { p.BeginJoin(*found, CodePageToUtf16(session.SessionPassword)); });
    FinishRequest(fmt::format("cannot join \"{}\"", session.SessionName));
}

/// Waits for the answer to what was begun. Throws when there is none, or when it is no.
std::int32_t DirectPlaySession::FinishRequest(const std::string& what) {
    const auto ready = [](Participant& p) { return p.LastOutcome().Ready; };
    try {
        WaitFor(ready,
                Clock::now() + options_.Sockets.Times.Request + options_.Sockets.Times.Table + RequestGrace);
    } catch (const SessionError& error) {
        live_->With([&](Participant& p) { p.Abandon(error.what()); });
        throw;
    }
    const Participant::Outcome outcome = live_->With([](Participant& p) { return p.LastOutcome(); });
    if (!outcome.Trouble.empty()) throw SessionError(fmt::format("{}: {}", what, outcome.Trouble));
    return ToId(outcome.Id);
}

void DirectPlaySession::Close() {
    Live& live = Opened();
    live.With([&](Participant& p) {
        p.Leave();
        for (std::string& line : p.TakeNotices()) notices_.push_back(std::move(line));
    });
    live.Net.Flush(FlushLimit);
    open_ = false;
    live_.reset();
    found_.clear();
}

// ---- Players and groups

std::int32_t DirectPlaySession::CreatePlayer(const std::string& friendlyName, const std::string& formalName) {
    Opened().With([&](Participant& p) {
        p.BeginCreatePlayer(CodePageToUtf16(friendlyName), CodePageToUtf16(formalName));
    });
    return FinishRequest(fmt::format("cannot create the player \"{}\"", friendlyName));
}

void DirectPlaySession::DestroyPlayer(std::int32_t playerId) {
    Opened().With([&](Participant& p) { p.DestroyPlayer(FromId(playerId)); });
}

std::vector<SessionMember> DirectPlaySession::GetDPEnumGroups() {
    return Opened().With([](Participant& p) {
        std::vector<SessionMember> groups;
        for (const Group& group : p.Everybody().Groups) {
            if (group.ParentId == 0) groups.push_back({ToId(group.Id), group.Name});
        }
        return groups;
    });
}

std::int32_t DirectPlaySession::CreateGroup(const std::string& name) {
    Opened().With([&](Participant& p) { p.BeginCreateGroup(CodePageToUtf16(name)); });
    return FinishRequest(fmt::format("cannot create the group \"{}\"", name));
}

void DirectPlaySession::AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) {
    Opened().With([&](Participant& p) { p.AddPlayerToGroup(FromId(groupId), FromId(playerId)); });
}

std::vector<SessionMember> DirectPlaySession::GetDPEnumPlayers() {
    return Opened().With([](Participant& p) {
        std::vector<SessionMember> players;
        for (const Player& player : p.Everybody().Players) players.push_back({ToId(player.Id), player.Name});
        return players;
    });
}

std::string DirectPlaySession::GetPlayerFriendlyName(std::int32_t playerId) {
    return Opened().With([&](Participant& p) {
        const Player* player = p.Everybody().Players.Find(FromId(playerId));
        if (player == nullptr)
            throw SessionError(fmt::format("participant {} has left the session", playerId));
        return player->Name;
    });
}

// ---- Messages

std::int32_t DirectPlaySession::GetMessageCount(std::int32_t playerId) {
    return Opened().With(
        [&](Participant& p) { return Narrow<std::int32_t>(p.Mail().Count(FromId(playerId))); });
}

Envelope DirectPlaySession::Receive(DirectPlayMessage& message) {
    const std::optional<Letter> letter = Opened().With([](Participant& p) { return p.Mail().Take(); });
    if (!letter) throw SessionError("no message waits");
    message.Assign(letter->Payload);
    return {ToId(letter->From), ToId(letter->To)};
}

void DirectPlaySession::Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) {
    Opened().With([&](Participant& p) { p.Send(FromId(from), FromId(to), message.Bytes(), true); });
}

void DirectPlaySession::SendUnguaranteed(std::int32_t from, std::int32_t to,
                                         const DirectPlayMessage& message) {
    Opened().With([&](Participant& p) { p.Send(FromId(from), FromId(to), message.Bytes(), false); });
}

// ---- What is going on

std::vector<std::string> DirectPlaySession::TakeNotices() {
    std::vector<std::string> lines;
    lines.swap(notices_);
    if (!live_) return lines;
    const auto fresh = live_->With([](Participant& p) { return p.TakeNotices(); });
    lines.insert(lines.end(), fresh.begin(), fresh.end());
    return lines;
}

std::uint16_t DirectPlaySession::TcpPort() const { return live_ ? live_->Net.TcpPort() : std::uint16_t{0}; }
std::uint16_t DirectPlaySession::UdpPort() const { return live_ ? live_->Net.UdpPort() : std::uint16_t{0}; }
std::uint16_t DirectPlaySession::NameServerPort() const {
    return live_ ? live_->Net.NameServerPort() : std::uint16_t{0};
}

bool DirectPlaySession::IsHost() const {
    return Opened().With([](Participant& p) { return p.IsHost(); });
}

Dropped DirectPlaySession::DroppedSoFar() const {
    return Opened().With([](Participant& p) { return p.DroppedSoFar(); });
}

}  // namespace corvenna
