#include "shell/gated_timer.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

namespace corvenna {
namespace {

struct Clockwork {
    HandlerGate Gate;
    int Served = 0;
    GatedTimer Timer{Gate, "ATC_Timer", std::chrono::hours(1), {"The tick", [this] { ++Served; }}, nullptr};
};

TEST(GatedTimer, IsOffAtFirst) {
    Clockwork c;
    EXPECT_FALSE(c.Timer.isActive());
    c.Timer.Expire();
    EXPECT_EQ(c.Served, 0);
}

TEST(GatedTimer, DueDuringAHandlerItIsServedOnceBehindIt) {
    Clockwork c;
    c.Timer.Enable(true);
    c.Gate.Run("a box", [&] {
        c.Timer.Expire();
        c.Timer.Expire();
        EXPECT_EQ(c.Served, 0);
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(c.Served, 1);
}

TEST(GatedTimer, StoppedDuringAHandlerItIsNotServed) {
    Clockwork c;
    c.Timer.Enable(true);
    c.Gate.Run("a box", [&] {
        c.Timer.Expire();
        c.Timer.Enable(false);
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(c.Served, 0);
}

TEST(GatedTimer, EnabledAgainItDoesNotStartAnew) {
    Clockwork c;
    c.Timer.Enable(true);
    const int id = c.Timer.timerId();
    c.Timer.Enable(true);
    EXPECT_EQ(c.Timer.timerId(), id);
}

}  // namespace
}  // namespace corvenna
