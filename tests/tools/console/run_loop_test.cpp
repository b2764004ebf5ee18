#include "tools/console/run_loop.h"

#include <gmock/gmock.h>

#include <map>

#include "tools/console/practice_console.h"
#include "tools/console/practice_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::EndsWith;
using testing::StartsWith;

/// A terminal whose clock goes forward by what it is asked to wait, and what happens at it at which time.
class ScriptedTerminal final : public Terminal {
  public:
    std::chrono::milliseconds Now() override { return now_; }

    TerminalInput Wait(std::chrono::milliseconds atMost) override {
        ++Waits;
        if (Waits > 100000) throw std::logic_error("the loop does not end");
        now_ += atMost;
        TerminalInput input;
        if (const auto next = Script.begin(); next != Script.end() && next->first <= now_) {
            input = next->second;
            Script.erase(next);
        }
        return input;
    }

    std::map<std::chrono::milliseconds, TerminalInput> Script;
    int Waits = 0;

  private:
    std::chrono::milliseconds now_{0};
};

class RunLoopTest : public testing::Test {
  protected:
    void Run(std::optional<std::chrono::milliseconds> length) { RunConsole(Practice, Screen, length); }

    std::ostringstream Out;
    RadioPrinter Printer{Out, false};
    PracticeConsole Practice{
        PracticeField("KSEA"), {.Controller = "", .Person = "YOU1", .Pilots = 1}, Printer};
    ScriptedTerminal Screen;
};

const TerminalInput EndOfInput{{}, true, false};
const TerminalInput Stop{{}, false, true};

TEST_F(RunLoopTest, AtTheEndOfTheInputItLeaves) {
    Screen.Script[5000ms] = EndOfInput;
    Run({});
    EXPECT_EQ(Screen.Now(), 5000ms);
    EXPECT_TRUE(Practice.Over());
    EXPECT_THAT(LinesOf(Out).back(), StartsWith("00:04          The session is left."));
}

TEST_F(RunLoopTest, WithALengthTheEndOfTheInputDoesNotMatter) {
    Screen.Script[0ms] = EndOfInput;
    Run(60000ms);
    EXPECT_EQ(Screen.Now(), 60000ms);
    EXPECT_TRUE(Practice.Over());
    EXPECT_THAT(LinesOf(Out).back(), StartsWith("01:00          The session is left. Pilots served: 1"));
}

TEST_F(RunLoopTest, AStopEndsItWithOrWithoutALength) {
    Screen.Script[5000ms] = Stop;
    Run(60000ms);
    EXPECT_EQ(Screen.Now(), 5000ms);
    EXPECT_TRUE(Practice.Over());
}

TEST_F(RunLoopTest, NoLengthAtAllEndsAtOnce) {
    Run(0ms);
    EXPECT_EQ(Screen.Waits, 0);
    EXPECT_TRUE(Practice.Over());
}

TEST_F(RunLoopTest, ALengthBetweenTwoTimersIsKept) {
    Run(1050ms);
    EXPECT_EQ(Screen.Now(), 1050ms);
}

TEST_F(RunLoopTest, ItWaitsFromTimerToTimer) {
    Run(10000ms);
    EXPECT_EQ(Screen.Waits, 100);
}

TEST_F(RunLoopTest, TypedLinesAreSaidWithoutTheirBlanks) {
    Screen.Script[2000ms] = {{"", "  ", " KSEA,1\r"}, false, false};
    Run(10000ms);
    EXPECT_THAT(LinesOf(Out), Contains(EndsWith("YOU1: KSEA,1")));
    EXPECT_EQ(Out.str().find("YOU1: \n"), std::string::npos);
}

TEST_F(RunLoopTest, LinesThatComeWithTheEndOfTheInputAreKeptWhenItGoesOn) {
    Screen.Script[0ms] = {{"KSEA,1"}, true, false};
    Run(10000ms);
    EXPECT_THAT(LinesOf(Out), Contains(EndsWith("YOU1: KSEA,1")));
}

TEST_F(RunLoopTest, OnAFasterTerminalAllTimeRunsFaster) {
    FasterTerminal faster(Screen, 20);
    RunConsole(Practice, faster, 60000ms);
    EXPECT_EQ(Screen.Now(), 3000ms);
    EXPECT_THAT(LinesOf(Out).back(), StartsWith("01:00          The session is left. Pilots served: 1"));
}

TEST_F(RunLoopTest, AFasterTerminalIsNotWokenTooEarly) {
    FasterTerminal faster(Screen, 60);
    faster.Wait(100ms);
    EXPECT_EQ(Screen.Now(), 2ms);
    EXPECT_EQ(faster.Now(), 120ms);
}

}  // namespace
}  // namespace corvenna
