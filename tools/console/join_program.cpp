#include "tools/console/join_program.h"

#include <fmt/format.h>

#include <ostream>

#include "tools/console/session_console.h"
#include "tools/console/session_list.h"
#include "tools/console/session_name.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

/// For a second look, where the first one has waited its full time.
constexpr auto SecondLook = 2000ms;

constexpr std::string_view Advice =
    "corvenna-console --search HOST shows which sessions are full or closed. The host and this computer "
    "connect to each other: firewalls on both must let TCP 2300 to 2349 and UDP 2350 to 2399 in.";

/// The session layer, which waits for the network until the terminal asks for the end.
DirectPlayOptions Options(const std::string& host, const directplay::SocketOptions& sockets,
                          std::function<bool()> keepWaiting) {
    DirectPlayOptions options;
    options.AskHost = [host] { return host; };
    options.KeepWaiting = std::move(keepWaiting);
    options.Sockets = sockets;
    return options;
}

/// Everything that answers, with what the session layer says about it.
struct Findings {
    std::vector<SessionRecord> Sessions;
    std::vector<std::string> Notices;
};

Findings FindAll(DirectPlayOptions options) {
    options.EnumerationFlags = directplay::EnumFlag::All | directplay::EnumFlag::PasswordRequired;
    DirectPlaySession dp(options);
    dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
    Findings found;
    found.Sessions = dp.GetDPEnumSessions({});
    found.Notices = dp.TakeNotices();
    return found;
}

/// A session that takes nobody in does not answer who looks for one to join, so another look is worth it.
std::string WhyNoSession(const std::string& silence, DirectPlayOptions options) {
    options.EnumerationTime = SecondLook;
    const Findings found = FindAll(std::move(options));
    for (const SessionRecord& session : found.Sessions) {
        const std::string why = WhyClosed(session);
        if (why.empty()) continue;
        return fmt::format("there {}, but {}", SessionsInWords({session}), why);
    }
    return silence;
}

}  // namespace

void RunJoin(Station station, const JoinOptions& options, const directplay::SocketOptions& sockets,
             Terminal& terminal, RadioPrinter& printer) {
    SessionConsole* running = nullptr;
    bool stopAsked = false;
    const DirectPlayOptions directPlay = Options(options.Host, sockets, [&] {
        running->SetTime(terminal.Now());
        stopAsked = stopAsked || terminal.Wait(0ms).StopAsked;
        return !stopAsked;
    });
    SessionConsole console(
        std::move(station),
        {NameInSession(options.Session, "the session's name"),
         NameInSession(options.Callsign, "the controller's name")},
        [&] { return std::make_unique<DirectPlayRoot>(directPlay); }, printer);
    running = &console;
    try {
        console.Join();
    } catch (const NoSessionError& error) {
        if (stopAsked) return;
        throw SessionError(WhyNoSession(error.what(), directPlay));
    } catch (const SessionError& error) {
        if (stopAsked) return;
        throw SessionError(fmt::format("{}\n{}", error.what(), Advice));
    }
    RunConsole(console, terminal, options.Length);
    const bool timeIsOver = options.Length && terminal.Now() >= *options.Length;
    if (timeIsOver && !console.Admitted()) throw SessionError("the host has not admitted the controller");
}

void RunSearch(const std::string& host, const directplay::SocketOptions& sockets, Terminal& terminal,
               std::ostream& out) {
    bool stopAsked = false;
    Findings found;
    try {
        found = FindAll(Options(host, sockets, [&] {
            stopAsked = stopAsked || terminal.Wait(0ms).StopAsked;
            return !stopAsked;
        }));
    } catch (const SessionError&) {
        if (stopAsked) return;
        throw;
    }
    if (found.Sessions.empty())
        throw SessionError(Printable(fmt::format("{}", fmt::join(found.Notices, ". "))));
    PrintSessions(out, found.Sessions);
}

}  // namespace corvenna
