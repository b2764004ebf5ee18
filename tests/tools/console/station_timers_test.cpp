#include "tools/console/station_timers.h"

#include <gmock/gmock.h>

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class StationTimersTest : public testing::Test {
  protected:
    StationTimer Row(std::string_view name, std::chrono::milliseconds interval) {
        return {name, interval, [this] { return Enabled; }, [this, name] { Ran.emplace_back(name); }};
    }

    /// What a step to this time runs.
    std::vector<std::string> At(StationTimers& timers, std::chrono::milliseconds now) {
        Ran.clear();
        timers.Run(now);
        return Ran;
    }

    bool Enabled = true;
    std::vector<std::string> Ran;
};

TEST_F(StationTimersTest, ATimerFiresAtItsIntervalAndNotBefore) {
    StationTimers timers({Row("tick", 1000ms)}, 0ms);
    EXPECT_THAT(At(timers, 999ms), IsEmpty());
    EXPECT_THAT(At(timers, 1000ms), ElementsAre("tick"));
    EXPECT_THAT(At(timers, 1001ms), IsEmpty());
    EXPECT_THAT(At(timers, 2000ms), ElementsAre("tick"));
}

TEST_F(StationTimersTest, TimersDueTogetherRunInTheirOrder) {
    StationTimers timers({Row("pump", 100ms), Row("tick", 1000ms), Row("refresh", 30000ms)}, 0ms);
    EXPECT_THAT(At(timers, 100ms), ElementsAre("pump"));
    EXPECT_THAT(At(timers, 1000ms), ElementsAre("pump", "tick"));
    EXPECT_THAT(At(timers, 30000ms), ElementsAre("pump", "tick", "refresh"));
}

TEST_F(StationTimersTest, ALateTimerKeepsItsPace) {
    StationTimers timers({Row("tick", 1000ms)}, 0ms);
    EXPECT_THAT(At(timers, 1300ms), ElementsAre("tick"));
    EXPECT_THAT(At(timers, 2000ms), ElementsAre("tick"));
}

TEST_F(StationTimersTest, ATimerThatCameDueSeveralTimesIsServedOnce) {
    StationTimers timers({Row("tick", 1000ms)}, 0ms);
    EXPECT_THAT(At(timers, 5500ms), ElementsAre("tick"));
    EXPECT_THAT(At(timers, 6499ms), IsEmpty());
    EXPECT_THAT(At(timers, 6500ms), ElementsAre("tick"));
}

TEST_F(StationTimersTest, ADisabledTimerPasses) {
    StationTimers timers({Row("tick", 1000ms)}, 0ms);
    Enabled = false;
    EXPECT_THAT(At(timers, 1000ms), IsEmpty());
    Enabled = true;
    EXPECT_THAT(At(timers, 1500ms), IsEmpty());
    EXPECT_THAT(At(timers, 2000ms), ElementsAre("tick"));
}

TEST_F(StationTimersTest, TheNextDueTimeIsTheEarliest) {
    StationTimers timers({Row("pump", 100ms), Row("tick", 1000ms)}, 0ms);
    EXPECT_EQ(timers.NextDue(), 100ms);
    timers.Run(950ms);
    EXPECT_EQ(timers.NextDue(), 1000ms);
}

TEST_F(StationTimersTest, AnErrorComesOutWithTheTimersName) {
    StationTimer broken = Row("the tick", 1000ms);
    broken.Handle = [] { throw std::runtime_error("no session"); };
    StationTimers timers({broken, Row("refresh", 1000ms)}, 0ms);
    try {
        timers.Run(1000ms);
        FAIL();
    } catch (const HandlerError& error) {
        EXPECT_STREQ(error.what(), "the tick failed: no session");
    }
    EXPECT_THAT(Ran, IsEmpty());
}

}  // namespace
}  // namespace corvenna
