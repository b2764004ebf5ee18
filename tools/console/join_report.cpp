#include "tools/console/join_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "link/directplay/directplay_session.h"
#include "link/directplay/port_check.h"
#include "link/fs_messages.h"
#include "link/operator_desk.h"
#include "station/code_page.h"
#include "tools/console/discretion.h"
#include "tools/console/session_list.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;
using namespace directplay;

constexpr std::string_view OwnName = "Corvenna_Report";
constexpr auto LookInterval = 50ms;

/// Positions of others come several times a second; the first messages are those that tell how a join went.
constexpr std::size_t MostArrivals = 200;

std::string PortsInWords(std::string_view kind, const PortRange& range,
                         const std::vector<std::uint16_t>& taken) {
    const std::string ports = range.First == range.Last ? fmt::format("{}", range.First)
                                                        : fmt::format("{} to {}", range.First, range.Last);
    const std::string state =
        taken.empty() ? "free" : fmt::format("taken or not allowed: {}", fmt::join(taken, ", "));
    return fmt::format("  {} {:<14} {}\n", kind, ports, state);
}

/// What happened, in the order in which it did, with the time since the beginning. Both threads write in it.
class Diary {
  public:
    void Write(const std::string& line) {
        const std::lock_guard lock(mutex_);
        lines_ += fmt::format("  {:7.3f} s  {}\n", Seconds(), line);
    }

    void WriteArrival(const std::string& line) {
        const std::lock_guard lock(mutex_);
        if (++arrivals_ > MostArrivals) return;
        arrivalLines_ += fmt::format("  {:7.3f} s  {}\n", Seconds(), line);
    }

    std::string Steps() {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

    std::string Arrivals() {
        const std::lock_guard lock(mutex_);
        std::string text = arrivals_ == 0 ? "  nothing\n" : arrivalLines_;
        if (arrivals_ > MostArrivals) text += fmt::format("  and {} more\n", arrivals_ - MostArrivals);
        return text;
    }

  private:
    double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun_).count();
    }

    const std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
    std::mutex mutex_;
    std::string lines_, arrivalLines_;
    std::size_t arrivals_ = 0;
};

class Inquiry {
  public:
    Inquiry(const JoinReportOptions& options, Terminal& terminal,
            const std::function<void(std::string_view)>& tell)
        : options_(options), terminal_(terminal), tell_(tell), dp_(directPlay_) {
        if (!ParseIp(HostsName())) discretion_.Keep(HostsName());
        discretion_.Keep(Utf8ToCodePage(options.Session));
    }

    std::string Run() {
        tell_("looking which ports are free");
        const std::string ports = Ports();
        std::vector<SessionRecord> sessions = Search();
        if (const SessionRecord* session = Choose(sessions)) Join(*session);
        std::string report = fmt::format("{}: report of a join\nsystem: {}\n", ProgramTitle, options_.System);
        report += "\nPorts of this computer\n" + ports;
        report += fmt::format("\nSessions found: {}\n", sessions.size());
        for (const SessionRecord& session : sessions) report += InWords(session);
        report += "\nStep by step\n" + diary_.Steps();
        report += "\nWhat arrived\n" + diary_.Arrivals();
        return report;
    }

  private:
    std::string Ports() const {
        const std::uint32_t ip = options_.Sockets.BindIp;
        const PortRange server{options_.Sockets.NameServer, options_.Sockets.NameServer};
        return PortsInWords("TCP", options_.Sockets.Tcp, TakenTcpPorts(ip, options_.Sockets.Tcp)) +
               PortsInWords("UDP", options_.Sockets.Udp, TakenUdpPorts(ip, options_.Sockets.Udp)) +
               PortsInWords("TCP", server, TakenTcpPorts(ip, server)) +
               PortsInWords("UDP", server, TakenUdpPorts(ip, server));
    }

    void Step(const std::string& line) {
        tell_(line);
        diary_.Write(line);
    }

    void Tell(std::string_view words) { diary_.Write(CodePageToUtf8(discretion_.Told(words))); }

    void TellNotices() {
        for (const std::string& notice : dp_.TakeNotices()) Tell("notice: " + notice);
    }

    bool GoesOn() {
        stopAsked_ = stopAsked_ || terminal_.Wait(0ms).StopAsked;
        return !stopAsked_;
    }

    std::string HostsName() const { return options_.Host.substr(0, options_.Host.find(':')); }

    std::string Place() const {
        if (options_.Host.empty()) return "on the local network";
        return "at " + (ParseIp(HostsName()) ? KindOfPlace(options_.Host) : "a computer by its name");
    }

    std::vector<SessionRecord> Search() {
        std::vector<SessionRecord> sessions;
        try {
            Step("searching " + Place());
            dp_.InitializeConnection(std::string(ConnectionAddress::TcpIp));
            sessions = dp_.GetDPEnumSessions({});
            diary_.Write(fmt::format("the search has ended; listening at TCP {} and UDP {}", dp_.TcpPort(),
                                     dp_.UdpPort()));
        } catch (const std::exception& error) {
            Tell(error.what());
        }
        for (const SessionRecord& session : sessions) discretion_.Keep(session.SessionName);
        TellNotices();
        return sessions;
    }

