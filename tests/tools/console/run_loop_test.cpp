#include "tools/console/run_loop.h"

#include <gmock/gmock.h>

#include <map>

#include "support/scripted_session.h"
#include "tools/console/practice_field.h"
#include "tools/console/session_console.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::EndsWith;
using testing::Not;

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

/// A console that waits for a host who never admits it, and looks each second whether he has.
class RunLoopTest : public testing::Test {
  protected:
    RunLoopTest() {
        Script.Sessions.resize(1);
        Console.Join();
    }

    void Run(std::optional<std::chrono::milliseconds> length) { RunConsole(Console, Screen, length); }

    SessionScript Script;
    std::ostringstream Out;
    RadioPrinter Printer{Out, false};
    SessionConsole Console{
        PracticeField("KSEA"), {}, [this] { return std::make_unique<ScriptedRoot>(Script); }, Printer};
    ScriptedTerminal Screen;
};

const TerminalInput EndOfInput{{}, true, false};
const TerminalInput Stop{{}, false, true};
constexpr const char* IsLeft = "The session is left; the controller was not admitted.";

TEST_F(RunLoopTest, WithoutALengthItRunsUntilItIsStopped) {
    Screen.Script[5000ms] = Stop;
    Run({});
    EXPECT_EQ(Screen.Now(), 5000ms);
    EXPECT_TRUE(Console.Over());
    EXPECT_THAT(LinesOf(Out).back(), EndsWith(IsLeft));
}

TEST_F(RunLoopTest, TheEndOfTheInputDoesNotMatter) {
    Screen.Script[0ms] = EndOfInput;
    Screen.Script[60000ms] = Stop;
    Run({});
    EXPECT_EQ(Screen.Now(), 60000ms);
}

TEST_F(RunLoopTest, AStopEndsItBeforeTheLength) {
    Screen.Script[5000ms] = Stop;
    Run(60000ms);
    EXPECT_EQ(Screen.Now(), 5000ms);
    EXPECT_TRUE(Console.Over());
}

TEST_F(RunLoopTest, WithALengthItLeavesAtItsEnd) {
    Run(10500ms);
    EXPECT_EQ(Screen.Now(), 10500ms);
    EXPECT_THAT(LinesOf(Out).back(), EndsWith(IsLeft));
    EXPECT_THAT(Script.Calls, Contains("Close"));
}

TEST_F(RunLoopTest, NoLengthAtAllEndsAtOnce) {
    Run(0ms);
    EXPECT_EQ(Screen.Waits, 0);
    EXPECT_TRUE(Console.Over());
}

TEST_F(RunLoopTest, ItWaitsFromTimerToTimer) {
    Run(10000ms);
    EXPECT_EQ(Screen.Waits, 10);
}

TEST_F(RunLoopTest, TypedLinesComeWithoutTheirBlanks) {
    Screen.Script[2000ms] = {{"", "  ", " close\r"}, false, false};
    Run({});
    EXPECT_EQ(Screen.Now(), 2000ms);
    EXPECT_THAT(LinesOf(Out), Not(Contains(EndsWith("\"close\" gives up."))));
}

TEST_F(RunLoopTest, LinesThatComeWithTheEndOfTheInputAreKept) {
    Screen.Script[0ms] = {{"close"}, true, false};
    Run({});
    EXPECT_TRUE(Console.Over());
}

TEST_F(RunLoopTest, OnAFasterTerminalAllTimeRunsFaster) {
    FasterTerminal faster(Screen, 20);
    RunConsole(Console, faster, 60000ms);
    EXPECT_EQ(Screen.Now(), 3000ms);
    EXPECT_EQ(Screen.Waits, 60);
}

TEST_F(RunLoopTest, AFasterTerminalIsNotWokenTooEarly) {
    FasterTerminal faster(Screen, 60);
    faster.Wait(100ms);
    EXPECT_EQ(Screen.Now(), 2ms);
    EXPECT_EQ(faster.Now(), 120ms);
}

}  // namespace
}  // namespace corvenna
