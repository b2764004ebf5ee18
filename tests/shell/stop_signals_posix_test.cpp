#include <gmock/gmock.h>

#include <csignal>

#include "shell/host_thread.h"
#include "shell/shell_scene.h"
#include "shell/stop_signals.h"

namespace corvenna {
namespace {

using testing::IsEmpty;

/// The signals as they were before the test.
struct StopSignalsTest : testing::Test {
    StopSignalsTest() { pthread_sigmask(SIG_SETMASK, nullptr, &before_); }
    ~StopSignalsTest() override { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
};

TEST_F(StopSignalsTest, EachOfTheThreeIsHeardFromTheEventLoop) {
    StopSignals stopSignals;
    int heard = 0;
    stopSignals.Watch([&] { ++heard; });
    ShellScene scene;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const int before = heard;
        raise(signal);
        EXPECT_EQ(heard, before);
        EXPECT_TRUE(scene.Until([&] { return heard > before; })) << signal;
    }
    EXPECT_EQ(heard, 3);
}

TEST_F(StopSignalsTest, ATerminatedStationLeavesTheSession) {
    StopSignals stopSignals;
    HostThread host;
    ShellScene scene(host.Port());
    stopSignals.Watch([&] { scene.Program.Stop(); });
    scene.OpensStation();
    scene.Press("Form4", "Command2");
    raise(SIGTERM);
    EXPECT_TRUE(scene.Until([&] { return scene.Program.Status().has_value(); }));
    EXPECT_EQ(scene.Program.Status(), 0);
    EXPECT_THAT(scene.Open(), IsEmpty());
    EXPECT_TRUE(scene.Until([&] {
        std::size_t count = 0;
        host.Do([&](SimulatorPeer& simulator) { count = simulator.Dp().GetDPEnumPlayers().size(); });
        return count == 1;
    }));
}

TEST_F(StopSignalsTest, AnOpenBoxIsClosedFirst) {
    StopSignals stopSignals;
    ShellScene scene;
    stopSignals.Watch([&] { scene.Program.Stop(); });
    scene.Starts();
    bool endedInBox = true;
    scene.Person.WhileOpen = [&](QMessageBox& box) {
        raise(SIGTERM);
        EXPECT_TRUE(scene.Until([&] { return !box.isVisible(); }));
        endedInBox = scene.Program.Status().has_value();
    };
    scene.Press("Form7", "Command1");  // a wrong folder
    EXPECT_FALSE(endedInBox);
    EXPECT_TRUE(scene.Until([&] { return scene.Program.Status().has_value(); }));
    EXPECT_EQ(scene.Program.Status(), 0);
}

}  // namespace
}  // namespace corvenna
