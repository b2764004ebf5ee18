#include "tools/console/posix_terminal.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Standard input is a pipe that the test writes.
class PosixTerminalTest : public testing::Test {
  protected:
    PosixTerminalTest() {
        int ends[2];
        if (pipe(ends) != 0) std::abort();
        saved_ = dup(STDIN_FILENO);
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        writing_ = ends[1];
    }
    ~PosixTerminalTest() override {
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

TEST_F(PosixTerminalTest, WithoutInputAWaitEndsEmpty) {
    PosixTerminal terminal;
    const TerminalInput input = terminal.Wait(0ms);
    EXPECT_THAT(input.Lines, IsEmpty());
    EXPECT_FALSE(input.EndOfInput);
    EXPECT_FALSE(input.StopAsked);
}

TEST_F(PosixTerminalTest, LinesComeWhole) {
    PosixTerminal terminal;
    Type("KSEA,1\n\n2");
    EXPECT_THAT(terminal.Wait(0ms).Lines, ElementsAre("KSEA,1", ""));
    Type("3\n");
    EXPECT_THAT(terminal.Wait(0ms).Lines, ElementsAre("23"));
}

TEST_F(PosixTerminalTest, TheEndOfInputIsToldOnceAndBringsTheLastLine) {
    PosixTerminal terminal;
    Type("R");
    EXPECT_THAT(terminal.Wait(0ms).Lines, IsEmpty());
    EndInput();
    const TerminalInput input = terminal.Wait(0ms);
    EXPECT_THAT(input.Lines, ElementsAre("R"));
    EXPECT_TRUE(input.EndOfInput);
    EXPECT_FALSE(terminal.Wait(0ms).EndOfInput);
}

TEST_F(PosixTerminalTest, SignalsAskForTheEnd) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        PosixTerminal terminal;
        std::raise(signal);
        EXPECT_TRUE(terminal.Wait(0ms).StopAsked) << signal;
        EXPECT_FALSE(terminal.Wait(0ms).StopAsked) << signal;
    }
}

TEST_F(PosixTerminalTest, TheClockNeverGoesBack) {
    PosixTerminal terminal;
    const auto first = terminal.Now();
    EXPECT_GE(first, 0ms);
    EXPECT_GE(terminal.Now(), first);
}

TEST(OutputTakesColour, NotWhenItIsNoTerminal) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int saved = dup(STDOUT_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    EXPECT_FALSE(OutputTakesColour());
    dup2(saved, STDOUT_FILENO);
    close(saved);
    close(ends[0]);
    close(ends[1]);
}

TEST(ProgramFolder, HoldsTheProgram) {
    EXPECT_TRUE(std::filesystem::exists(ProgramFolder() / "console_tests"));
}

}  // namespace
}  // namespace corvenna
