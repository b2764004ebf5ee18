#include "tools/console/join_report.h"

#include <gmock/gmock.h>

#include "tools/child_process.h"
#include "tools/network_pilot.h"
#include "world/temp_folder.h"

/// Reports of joins at a host within the test, over real sockets.
namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// The clock runs as fast as it is looked at; meanwhile the host lives.
class HostsTerminal final : public Terminal {
  public:
    explicit HostsTerminal(NetworkPilot* host = nullptr) : host_(host) {}

    std::chrono::milliseconds Now() override {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }
    TerminalInput Wait(std::chrono::milliseconds) override {
        if (host_ != nullptr) host_->Step();
        return {.Lines = {}, .EndOfInput = false, .StopAsked = StopAsked};
    }
    bool StopAsked = false;

  private:
    NetworkPilot* host_;
};

struct Inquirer {
    std::string Report(Terminal& terminal) {
        return ReportOfJoin(Options, terminal, [this](auto line) { Told.emplace_back(line); });
    }

    JoinReportOptions Options{.Host = "", .Session = "", .System = "Linux 6", .Sockets = TestSockets()};
    std::vector<std::string> Told;
};

constexpr const char* Nobody = "127.0.0.1:9";

/// A session with a name, a host and a pilot that nobody else should hear of.
struct PrivateSession {
    PrivateSession() {
        Host.Peer.Host("Meiers Stammtisch", 8);
        Guest.Joins(Host.Address());
        Host.SeesSoon(2);
    }
    NetworkPilot Host{{"Max_Meier", "", true, {}}};
    NetworkPilot Guest{{"Eva-Lehmann", "", true, {}}};
};

TEST(JoinReport, OfAJoinThatWorksTellsEachStep) {
    PrivateSession session;
    HostsTerminal terminal(&session.Host);
    Inquirer inquirer;
    inquirer.Options.Host = session.Host.Address();
    const std::string report = inquirer.Report(terminal);
    EXPECT_THAT(report, AllOf(HasSubstr("Corvenna v1.3: report of a join\nsystem: Linux 6\n"),
                              HasSubstr("Sessions found: 1\n  a name of 17 characters\n"),
                              HasSubstr("players      2 of 8\n"), HasSubstr("flags        0x00000044\n"),
                              HasSubstr("host         this computer, port "), HasSubstr("-xxxxxxxxxxxx}\n")));
    EXPECT_THAT(report, AllOf(HasSubstr("s  searching at this computer, port "), HasSubstr("s  admitted\n"),
                              HasSubstr("players: 3; groups: 1, FS61_REFUSE_PARAMS among them"),
                              HasSubstr("s  left\n")));
    EXPECT_THAT(report, AllOf(HasSubstr("message 0x01, version 14"), HasSubstr("player's message 4099")));
    EXPECT_TRUE(session.Host.SeesSoon(2));
}

TEST(JoinReport, HasNoNameAndNoAddressInIt) {
    PrivateSession session;
    HostsTerminal terminal(&session.Host);
    Inquirer inquirer;
    inquirer.Options.Host = session.Host.Address();
    const std::string report = inquirer.Report(terminal);
    for (const char* const personal : {"Meier", "Stammtisch", "Max", "Eva", "Lehmann", "127.0.0.1"}) {
        EXPECT_THAT(report, Not(HasSubstr(personal)));
    }
    EXPECT_THAT(report, Not(HasSubstr("4D 00 65 00 69 00")));  // "Mei" as it is transmitted
}

TEST(JoinReport, OfAFullSessionTellsWhyItCanNotBeJoined) {
    NetworkPilot host({"HOST", "", true, {}});
    host.Peer.Host("Meiers Stammtisch", 1);
    HostsTerminal terminal(&host);
    Inquirer inquirer;
    inquirer.Options.Host = host.Address();
    EXPECT_THAT(inquirer.Report(terminal),
                AllOf(HasSubstr("players      1 of 1\n"), HasSubstr("closed       it is full"),
                      HasSubstr("s  cannot join (name of 17 characters): the host at (this computer)"),
                      HasSubstr("the session is full or closed to newcomers (0x8877014A)\n")));
}

