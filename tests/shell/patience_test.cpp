#include "shell/patience.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <functional>
#include <vector>

#include "shell/handler_gate.h"

namespace corvenna {
namespace {

using testing::ElementsAre;

/// A handler that waits for the network, in front of a window.
struct WaitingHandler : testing::Test {
    WaitingHandler() {
        QObject::connect(&Waits, &Patience::Waiting, [this](int seconds) { Told.push_back(seconds); });
        Line.show();
    }

    /// What the operator does in the handler; the answer is whether it would go on waiting.
    bool GoesOnAfter(const std::function<void()>& deed) {
        bool goesOn = false;
        Gate.Run("The search", [&] {
            deed();
            goesOn = Waits.KeepWaiting();
        });
        return goesOn;
    }

    void Posts(QEvent* event) { QCoreApplication::postEvent(Line.windowHandle(), event); }
    void PostsKey(int key) {
        Posts(new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, "x"));
        Posts(new QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier, "x"));
    }

    HandlerGate Gate;
    Patience Waits{Gate};
    QLineEdit Line;
    std::vector<int> Told;
};

TEST_F(WaitingHandler, GoesOnWhenNothingHappens) {
    EXPECT_TRUE(GoesOnAfter([] {}));
}

TEST_F(WaitingHandler, GivesUpOnEscape) {
    EXPECT_FALSE(GoesOnAfter([this] { PostsKey(Qt::Key_Escape); }));
}

TEST_F(WaitingHandler, AnEscapeOfAnEarlierHandlerIsForgotten) {
    EXPECT_FALSE(GoesOnAfter([this] { PostsKey(Qt::Key_Escape); }));
    EXPECT_TRUE(GoesOnAfter([] {}));
}

TEST_F(WaitingHandler, OtherKeysAreLost) {
    EXPECT_TRUE(GoesOnAfter([this] { PostsKey(Qt::Key_X); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(Line.text(), "");
}

TEST_F(WaitingHandler, ACloseBoxGivesUpAndClosesBehindTheHandler) {
    bool stoodInHandler = false;
    Gate.Run("The search", [&] {
        Posts(new QCloseEvent);
        EXPECT_FALSE(Waits.KeepWaiting());
        stoodInHandler = Line.isVisible();
    });
    EXPECT_TRUE(stoodInHandler);
    EXPECT_FALSE(Line.isVisible());
}

TEST_F(WaitingHandler, EachSecondIsToldOnceAndTheNextHandlerBeginsAfresh) {
    const auto waitForOneSecond = [this] {
        const std::size_t before = Told.size();
        while (Told.size() == before) Waits.KeepWaiting();
        Waits.KeepWaiting();
    };
    Gate.Run("The search", waitForOneSecond);
    EXPECT_THAT(Told, ElementsAre(1));
    Gate.Run("The search", waitForOneSecond);
    EXPECT_THAT(Told, ElementsAre(1, 1));
}

}  // namespace
}  // namespace corvenna
