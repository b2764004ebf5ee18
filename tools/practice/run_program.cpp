#include "tools/practice/run_program.h"

#include <fmt/format.h>

#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "practice/simulator_peer.h"
#include "tools/platform/platform.h"
#include "tools/practice/fly_program.h"
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
    FlyOptions flying;
    flying.Access = {options.Bind, options.Airport, options.App, options.Sockets};
    flying.Access.Sockets.BindIp = OwnAddress(options.Bind);
    flying.Traffic = options.Traffic;
    flying.Length = options.Length;
    flying.Picture = options.Picture;
    flying.Tells = options.Airport.empty();

    DirectPlayOptions hosting;
    hosting.Sockets = flying.Access.Sockets;
    SimulatorPeer host = MakeHost(hosting);
    host.Host(std::string(SessionName), options.Traffic.Pilots + BesidesThePilots);

    std::optional<StartedProgram> controller;
    flying.Meanwhile = [&](std::chrono::milliseconds now) {
        if (!controller) {
            controller.emplace(options.Station);
            LeaveInputToOthers();
        }
        host.Step(now);
        return !controller->Status();
    };
    std::ostringstream summary;  // comes behind the last words of a station that prints what is said
    RunFly(flying, terminal, flying.Tells ? out : summary);
    const int early = controller ? controller->Status().value_or(0) : 0;
    controller.reset();
    host.Leave();
    out << summary.str() << std::flush;
    if (early != 0) {
        throw std::runtime_error(
            fmt::format("the station's program {} has ended with status {}", options.Station[0], early));
    }
}

}  // namespace corvenna