TEST(JoinReport, OfARefusalSaysSo) {
    NetworkPilot host({"HOST", "", true, {}});
    host.AdmitsNewcomers = false;
    host.Peer.Host("Friday", 8);
    HostsTerminal terminal(&host);
    Inquirer inquirer;
    inquirer.Options.Host = host.Address();
    EXPECT_THAT(inquirer.Report(terminal), AllOf(HasSubstr("s  refused\n"), HasSubstr("s  left\n")));
}

TEST(JoinReport, OfAHostWhoDoesNotDecideSaysHowLongItWaited) {
    NetworkPilot host({"HOST", "", true, {}});
    host.Peer.Host("Friday", 8);
    HostsTerminal terminal;
    Inquirer inquirer;
    inquirer.Options.Host = host.Address();
    inquirer.Options.AdmissionTime = 0s;
    EXPECT_THAT(inquirer.Report(terminal), HasSubstr("s  no answer within 0 s\n"));
}

TEST(JoinReport, WhereNobodyAnswersTellsWhatWasTried) {
    HostsTerminal terminal;
    Inquirer inquirer;
    inquirer.Options.Host = Nobody;
    EXPECT_THAT(inquirer.Report(terminal),
                AllOf(HasSubstr("Sessions found: 0\n"),
                      HasSubstr("notice: no session answered at (this computer):9 (UDP: silence; TCP: "),
                      HasSubstr("What arrived\n  nothing\n")));
}

TEST(JoinReport, WithPortsThatOthersHaveNamesThem) {
    NetworkPilot other({"HOST", "", true, {}});
    other.Peer.Host("Friday", 8);
    const std::uint16_t tcp = other.Dp().TcpPort();
    HostsTerminal terminal;
    Inquirer inquirer;
    inquirer.Options.Host = other.Address();
    inquirer.Options.Sockets.Tcp = {tcp, tcp};
    EXPECT_THAT(inquirer.Report(terminal),
                AllOf(HasSubstr(" taken or not allowed: " + std::to_string(tcp) + "\n"),
                      HasSubstr("Sessions found: 0\n")));
}

TEST(JoinReport, EndsWhenTheTerminalAsksForIt) {
    HostsTerminal terminal;
    terminal.StopAsked = true;
    Inquirer inquirer;
    inquirer.Options.Host = Nobody;
    EXPECT_THAT(inquirer.Report(terminal), HasSubstr("s  the operator gave up\n"));
}

// ---- The program

TEST(ReportProgram, WritesTheFileAndSaysWhatItIsFor) {
    NetworkPilot host({"Max_Meier", "", true, {}});
    host.Peer.Host("Meiers Stammtisch", 8);
    TempFolder folder;
    ChildProcess console({CORVENNA_CONSOLE, "--join", host.Address(), "--report", folder.Path("report.txt")});
    EXPECT_EQ(console.WaitForEnd([&] { host.Step(); }), 0) << console.Output();
    EXPECT_THAT(console.Output(), HasSubstr("report.txt"));
    EXPECT_THAT(folder.Read("report.txt"),
                AllOf(HasSubstr("s  admitted\n"), Not(HasSubstr("Meier")), Not(HasSubstr("127.0.0.1"))));
    EXPECT_TRUE(host.SeesSoon(1));
}

TEST(ReportProgram, AFileThatCanNotBeWrittenIsNamedBeforeAnythingIsTried) {
    TempFolder folder;
    ChildProcess console({CORVENNA_CONSOLE, "--join", Nobody, "--report", folder.Path("no/report.txt")});
    EXPECT_EQ(console.WaitForEnd(), 1);
    EXPECT_THAT(console.Output(),
                AllOf(HasSubstr("report.txt: can't be written"), Not(HasSubstr("searching"))));
}

}  // namespace
}  // namespace corvenna
