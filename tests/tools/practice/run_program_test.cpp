// corvenna-practice run as its users start it: session, pilots and controller, each with sockets of its own.

#include "tools/practice/run_program.h"

#include <gmock/gmock.h>

#include <sstream>

#include "tools/child_process.h"
#include "tools/console/system_terminal.h"
#include "tools/practice/loopback.h"

namespace corvenna {
namespace {

using testing::HasSubstr;
using testing::Not;

std::vector<std::string> RunAt(const std::string& address, const std::vector<std::string>& more = {}) {
    std::vector<std::string> command = {
        CORVENNA_PRACTICE,      "run",    "--bind",           address,   "--app",
        PracticeApp().string(), "--data", CORVENNA_TEST_DATA, "--speed", "20"};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

TEST(RunProgramTest, ServesPilotsAndEndsWithASummary) {
    ChildProcess run(RunAt("127.0.23.1", {"--pilots", "2", "--minutes", "0.3"}));
    run.EndInput();
    EXPECT_EQ(run.WaitForEnd(), 0) << run.Output();
    EXPECT_THAT(run.Output(), HasSubstr("N101CV. Welcome to Corvenna v1.3 (by Dravik)."));
    EXPECT_THAT(run.Output(), HasSubstr("6 minutes at Seattle-Tacoma Intl (KSEA): 2 pilots came, 2 served"));
    EXPECT_THAT(run.Output(), HasSubstr("stuck 0\n"));
}

TEST(RunProgramTest, ATerminationSignalEndsAllOfIt) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    ChildProcess run(RunAt("127.0.23.2", {"--airport", "LOWI"}));
    run.WaitFor("N101CV. Welcome to Corvenna");
    run.Signal(SIGTERM);
    EXPECT_EQ(run.WaitForEnd(), 0);
    EXPECT_THAT(run.Output(), HasSubstr("(LOWI): "));
}

TEST(RunProgramTest, ASecondOneAtTheSameAddressIsToldSo) {
    constexpr const char* Address = "127.0.23.3";
    LoopbackHost first(Address, 8);
    ChildProcess run(RunAt(Address));
    EXPECT_EQ(run.WaitForEnd(first.Stepper()), 1);
    EXPECT_THAT(run.Output(), HasSubstr("port 47624 (TCP or UDP) at 127.0.23.3 is taken by another program"));
    EXPECT_THAT(run.Output(), Not(HasSubstr("Welcome")));
}

TEST(RunProgramTest, AnAirportWithoutTaxiNetworkAndController) {
    ChildProcess run(RunAt("127.0.23.6", {"--airport", "S31", "--pilots", "2", "--minutes", "0.3"}));
    EXPECT_EQ(run.WaitForEnd(), 0);
    EXPECT_THAT(run.Output(), HasSubstr("the airport has no taxi network: pilots taxi in straight lines"));
    EXPECT_THAT(run.Output(), HasSubstr("2 pilots came, 2 served"));
}

TEST(RunProgramTest, AnAirportThatIsNotKnown) {
    ChildProcess run(RunAt("127.0.23.4", {"--airport", "XXXX"}));
    EXPECT_EQ(run.WaitForEnd(), 1);
    EXPECT_THAT(run.Output(), HasSubstr("there is no airport XXXX; known are "));
}

/// The clock of a run that nobody waits for.
class QuickTerminal final : public Terminal {
  public:
    std::chrono::milliseconds Now() override { return now_; }
    TerminalInput Wait(std::chrono::milliseconds atMost) override {
        now_ += atMost;
        return {};
    }

  private:
    std::chrono::milliseconds now_{0};
};

TEST(RunProgramTest, AStationThatFailsIsNamedWithItsStatus) {
    RunOptions options;
    options.App = PracticeApp();
    options.Bind = "127.0.23.5";
    options.Traffic.Pilots = 1;
    options.Station = {CORVENNA_PRACTICE, "nonsense"};
    QuickTerminal terminal;
    std::ostringstream out;
    try {
        RunWholePractice(options, terminal, out);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the station's program " CORVENNA_PRACTICE " has ended with status 2");
    }
    EXPECT_THAT(out.str(), HasSubstr("(KSEA): "));
}

TEST(RunProgramTest, WithoutAnAirportThePilotsComeWhereTheStationIs) {
    RunOptions options;
    options.Airport = "";
    options.App = PracticeApp();
    options.Bind = "127.0.23.7";
    options.Traffic.Pilots = 1;
    options.Station = {CORVENNA_CONSOLE,       "--join",  options.Bind, "--airport", "LOWI", "--app",
                       PracticeApp().string(), "--speed", "20",         "--minutes", "0.2"};
    SystemTerminal keyboard;
    FasterTerminal terminal(keyboard, 20);
    std::ostringstream out;
    RunWholePractice(options, terminal, out);
    EXPECT_THAT(out.str(),
                HasSubstr("the controller is at Innsbruck Kranebitten (LOWI), and so are the pilots"));
    EXPECT_THAT(out.str(), HasSubstr("N101CV is at the ramp"));
    EXPECT_THAT(out.str(), HasSubstr("(LOWI): 1 pilot came"));
}

}  // namespace
}  // namespace corvenna
