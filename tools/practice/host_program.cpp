#include "tools/practice/host_program.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <ostream>
#include <stdexcept>

#include "station/code_page.h"
#include "tools/console/radio_printer.h"
#include "tools/console/session_name.h"

namespace corvenna {

namespace {

constexpr std::string_view AtCommand = "/at ";
constexpr std::string_view RemoveCommand = "/remove ";

/// How often the host looks into the session.
constexpr std::chrono::milliseconds StepInterval{50};

/// A port of another number than the protocol's is told with the address.
std::string Address(const HostOptions& options, std::uint16_t port) {
    const bool usual = port == directplay::SocketOptions{}.NameServer;
    return usual ? options.Bind : fmt::format("{}:{}", options.Bind, port);
}

void Type(SimulatorPeer& peer, std::string_view line, const std::function<void(const std::string&)>& print) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    if (line.empty()) return;
    if (line.starts_with(AtCommand)) {
        try {
            peer.MoveTo(ParsePosition(line.substr(AtCommand.size())));
        } catch (const std::invalid_argument& error) {
            print(error.what());
        }
    } else if (line.starts_with(RemoveCommand)) {
        const std::string_view name = line.substr(RemoveCommand.size());
        if (!peer.Remove(Utf8ToCodePage(name))) print(fmt::format("there is no {} in the session", name));
    } else {
        peer.Say(Utf8ToCodePage(line));
    }
}

}  // namespace

AircraftState ParsePosition(std::string_view text) {
    std::array<double, 4> numbers{};
    const char* next = text.data();
    const char* const end = text.data() + text.size();
    std::size_t count = 0;
    while (count < numbers.size()) {
        const auto [behind, error] = std::from_chars(next, end, numbers[count]);
        if (error != std::errc{}) break;
        ++count;
        next = behind;
        if (next == end || *next != ',') break;
        ++next;
    }
    const bool inRange = numbers[0] >= -90 && numbers[0] <= 90 && numbers[1] >= -180 && numbers[1] <= 180 &&
                         numbers[2] >= -2000 && numbers[2] <= 100000 && numbers[3] >= 0 && numbers[3] <= 360;
    if (next != end || count < 2 || text.ends_with(',') || !inRange) {
        throw std::invalid_argument(fmt::format(
            "\"{}\" is no position: latitude,longitude in degrees, then feet and true heading if wanted",
            text));
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

void RunHost(const HostOptions& options, const directplay::SocketOptions& sockets, Terminal& terminal,
             std::ostream& out) {
    const auto ip = directplay::ParseIp(options.Bind);
    if (!ip) throw std::invalid_argument(fmt::format("\"{}\" is no address of this computer", options.Bind));
    DirectPlayOptions directPlay;
    directPlay.Sockets = sockets;
    directPlay.Sockets.BindIp = *ip;
    directPlay.Sockets.NameServer = options.Port;

    const auto print = [&](const std::string& line) { out << line << std::endl; };
    const std::string sessionName = NameInSession(options.SessionName, "the session's name");
    SimulatorPilot pilot{
        NameInSession(options.Pilot, "the host's own name"), "Practice aircraft", options.Observer, {}};
    if (!options.Position.empty()) pilot.Where = ParsePosition(options.Position);
    SimulatorEvents events;
    events.Heard = [&](std::string_view from, std::string_view text) {
        print(fmt::format("{}> {}", Printable(from), Printable(text)));
    };
    events.Noted = [&](std::string_view line) { print(Printable(line)); };

    auto session = std::make_unique<DirectPlaySession>(directPlay);
    DirectPlaySession& dp = *session;
    SimulatorPeer peer(std::move(session), pilot, events);
    peer.Host(sessionName, options.Players);
    print(fmt::format("ready: {} at {}", options.SessionName, Address(options, dp.NameServerPort())));

    while (peer.InStage() == SimulatorPeer::Stage::Flying) {
        peer.Step(terminal.Now());
        for (const std::string& line : dp.TakeNotices()) print(Printable(line));
        const TerminalInput input = terminal.Wait(StepInterval);
        for (const std::string& line : input.Lines) Type(peer, line, print);
        if (input.StopAsked) break;
    }
    peer.Leave();
}

}  // namespace corvenna
