#include "shell/handler_gate.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace corvenna {
namespace {

TEST(HandlerGate, RunsOneHandlerAtATime) {
    HandlerGate gate;
    bool ranWithin = true;
    bool ran = false;
    EXPECT_TRUE(gate.Run("outer", [&] {
        ranWithin = gate.Run("inner", [&] { ran = true; });
        EXPECT_TRUE(gate.Busy());
    }));
    EXPECT_FALSE(ranWithin);
    EXPECT_FALSE(ran);
    EXPECT_FALSE(gate.Busy());
}

TEST(HandlerGate, TellsWhenItIsFree) {
    HandlerGate gate;
    int freed = 0;
    QObject::connect(&gate, &HandlerGate::Freed, [&] {
        ++freed;
        EXPECT_FALSE(gate.Busy());
    });
    gate.Run("one", [&] { EXPECT_EQ(freed, 0); });
    EXPECT_EQ(freed, 1);
}

TEST(HandlerGate, AnErrorIsHeardWithTheHandlersNameBeforeAnythingElseRuns) {
    HandlerGate gate;
    std::string heard;
    gate.OnEscape = [&](std::string_view name, const std::exception& error) {
        heard = std::string(name) + ": " + error.what();
        EXPECT_TRUE(gate.Busy());
    };
    EXPECT_TRUE(gate.Run("The scan", [] { throw std::runtime_error("no such folder"); }));
    EXPECT_EQ(heard, "The scan: no such folder");
    EXPECT_FALSE(gate.Busy());
}

TEST(HandlerGate, ClosedForGoodItRunsNothing) {
    HandlerGate gate;
    gate.Run("the end", [&] { gate.CloseForGood(); });
    EXPECT_FALSE(gate.Run("late", [] { FAIL(); }));
}

}  // namespace
}  // namespace corvenna