    const SessionRecord* Choose(const std::vector<SessionRecord>& sessions) const {
        const std::string wanted = Utf8ToCodePage(options_.Session);
        const auto fits = [&](const SessionRecord& session) {
            return wanted.empty() ? WhyClosed(session).empty() : session.SessionName == wanted;
        };
        const auto found = std::find_if(sessions.begin(), sessions.end(), fits);
        if (found != sessions.end()) return &*found;
        return sessions.empty() ? nullptr : &sessions.front();
    }

    static std::string InWords(const SessionRecord& session) {
        const std::string why = WhyClosed(session);
        return fmt::format(
            "  a name of {} characters\n"
            "    players      {} of {}\n"
            "    host         {}\n"
            "    flags        0x{:08X}\n"
            "    session      {}\n"
            "    application  {}\n"
            "{}",
            session.SessionName.size(), session.CurrentPlayers, session.MaxPlayers, KindOfPlace(session.Host),
            session.Flags, WithoutNode(session.GuidInstance), session.GuidApplication,
            why.empty() ? "" : "    closed       " + why + "\n");
    }

    void Join(const SessionRecord& session) {
        try {
            Step(fmt::format("joining the one of {} characters at {}", session.SessionName.size(),
                             KindOfPlace(session.Host)));
            dp_.Open(session, OpenMode::Join);
        } catch (const std::exception& error) {
            Tell(error.what());
            return TellNotices();
        }
        AskForAdmission();
        TellNotices();
        Leave();
    }

    void AskForAdmission() {
        try {
            TellMembers();
            Step("asking for a player");
            player_ = dp_.CreatePlayer(std::string(OwnName), "Player");
            TellMembers();
            Step("asking to be admitted");
            dp_.Send(player_, 0, WriteEmpty(MessageId::RequestJoinAsPlayer));
            AwaitAdmission();
        } catch (const std::exception& error) {
            Tell(error.what());
        }
    }

    void TellMembers() {
        const auto players = dp_.GetDPEnumPlayers();
        const auto groups = dp_.GetDPEnumGroups();
        for (const SessionMember& member : players) Keep(member);
        for (const SessionMember& group : groups) Keep(group);
        const bool known = std::any_of(groups.begin(), groups.end(), [](const auto& group) {
            return group.ShortName == RefuseParamsGroup;
        });
        diary_.Write(fmt::format("players: {}; groups: {}{}", players.size(), groups.size(),
                                 known ? fmt::format(", {} among them", RefuseParamsGroup) : ""));
    }

    void Keep(const SessionMember& member) {
        if (member.ShortName != OwnName) discretion_.Keep(member.ShortName);
    }

    void AwaitAdmission() {
        const auto deadline = terminal_.Now() + options_.AdmissionTime;
        while (terminal_.Now() < deadline) {
            for (const SessionMember& member : dp_.GetDPEnumPlayers()) Keep(member);
            while (dp_.GetMessageCount(player_) > 0) {
                if (IsAnswer()) return;
            }
            stopAsked_ = terminal_.Wait(LookInterval).StopAsked || stopAsked_;
            if (stopAsked_) return diary_.Write("asked to end");
        }
        diary_.Write(fmt::format("no answer within {} s", options_.AdmissionTime / 1s));
    }

    bool IsAnswer() {
        DirectPlayMessage message;
        dp_.Receive(message);
        const MessageHeader header = ReadHeader(message);
        if (header.Id == MessageId::RefusePlayer) {
            diary_.Write("refused");
            return true;
        }
        if (header.Id != MessageId::AdmitPlayer || message.ReadLong() != player_) return false;
        diary_.Write("admitted");
        return true;
    }

    void Leave() {
        try {
            Step("leaving");
            if (player_ != 0) dp_.DestroyPlayer(player_);
            dp_.Close();
            diary_.Write("left");
        } catch (const std::exception& error) {
            Tell(error.what());
        }
        TellNotices();
    }

    DirectPlayOptions DirectPlay() {
        DirectPlayOptions directPlay;
        directPlay.AskHost = [this] { return options_.Host; };
        directPlay.KeepWaiting = [this] { return GoesOn(); };
        directPlay.EnumerationFlags = EnumFlag::All | EnumFlag::PasswordRequired;
        directPlay.WatchArrivals = [this](const Endpoint& from, bool isDatagram, ByteSpan message) {
            diary_.WriteArrival(ArrivalInWords(from, isDatagram, message));
        };
        directPlay.Sockets = options_.Sockets;
        return directPlay;
    }

    const JoinReportOptions& options_;
    Terminal& terminal_;
    const std::function<void(std::string_view)>& tell_;
    Discretion discretion_;
    Diary diary_;
    bool stopAsked_ = false;
    std::int32_t player_ = 0;
    const DirectPlayOptions directPlay_ = DirectPlay();
    DirectPlaySession dp_;
};

}  // namespace

std::string ReportOfJoin(const JoinReportOptions& options, Terminal& terminal,
                         const std::function<void(std::string_view line)>& tell) {
    return Inquiry(options, terminal, tell).Run();
}

}  // namespace corvenna
