#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "tools/console/system_terminal.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Standard input is a pipe that the test writes.
class SystemTerminalTest : public testing::Test {
  protected:
    SystemTerminalTest() {
        int ends[2];
        if (pipe(ends) != 0) std::abort();
        saved_ = dup(STDIN_FILENO);
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        writing_ = ends[1];
    }
    ~SystemTerminalTest() override {
        EndInput();
        dup2(saved_, STDIN_FILENO);
        close(saved_);
    }

    void Type(std::string_view text) {
        ASSERT_EQ(write(writing_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void EndInput() {
        if (writing_ >= 0) close(writing_);
        writing_ = -1;
    }

  private:
    int saved_ = -1;
    int writing_ = -1;
};

TEST_F(SystemTerminalTest, WithoutInputAWaitEndsEmpty) {
    SystemTerminal terminal;
    const TerminalInput input = terminal.Wait(0ms);
    EXPECT_THAT(input.Lines, IsEmpty());
    EXPECT_FALSE(input.EndOfInput);
    EXPECT_FALSE(input.StopAsked);
}

TEST_F(SystemTerminalTest, LinesComeWhole) {
    SystemTerminal terminal;
    Type("KSEA,1\n\n2");
    EXPECT_THAT(terminal.Wait(0ms).Lines, ElementsAre("KSEA,1", ""));
    Type("3\n");
    EXPECT_THAT(terminal.Wait(0ms).Lines, ElementsAre("23"));
}

TEST_F(SystemTerminalTest, TheEndOfInputIsToldOnceAndBringsTheLastLine) {
    SystemTerminal terminal;
    Type("R");
    EXPECT_THAT(terminal.Wait(0ms).Lines, IsEmpty());
    EndInput();
    const TerminalInput input = terminal.Wait(0ms);
    EXPECT_THAT(input.Lines, ElementsAre("R"));
    EXPECT_TRUE(input.EndOfInput);
    EXPECT_FALSE(terminal.Wait(0ms).EndOfInput);
}

TEST_F(SystemTerminalTest, SignalsAskForTheEnd) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SystemTerminal terminal;
        std::raise(signal);
        EXPECT_TRUE(terminal.Wait(0ms).StopAsked) << signal;
        EXPECT_FALSE(terminal.Wait(0ms).StopAsked) << signal;
    }
}

/// While the program ends by itself somebody may want it to end.
TEST_F(SystemTerminalTest, ASignalThatNobodyHasLookedAtKillsNothing) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        {
            SystemTerminal terminal;
            kill(getpid(), signal);
        }
        sigset_t pending;
        ASSERT_EQ(sigpending(&pending), 0);
        EXPECT_EQ(sigismember(&pending, signal), 0) << signal;
    }
}

TEST_F(SystemTerminalTest, TheClockNeverGoesBack) {
    SystemTerminal terminal;
    const auto first = terminal.Now();
    EXPECT_GE(first, 0ms);
    EXPECT_GE(terminal.Now(), first);
}

}  // namespace
}  // namespace corvenna
