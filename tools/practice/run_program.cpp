#include "tools/practice/run_program.h"

#include <fmt/format.h>

#include <ostream>
#include <stdexcept>

#include "practice/practice_folder.h"
#include "practice/simulator_peer.h"
#include "station/code_page.h"
#include "tools/platform/platform.h"
#include "tools/practice/started_program.h"

namespace corvenna {

namespace {

constexpr std::string_view SessionName = "Corvenna Practice";
constexpr std::string_view HostName = "Practice_Host";
constexpr int BesidesThePilots = 10;  // host, controller, people who sit in, one who looks for the airport

/// What a simulator that only hosts is.
SimulatorPeer MakeHost(const DirectPlayOptions& options) {
    return SimulatorPeer(std::make_unique<DirectPlaySession>(options),
                         {.Name = std::string(HostName), .Observer = true, .Where = {}});
}

}  // namespace

void RunWholePractice(const RunOptions& options, Terminal& terminal, std::ostream& out) {
    Station station;
    SelectByName(station, options.App, Utf8ToCodePage(options.Airport));

    DirectPlayOptions hosting;
    hosting.Sockets = options.Sockets;
    hosting.Sockets.BindIp = OwnAddress(options.Bind);
    SimulatorPeer host = MakeHost(hosting);
    host.Host(std::string(SessionName), options.Traffic.Pilots + BesidesThePilots);

    SessionAccess access;
    access.Host = options.Bind;
    access.Sockets = hosting.Sockets;
    FlyingParty party(std::move(station), access, options.Traffic, !options.Picture.empty(), {});
    StartedProgram controller(options.Station);
    LeaveInputToOthers();
    FlyUntil(party, terminal, options.Length, [&](std::chrono::milliseconds now) {
        host.Step(now);
        return !controller.Status();
    });
    const std::optional<int> early = controller.Status();
    const std::string summary = party.Summary();
    controller.End();
    party.Leave();
    host.Leave();
    if (!options.Picture.empty()) party.DrawPicture(options.Picture);
    out << summary << std::flush;
    if (early && *early != 0) {
        throw std::runtime_error(
            fmt::format("the station's program {} has ended with status {}", options.Station[0], *early));
    }
}

}  // namespace corvenna
